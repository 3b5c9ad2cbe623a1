#pragma once

#include <QLockFile>
#include <QString>
#include <QTemporaryDir>

#include <cstdint>
#include <memory>

/// The folder of the application's data that belongs to one backup; made when missing, for the owner alone.
QString cacheFolderOf(const QString &backupUid);

/// Removes all that is kept of backups below the application's data folder, but for the private folders of
/// backups that are open now, in this run or another.
void clearCaches();

/// Private folders (nobody else may look into them) for plain copies out of one backup. They are made when
/// first asked for, below the backup's cache folder or, when that cannot be or has no room, in the system's
/// temporary folder. They vanish with this object; those of runs that were killed vanish when a later run
/// makes its own.
class ScratchFolder
{
public:
    explicit ScratchFolder(const QString &backupUid);
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder &) = delete;
    ScratchFolder &operator=(const ScratchFolder &) = delete;

    /// A folder on a disk that has room for so many bytes, when there is one. Throws Error when no folder
    /// can be made at all.
    QString withRoomFor(std::uint64_t bytes);
    void remove();

private:
    struct Place
    {
        std::unique_ptr<QTemporaryDir> folder;
        std::unique_ptr<QLockFile> lock; // tells other runs that this one lives
        bool failed = false;
    };

    QString m_uid;
    Place m_cache;
    Place m_temporary;

    static void make(Place &place, const QString &parent);
    static void remove(Place &place);
};

#pragma once

#include <QLockFile>
#include <QString>
#include <QTemporaryDir>

#include <cstdint>
#include <memory>

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
    /// The one in the system's temporary folder. Throws Error when it cannot be made.
    QString inTemporaryFolder();
    void remove();

    /// True when the name is one that these folders have.
    static bool hasName(const QString &name);
    /// True when the owner of such a folder lives, in this run or another. Asked once: the lock of an owner
    /// that is gone vanishes by it.
    static bool isInUse(const QString &folder);

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

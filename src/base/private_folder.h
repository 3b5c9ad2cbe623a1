#pragma once

#include <QString>

#include <memory>

class QLockFile;
class QTemporaryDir;

/// A folder with a name of its own that nobody but its owner may look into, for plain copies. A lock in it
/// tells other runs that this one lives. It vanishes with this object; that of a run which was killed goes
/// with the next sweep.
class PrivateFolder
{
public:
    /// Made below `parent`; null when that cannot be.
    static std::unique_ptr<PrivateFolder> make(const QString &parent);
    ~PrivateFolder();
    PrivateFolder(const PrivateFolder &) = delete;
    PrivateFolder &operator=(const PrivateFolder &) = delete;

    QString path() const;

    /// True when the name is one that these folders have.
    static bool hasName(const QString &name);
    /// True when the run that made such a folder lives, this one or another. Asked once: the lock of an owner
    /// that is gone vanishes by it.
    static bool isInUse(const QString &folder);
    /// Removes those below `parent` that runs of this user left which are gone.
    static void sweep(const QString &parent);

private:
    PrivateFolder(std::unique_ptr<QTemporaryDir> folder, std::unique_ptr<QLockFile> lock);

    qint64 m_process; // a copy of the process leaves the folder to the one that made it
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QLockFile> m_lock;
};

/// The one private folder of this run in the system's temporary folder, for everything that is to be gone when
/// the program ends: copies for printing, indexes, files that another program looks at. Made when first asked
/// for, and again when somebody has cleaned up there. Throws Error when it cannot be made. May be called from
/// any thread.
QString runFolder();

/// Where a file out of one backup lies while another program shows it; in the folder of this run. It need not
/// exist.
QString openedFilesFolder(const QString &backupUid);
/// Removes what was opened out of one backup, or out of all when there is no uid.
void removeOpenedFiles(const QString &backupUid = {});

/// Removes the folder of this run with all that is in it.
void removeRunFolder();

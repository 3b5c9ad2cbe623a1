#pragma once

#include "base/private_folder.h"

#include <cstdint>

/// Private folders for plain copies out of one backup. They are made when first asked for, below the backup's
/// cache folder or, when that cannot be or has no room, in the system's temporary folder. They vanish with
/// this object; those of runs that were killed vanish with sweepLeftovers().
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

private:
    struct Place
    {
        std::unique_ptr<PrivateFolder> folder;
        bool failed = false;

        void make(const QString &parent);
    };

    QString m_uid;
    Place m_cache;
    Place m_temporary;
};

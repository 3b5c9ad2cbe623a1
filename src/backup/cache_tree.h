#pragma once

#include "backup/backup_manifest.h"

/// What became of the files of a part of the tree.
struct CachedFiles
{
    qint64 copied = 0;
    qint64 current = 0;
    qint64 leftOut = 0;

    bool operator==(const CachedFiles &) const = default;
};

/// Copies a file, or a folder with everything below it, into the cache that is attached to an indexed backup.
/// Files whose copy is of the right date are passed over, so that a run which was stopped is taken up where
/// it ended. `savingText` is reported with %1 as the name. Throws Error for a file that cannot be copied, and
/// Cancelled.
CachedFiles cacheTree(BackupManifest &backup, FileTree::Node node, const QString &savingText,
                      Progress &progress);

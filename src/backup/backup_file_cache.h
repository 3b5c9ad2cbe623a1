#pragma once

#include "backup/copy_register.h"
#include "backup/file_tree.h"

#include <QHash>
#include <QSet>

#include <atomic>

/// The plain copies of one backup's files that stay when the program ends, below the backup's cache folder
/// under the paths of the tree, so that a file whose date has not changed is not fetched again. A copy comes
/// to its place whole, and counts once it stands in a register with the date of its record. Whatever cannot
/// be kept, for want of room, of a place or of a register, is simply not kept.
class BackupFileCache
{
public:
    using Index = FileCatalogue::Index;

    /// Both must stay where they are while this lives.
    BackupFileCache(const QString &backupUid, const FileCatalogue &catalogue, const FileTree &tree);

    /// Where the copy of a record belongs; empty for one that cannot have any: without a date, or because
    /// another record has the same place, or would have on a disk that does not tell upper from lower case.
    QString place(Index index);
    /// The copy of a record, which for a database holds the content of its `log` as well; empty when there is
    /// none, or one of another date.
    QString current(Index index, Index log = FileCatalogue::none);
    /// Takes a whole copy that lies on the same disk into the cache, and gives where it lies now: where it
    /// was when it cannot be kept.
    QString keep(Index index, const QString &copy, Index log = FileCatalogue::none);

    /// From now on nothing is kept. May be called from any thread.
    void retire() { m_retired = true; }

private:
    const FileCatalogue &m_catalogue;
    const FileTree &m_tree;
    QString m_uid;
    CopyRegister m_general;
    CopyRegister m_media;
    QHash<FileTree::Node, QSet<FileTree::Node>> m_alike; // by folder: children that differ in case alone
    std::atomic<bool> m_retired = false;

    CopyRegister &registerOf(Index index);
    bool sharesItsName(FileTree::Node node);
    qint64 dateOf(Index record) const;
    bool datesFit(Index index, Index log);
};

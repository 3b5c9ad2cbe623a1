#pragma once

#include "personal/abs_local_db.h"
#include "personal/bookmark_node.h"
#include "personal/scope.h"

class FileSource;
class Report;

/// Reads the bookmarks database of a source. Opens it on first use and keeps it open; `source` must outlive
/// the reader.
class IOSBookmarkDb
{
public:
    explicit IOSBookmarkDb(FileSource &source);

    /// Without the root, hidden rows, and what stands below a folder that is hidden, missing, or has a
    /// greater parent than itself; Scope::Everything brings them in, those of a missing folder at the top
    /// level. Throws Error("Cannot find Bookmarks.db.") when the source has no bookmarks database.
    BookmarkTree readTree(Scope scope, Report &report);

private:
    FileSource &m_source;
    Sqlite3DB m_db;

    void open(Report &report);
};

/// "bookmarks.db": bookmarks gathered from any number of sources; the same address in the same folder is one
/// bookmark.
class LocalBookmarkDb : public AbsLocalDb
{
public:
    explicit LocalBookmarkDb(const QString &folder);

    struct Saved
    {
        qint64 handled = 0; // bookmarks, without folders
        qint64 added = 0;
    };

    /// Bookmarks of readTree(); folders do not count. Throws Error where the store is damaged.
    qint64 count();
    /// Reads around damage, which is told in the report; what lies in a folder that is lost stands at the top
    /// level.
    BookmarkTree readTree(Report &report);
    /// Saves the node with everything below it; its folders above are those of the tree. Call between begin()
    /// and commit().
    Saved save(const BookmarkNode &node);
    /// Removes a bookmark or a folder. False when there is no such row. removeLeftovers() must follow.
    bool remove(qint64 id);
    /// Removes what removed folders held: it could never be seen again, and would still be counted.
    void removeLeftovers();

    struct Row
    {
        qint64 id = 0;
        bool inserted = false;
        bool differs = false; // in its title or the case of its address; the stored one was kept
    };
    /// The same for the node alone, below the stored folder `parent` (0: the top level).
    Row saveRow(const BookmarkNode &node, qint64 parent);

private:
    void saveBelow(const BookmarkNode &node, qint64 parent, Saved &saved);
    qint64 folderId(const BookmarkNode *folder);
};

/// Bookmarks of a tree without its folders.
qint64 countBookmarks(const BookmarkTree &tree);

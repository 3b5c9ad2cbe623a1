#pragma once

#include "personal/abs_local_db.h"
#include "personal/bookmark_node.h"

class FileSource;

/// Any source of bookmarks. Used by one thread at a time.
class IBookmarkDb
{
public:
    virtual ~IBookmarkDb() = default;
    /// Bookmarks; folders do not count.
    virtual qint64 count() = 0;
    virtual BookmarkTree readTree() = 0;
};

/// Reads the bookmarks database of a source. Opens it on first use and keeps it open; `source` must outlive
/// the reader.
class IOSBookmarkDb : public IBookmarkDb
{
public:
    explicit IOSBookmarkDb(FileSource &source);

    /// Throws Error("Cannot find Bookmarks.db.") when the source has no bookmarks database.
    qint64 count() override;
    /// Without hidden rows and the root. Throws as count() does.
    BookmarkTree readTree() override;

private:
    FileSource &m_source;
    Sqlite3DB m_db;

    void open();
};

/// "bookmarks.db": bookmarks gathered from any number of sources; the same address in the same folder is one
/// bookmark.
class LocalBookmarkDb : public AbsLocalDb, public IBookmarkDb
{
public:
    explicit LocalBookmarkDb(const QString &folder);

    struct Saved
    {
        qint64 handled = 0; // bookmarks, without folders
        qint64 added = 0;
    };

    qint64 count() override;
    BookmarkTree readTree() override;
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
    };
    /// The same for the node alone, below the stored folder `parent` (0: the top level).
    Row saveRow(const BookmarkNode &node, qint64 parent);

private:
    void saveBelow(const BookmarkNode &node, qint64 parent, Saved &saved);
    qint64 folderId(const BookmarkNode *folder);
};

/// Bookmarks of a tree without its folders.
qint64 countBookmarks(const BookmarkTree &tree);

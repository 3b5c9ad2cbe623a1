#include "sample/data_classes.h"
#include "sample/sqlite_file.h"

namespace sample {

namespace {

constexpr const char *tables =
    "CREATE TABLE bookmarks (id INTEGER PRIMARY KEY, special_id INTEGER DEFAULT 0, parent INTEGER, "
    "type INTEGER, title TEXT, url TEXT COLLATE NOCASE, num_children INTEGER DEFAULT 0, editable INTEGER "
    "DEFAULT 1, "
    "deletable INTEGER DEFAULT 1, hidden INTEGER DEFAULT 0, hidden_ancestor_count INTEGER DEFAULT 0, "
    "order_index INTEGER NOT NULL, external_uuid TEXT UNIQUE, read INTEGER DEFAULT NULL, "
    "last_modified REAL DEFAULT NULL, server_id TEXT, sync_key TEXT, sync_data BLOB, added INTEGER DEFAULT "
    "1, "
    "deleted INTEGER DEFAULT 0, extra_attributes BLOB DEFAULT NULL, local_attributes BLOB DEFAULT NULL, "
    "fetched_icon BOOL DEFAULT 0, icon BLOB DEFAULT NULL, dav_generation INTEGER DEFAULT 0, "
    "locally_added BOOL DEFAULT 0, archive_status INTEGER DEFAULT 0, syncable BOOL DEFAULT 1, "
    "web_filter_status INTEGER DEFAULT 0);"
    "CREATE TABLE bookmark_title_words (id INTEGER PRIMARY KEY, bookmark_id INTEGER NOT NULL, word TEXT, "
    "word_index INTEGER);"
    "CREATE TABLE folder_ancestors (id INTEGER PRIMARY KEY, folder_id INTEGER NOT NULL, ancestor_id INTEGER "
    "NOT NULL);"
    "CREATE TABLE generations (generation INTEGER DEFAULT 0);"
    "CREATE TABLE sync_properties (key TEXT NOT NULL, value TEXT NOT NULL, UNIQUE(key))";

struct Bookmark
{
    qint64 id;
    qint64 parent;
    const char *title;
    const char *url; // null: a folder
    int special = 0; // 1 the bar, 2 the menu, 3 the reading list
    bool hidden = false;
};

// Rows are numbered as the device would: a folder comes before what it holds.
constexpr Bookmark bookmarks[] = {
    {0, -1, "Root", nullptr},
    {1, 0, "BookmarksBar", nullptr, 1},
    {2, 0, "BookmarksMenu", nullptr, 2},
    {3, 0, "com.apple.ReadingList", nullptr, 3},
    {4, 1, "Example", "https://www.example.org/"},
    {5, 1, "Query & fragment <b>", "https://www.example.org/search?q=a&b=\"c\"#top"},
    {6, 1, "Cooking", nullptr},
    {7, 6, "Soups", nullptr},
    {8, 7, "Borschtsch", "https://suppen.example.net/borschtsch"},
    {9, 7, "味噌汁", "https://soup.example.jp/味噌汁"},
    {10, 6, "Empty folder", nullptr},
    {11, 3, "An article for later", "https://news.example.com/article/1"},
    {12, 0, "At the top", "http://top.example.org"},
    {13, 0, "", "https://without-a-title.example.org/"},
    {14, 6, "The same address", "https://www.example.org/"},
    {15, 6, "The same address in capitals", "HTTPS://WWW.EXAMPLE.ORG/"},
    {16, 0, "Frequently visited", nullptr, 5, true},
    {17, 16, "In a hidden folder", "https://hidden.example.org/"},
    {18, 2, "Hidden itself", "https://secret.example.org/", 0, true},
    {19, 2, "Script", "javascript:alert('no')"},
};

void addRows(SqliteFile &file, SeededGenerator chance, qint64 backupDate)
{
    Statement insert(file,
                     "insert into bookmarks(id, special_id, parent, type, title, url, hidden, order_index, "
                     "external_uuid, last_modified) values(?,?,?,?,?,?,?,?,?,?)");
    for (const Bookmark &bookmark : bookmarks) {
        const qint64 position = bookmark.id * 7 % 20; // not the order of the rows
        const double modified = static_cast<double>(backupDate - 100000 + bookmark.id);
        if (bookmark.parent < 0)
            insert.run(bookmark.id, 0, nullptr, 1, Utf8{bookmark.title}, nullptr, false, 0,
                       QStringLiteral("Root"), modified);
        else
            insert.run(bookmark.id, bookmark.special, bookmark.parent, bookmark.url == nullptr,
                       Utf8{bookmark.title}, QString::fromUtf8(bookmark.url), bookmark.hidden, position,
                       Utf8{chance.uuid()}, modified);
    }
    file.execute("update bookmarks set num_children=(select count(*) from bookmarks as b where "
                 "b.parent=bookmarks.id)");
}

} // namespace

void addBookmarks(Making &making)
{
    const QString path = making.inScratch("Bookmarks.db");
    SqliteFile file(path);
    file.execute(tables);
    addRows(file, making.chance.fork("bookmarks"), making.generation.backupDate);
    making.summary.counts.bookmarks =
        static_cast<int>(file.integer("select count(*) from bookmarks where type=0 and hidden=0"));
    file.close(making.generation.ios >= 9 ? SqliteFile::Journal::Wal : SqliteFile::Journal::Rollback);
    making.container.putFile(making.place("HomeDomain", QStringLiteral("Library/Safari/Bookmarks.db")), path);
}

} // namespace sample

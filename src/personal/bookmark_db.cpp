#include "personal/bookmark_db.h"

#include "backup/device_database.h"
#include "base/error.h"
#include "base/report.h"
#include "sqlite/read_rows.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <tuple>

namespace {
// Nobody nests folders this deep; a forged chain of 100,000 would exhaust the stack of whoever walks it.
constexpr int deepestFolder = 500;

/// One row of the table, whose node stands in no tree yet.
struct BookmarkRow
{
    std::unique_ptr<BookmarkNode> node;
    qint64 parent = 0;
    int type = 0; // as stored
    bool isHidden = false;
};

/// The columns of a table of bookmarks, resolved once.
struct BookmarkColumns
{
    BookmarkColumns(const Sqlite3Cursor &row, const QString &sourceColumn)
        : id(row.columnIndex(QStringLiteral("id"))),
          parent(row.columnIndex(QStringLiteral("parent"))),
          type(row.columnIndex(QStringLiteral("type"))),
          title(row.columnIndex(QStringLiteral("title"))),
          url(row.columnIndex(QStringLiteral("url"))),
          order(row.columnIndex(QStringLiteral("order_index"))),
          source(row.columnIndex(sourceColumn)),
          hidden(row.columnIndex(QStringLiteral("hidden")))
    {
    }

    BookmarkRow read(const Sqlite3Cursor &row) const
    {
        auto node = std::make_unique<BookmarkNode>();
        node->id = row.getInt64(id);
        node->type = row.getInt(type) == BookmarkNode::folder ? BookmarkNode::folder : BookmarkNode::bookmark;
        node->title = row.getText(title);
        node->order_index = row.getInt(order);
        node->src_id = row.getText(source);
        if (node->type == BookmarkNode::bookmark)
            node->url = row.getText(url);
        // Early databases have no column for what is hidden; no number in it is as good as hidden.
        const bool isShown = hidden < 0 || (!row.isNull(hidden) && row.getInt(hidden) == 0);
        const bool isHidden = !isShown || node->id < 0;
        return {std::move(node), row.getInt64(parent), row.getInt(type), isHidden};
    }

    int id, parent, type, title, url, order, source, hidden;
};

struct BookmarkRows
{
    std::vector<BookmarkRow> rows;
    bool isWhole = true;
};

BookmarkRows readBookmarkRows(const Sqlite3DB &db, const QString &sourceColumn,
                              const QStringList &furtherColumns, Report &report)
{
    TableRows what{QStringLiteral("bookmarks"),
                   {QStringLiteral("id"), QStringLiteral("parent"), QStringLiteral("type"),
                    QStringLiteral("title"), QStringLiteral("url"), QStringLiteral("order_index")},
                   {sourceColumn}};
    what.columns += furtherColumns;
    BookmarkRows found;
    const RowsRead read = readRows(db, what, report, [&](const Sqlite3Cursor &row) {
        return [&, columns = BookmarkColumns(row, sourceColumn)] {
            if (BookmarkRow bookmark = columns.read(row); bookmark.node->id != 0)
                found.rows.push_back(std::move(bookmark));
        };
    });
    found.isWhole = read.isWhole;
    return found;
}

/// Folders before what is in them, as far as they are older than it.
void sortByParent(std::vector<BookmarkRow> &rows)
{
    const auto key = [](const BookmarkRow &row) {
        return std::make_tuple(row.parent, row.type, row.node->order_index, row.node->id);
    };
    std::sort(rows.begin(), rows.end(),
              [&](const BookmarkRow &a, const BookmarkRow &b) { return key(a) < key(b); });
}

/// Gives what lies in a folder that could not be read a place at the top level.
void adoptOrphans(std::vector<BookmarkRow> &rows)
{
    QSet<qint64> folders;
    for (const BookmarkRow &row : rows)
        if (row.node->type == BookmarkNode::folder)
            folders.insert(row.node->id);
    for (BookmarkRow &row : rows)
        if (!folders.contains(row.parent))
            row.parent = 0;
}

void append(BookmarkTree &top, BookmarkNode *parent, std::unique_ptr<BookmarkNode> node)
{
    node->parent = parent;
    (parent ? parent->children : top).push_back(std::move(node));
}

/// Rows come ordered by parent, so a folder that is read after its children has lost them.
BookmarkTree treeInOrder(std::vector<BookmarkRow> rows, Report &report)
{
    struct Folder
    {
        BookmarkNode *node = nullptr;
        int depth = 0;
    };
    BookmarkTree top;
    QHash<qint64, Folder> folders;
    for (BookmarkRow &row : rows) {
        const Folder holder = folders.value(row.parent);
        const bool hasPlace = (row.parent == 0 || holder.node) && holder.depth < deepestFolder;
        if (row.isHidden || !hasPlace) {
            report.add(
                {.kind = IssueKind::Hidden,
                 .what = row.isHidden ? "IDS_ISSUE_BOOKMARKS_HIDDEN" : "IDS_ISSUE_BOOKMARKS_WITHOUT_FOLDER"});
            continue;
        }
        if (row.node->type == BookmarkNode::folder)
            folders.insert(row.node->id, {row.node.get(), holder.depth + 1});
        append(top, holder.node, std::move(row.node));
    }
    return top;
}

/// Every row has a place: at the top level where its folder is missing, lies below itself, or is too deep.
BookmarkTree treeOfAll(std::vector<BookmarkRow> rows)
{
    QHash<qint64, qsizetype> folders;
    for (std::size_t i = 0; i < rows.size(); ++i)
        if (rows[i].node->type == BookmarkNode::folder && !folders.contains(rows[i].node->id))
            folders.insert(rows[i].node->id, static_cast<qsizetype>(i));
    std::vector<BookmarkNode *> nodes;
    nodes.reserve(rows.size());
    for (const BookmarkRow &row : rows)
        nodes.push_back(row.node.get());
    const auto placeOf = [&](std::size_t row) -> BookmarkNode * {
        const auto holder = folders.constFind(rows[row].parent);
        qint64 above = rows[row].parent;
        for (int depth = 0; above != 0; ++depth) {
            const auto folder = folders.constFind(above);
            if (folder == folders.constEnd())
                break;
            if (depth == deepestFolder || static_cast<std::size_t>(*folder) == row)
                return nullptr;
            above = rows[static_cast<std::size_t>(*folder)].parent;
        }
        return holder == folders.constEnd() ? nullptr : nodes[static_cast<std::size_t>(*holder)];
    };
    BookmarkTree top;
    for (std::size_t i = 0; i < rows.size(); ++i)
        append(top, placeOf(i), std::move(rows[i].node));
    return top;
}
} // namespace

qint64 countBookmarks(const BookmarkTree &tree)
{
    qint64 count = 0;
    for (const auto &node : tree)
        count += node->type == BookmarkNode::folder ? countBookmarks(node->children) : 1;
    return count;
}

IOSBookmarkDb::IOSBookmarkDb(FileSource &source) : m_source(source) {}

void IOSBookmarkDb::open(Report &report)
{
    if (!openDeviceDatabase(m_db, m_source,
                            {QStringLiteral("HomeDomain"), QStringLiteral("Library/Safari/Bookmarks.db")},
                            report))
        throw Error(QStringLiteral("Cannot find Bookmarks.db."), ErrorKind::NotFound);
}

BookmarkTree IOSBookmarkDb::readTree(Scope scope, Report &report)
{
    open(report);
    const bool canHide = m_db.tbCols(QStringLiteral("bookmarks")).contains(QStringLiteral("hidden"));
    const QStringList hidden = canHide ? QStringList{QStringLiteral("hidden")} : QStringList();
    auto [rows, isWhole] = readBookmarkRows(m_db, QStringLiteral("external_uuid"), hidden, report);
    if (!isWhole)
        adoptOrphans(rows);
    sortByParent(rows);
    return scope == Scope::Everything ? treeOfAll(std::move(rows)) : treeInOrder(std::move(rows), report);
}

LocalBookmarkDb::LocalBookmarkDb(const QString &folder)
    : AbsLocalDb(folder, QStringLiteral("bookmarks.db"), QStringLiteral(":/res/local_bookmarks_db.sql"))
{
}

qint64 LocalBookmarkDb::count()
{
    Sqlite3Cursor row =
        m_db.queryThrow(QStringLiteral("select count(*) from bookmarks not indexed where type is not 1"));
    return row.moveNext() ? row.getInt64(0) : 0;
}

BookmarkTree LocalBookmarkDb::readTree(Report &report)
{
    std::vector<BookmarkRow> rows = readBookmarkRows(m_db, QStringLiteral("src_id"), {}, report).rows;
    sortByParent(rows);
    return treeOfAll(std::move(rows));
}

LocalBookmarkDb::Row LocalBookmarkDb::saveRow(const BookmarkNode &node, qint64 parent)
{
    const bool isFolder = node.type == BookmarkNode::folder;
    Sqlite3Sql find(isFolder
                        ? QStringLiteral("select id,order_index,0")
                        : QStringLiteral("select id,order_index,title is not ? or url<>? collate binary"));
    if (!isFolder)
        find.addTextParam(node.title).addTextParam(node.url);
    find.appendSql(QStringLiteral(" from bookmarks where parent") +
                   (parent != 0 ? QStringLiteral("=?") : QStringLiteral(" is null")));
    if (parent != 0)
        find.addInt64Param(parent);
    find.appendSql(isFolder ? QStringLiteral(" and type=1 and title=?")
                            : QStringLiteral(" and type=0 and url=?"));
    find.addTextParam(isFolder ? node.title : node.url);
    Sqlite3Cursor &there = m_db.cachedThrow(find);
    if (there.moveNext()) {
        const qint64 id = there.getInt64(0);
        const bool moved = there.getInt(1) != node.order_index;
        const bool differs = there.getInt(2) != 0;
        there.reset();
        if (moved)
            m_db.executeCachedThrow(
                Sqlite3Sql(QStringLiteral("update bookmarks set order_index=? where id=?"))
                    .addIntParam(node.order_index)
                    .addInt64Param(id));
        return {id, false, differs};
    }
    Sqlite3Sql insert(
        isFolder
            ? QStringLiteral(
                  "insert into bookmarks(parent,type,title,url,order_index,src_id) values(?,1,?,null,?,?)")
            : QStringLiteral(
                  "insert into bookmarks(parent,type,title,url,order_index,src_id) values(?,0,?,?,?,?)"));
    if (parent != 0)
        insert.addInt64Param(parent);
    else
        insert.addNullParam();
    insert.addTextParam(node.title);
    if (!isFolder)
        insert.addTextParam(node.url);
    m_db.executeCachedThrow(insert.addIntParam(node.order_index).addTextParam(node.src_id));
    return {m_db.lastInsertId(), true};
}

qint64 LocalBookmarkDb::folderId(const BookmarkNode *folder)
{
    return folder ? saveRow(*folder, folderId(folder->parent)).id : 0;
}

void LocalBookmarkDb::saveBelow(const BookmarkNode &node, qint64 parent, Saved &saved)
{
    const Row row = saveRow(node, parent);
    if (node.type != BookmarkNode::folder) {
        ++saved.handled;
        saved.added += row.inserted ? 1 : 0;
    }
    for (const auto &child : node.children)
        saveBelow(*child, row.id, saved);
}

LocalBookmarkDb::Saved LocalBookmarkDb::save(const BookmarkNode &node)
{
    Saved saved;
    saveBelow(node, folderId(node.parent), saved);
    return saved;
}

bool LocalBookmarkDb::remove(qint64 id)
{
    m_db.executeCachedThrow(Sqlite3Sql(QStringLiteral("delete from bookmarks where id=?")).addInt64Param(id));
    return m_db.changes() > 0;
}

void LocalBookmarkDb::removeLeftovers()
{
    do
        m_db.executeThrow(
            QStringLiteral("delete from bookmarks where parent is not null and parent<>0 and parent not in "
                           "(select id from bookmarks)"));
    while (m_db.changes() > 0);
}

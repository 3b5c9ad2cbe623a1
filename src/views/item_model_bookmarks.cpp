#include "views/item_model_bookmarks.h"

#include "base/texts.h"
#include "views/icons.h"
#include "work/shown_text.h"

ItemModelBookmarks::ItemModelBookmarks(RecordsPtr records, QObject *parent)
    : QAbstractItemModel(parent), m_records(std::move(records))
{
    remember(std::get<BookmarkTree>(*m_records));
}

void ItemModelBookmarks::remember(const BookmarkTree &tree)
{
    int row = 0;
    for (const auto &node : tree) {
        m_rows.insert(node.get(), row++);
        remember(node->children);
    }
}

const BookmarkNode *ItemModelBookmarks::node(const QModelIndex &index) const
{
    return static_cast<const BookmarkNode *>(index.constInternalPointer());
}

const BookmarkTree &ItemModelBookmarks::childrenOf(const QModelIndex &parent) const
{
    return parent.isValid() ? node(parent)->children : std::get<BookmarkTree>(*m_records);
}

QModelIndex ItemModelBookmarks::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, childrenOf(parent).at(static_cast<std::size_t>(row)).get());
}

QModelIndex ItemModelBookmarks::parent(const QModelIndex &child) const
{
    const BookmarkNode *folder = child.isValid() ? node(child)->parent : nullptr;
    return folder ? createIndex(m_rows.value(folder), 0, folder) : QModelIndex();
}

int ItemModelBookmarks::rowCount(const QModelIndex &parent) const
{
    return parent.column() > 0 ? 0 : static_cast<int>(childrenOf(parent).size());
}

int ItemModelBookmarks::columnCount(const QModelIndex &) const
{
    return ColumnCount;
}

QVariant ItemModelBookmarks::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const BookmarkNode &bookmark = *node(index);
    const bool isUntitled = bookmark.title.trimmed().isEmpty();
    const QString title = isUntitled ? textFor("IDS_NO_TITLE") : bookmark.title;
    const QString text = index.column() == Title ? title : bookmark.url;
    const bool isFolder = bookmark.type == BookmarkNode::folder;
    switch (role) {
    case Qt::DisplayRole:
        return text.left(longestShown).simplified();
    case Qt::DecorationRole:
        return index.column() == Title ? QVariant(listIcon(isFolder ? "tree_folder" : "tree_bookmarks"))
                                       : QVariant();
    case Qt::ToolTipRole:
        return toolTipOf(text);
    case RecordRole::Sort:
        return QString(QLatin1Char(isFolder ? '0' : '1') + text.toCaseFolded());
    case RecordRole::Search:
        return QString(bookmark.title + QLatin1Char('\n') + bookmark.url);
    case RecordRole::Detail:
        return QStringLiteral("<h2>%1</h2><p>%2</p>")
            .arg(title.toHtmlEscaped(), bookmark.url.toHtmlEscaped());
    case RecordRole::Identity:
        return QString::number(bookmark.id);
    default:
        return {};
    }
}

QVariant ItemModelBookmarks::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return textFor(section == Title ? "IDS_COL_TITLE" : "IDS_COL_URL");
}

#include "views/item_model_files.h"

#include "base/texts.h"
#include "views/icons.h"

#include <QCollator>
#include <QDateTime>
#include <QLocale>

#include <algorithm>

namespace {
qint64 countFiles(const FileCatalogue &catalogue)
{
    qint64 files = 0;
    for (FileCatalogue::Index i = 0; i < catalogue.size(); ++i)
        files += catalogue.isDirectory(i) ? 0 : 1;
    return files;
}
} // namespace

ItemModelFiles::ItemModelFiles(OpenBackupPtr backup, QObject *parent)
    : QAbstractItemModel(parent),
      m_backup(std::move(backup)),
      m_fileCount(countFiles(catalogue())),
      m_folderIcon(listIcon("tree_folder")),
      m_fileIcon(listIcon("tree_file"))
{
}

FileTree::Node ItemModelFiles::node(const QModelIndex &index) const
{
    return index.isValid() ? static_cast<FileTree::Node>(index.internalId()) : FileTree::root;
}

QModelIndex ItemModelFiles::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, childrenOf(node(parent))[static_cast<std::size_t>(row)]);
}

QModelIndex ItemModelFiles::parent(const QModelIndex &child) const
{
    if (!child.isValid() || isFiltered())
        return {};
    const FileTree::Node above = tree().parent(node(child));
    if (above == FileTree::root || above == FileTree::none)
        return {};
    return createIndex(m_rowOf.at(above), 0, above);
}

int ItemModelFiles::rowCount(const QModelIndex &parent) const
{
    if (parent.column() > 0 || isFlat(node(parent)))
        return 0;
    return static_cast<int>(childrenOf(node(parent)).size());
}

int ItemModelFiles::columnCount(const QModelIndex &) const
{
    return ColumnCount;
}

bool ItemModelFiles::hasChildren(const QModelIndex &parent) const
{
    if (!parent.isValid())
        return rowCount() > 0;
    return parent.column() == 0 && !isFiltered() && tree().childCount(node(parent)) > 0;
}

const std::vector<FileTree::Node> &ItemModelFiles::childrenOf(FileTree::Node parent) const
{
    const auto known = m_children.find(parent);
    if (known != m_children.end())
        return known->second;
    std::vector<FileTree::Node> nodes =
        isFiltered() && parent == FileTree::root ? matches() : tree().children(parent);
    arrange(nodes);
    noteRows(nodes);
    return m_children.emplace(parent, std::move(nodes)).first->second;
}

void ItemModelFiles::noteRows(const std::vector<FileTree::Node> &nodes) const
{
    for (std::size_t row = 0; row < nodes.size(); ++row)
        m_rowOf[nodes[row]] = static_cast<int>(row);
}

std::vector<FileTree::Node> ItemModelFiles::matches() const
{
    std::vector<FileTree::Node> found;
    const auto count = static_cast<FileTree::Node>(tree().nodeCount());
    for (FileTree::Node candidate = FileTree::root + 1; candidate < count; ++candidate) {
        if (tree().name(candidate).contains(m_filter, Qt::CaseInsensitive))
            found.push_back(candidate);
    }
    return found;
}

void ItemModelFiles::setFilter(const QString &text)
{
    if (text.trimmed() == m_filter)
        return;
    beginResetModel();
    m_filter = text.trimmed();
    m_children.clear();
    m_rowOf.clear();
    endResetModel();
}

qint64 ItemModelFiles::sizeOf(FileTree::Node node) const
{
    const FileCatalogue::Index record = tree().record(node);
    return record == FileCatalogue::none || tree().isFolder(node)
               ? -1
               : static_cast<qint64>(catalogue().sizeBytes(record));
}

qint64 ItemModelFiles::modifiedOf(FileTree::Node node) const
{
    const FileCatalogue::Index record = tree().record(node);
    return record == FileCatalogue::none ? 0 : catalogue().lastModified(record);
}

// Folders stand first whatever the order, as in any file manager.
void ItemModelFiles::arrange(std::vector<FileTree::Node> &nodes) const
{
    struct Keyed
    {
        FileTree::Node node;
        bool folder;
        qint64 number;
        QCollatorSortKey name;
    };
    QCollator collator;
    collator.setNumericMode(true);
    std::vector<Keyed> keyed;
    keyed.reserve(nodes.size());
    for (const FileTree::Node node : nodes) {
        const qint64 number = m_sortColumn == Size       ? sizeOf(node)
                              : m_sortColumn == Modified ? modifiedOf(node)
                                                         : 0;
        const QString name = m_sortColumn == Folder ? text(node, Folder) : tree().name(node);
        keyed.push_back({node, tree().isFolder(node), number, collator.sortKey(name.toCaseFolded())});
    }
    const bool ascending = m_sortOrder == Qt::AscendingOrder;
    std::stable_sort(keyed.begin(), keyed.end(), [ascending](const Keyed &a, const Keyed &b) {
        if (a.folder != b.folder)
            return a.folder;
        const Keyed &first = ascending ? a : b;
        const Keyed &second = ascending ? b : a;
        return first.number != second.number ? first.number < second.number
                                             : first.name.compare(second.name) < 0;
    });
    std::transform(keyed.begin(), keyed.end(), nodes.begin(), [](const Keyed &key) { return key.node; });
}

void ItemModelFiles::sort(int column, Qt::SortOrder order)
{
    if (column < 0 || column >= ColumnCount || (column == m_sortColumn && order == m_sortOrder))
        return;
    m_sortColumn = column;
    m_sortOrder = order;
    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    for (auto &[parent, nodes] : m_children) {
        arrange(nodes);
        noteRows(nodes);
    }
    QModelIndexList after;
    for (const QModelIndex &index : before)
        after << createIndex(m_rowOf.at(node(index)), index.column(), node(index));
    changePersistentIndexList(before, after);
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

QString ItemModelFiles::text(FileTree::Node node, int column) const
{
    switch (column) {
    case Name:
        return tree().name(node);
    case Size:
        return sizeOf(node) < 0 ? QString() : QLocale::system().formattedDataSize(sizeOf(node));
    case Modified:
        return modifiedOf(node) == 0
                   ? QString()
                   : QLocale::system().toString(QDateTime::fromSecsSinceEpoch(modifiedOf(node)),
                                                QLocale::ShortFormat);
    case Folder:
        return tree().path(tree().parent(node));
    default:
        return {};
    }
}

QVariant ItemModelFiles::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const FileTree::Node shown = node(index);
    switch (role) {
    case Qt::DisplayRole:
        return text(shown, index.column());
    case Qt::DecorationRole:
        return index.column() != Name ? QVariant() : tree().isFolder(shown) ? m_folderIcon : m_fileIcon;
    case Qt::ToolTipRole:
        return QStringLiteral("<p>%1</p>").arg(tree().path(shown).toHtmlEscaped());
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(
            (index.column() == Size || index.column() == Modified ? Qt::AlignRight : Qt::AlignLeft) |
            Qt::AlignVCenter);
    default:
        return {};
    }
}

QVariant ItemModelFiles::headerData(int section, Qt::Orientation orientation, int role) const
{
    static constexpr const char *titles[] = {"IDS_COL_NAME", "IDS_COL_SIZE", "IDS_COL_MODIFIED",
                                             "IDS_COL_FOLDER"};
    if (orientation != Qt::Horizontal || section < 0 || section >= ColumnCount)
        return {};
    if (role == Qt::DisplayRole)
        return textFor(titles[section]);
    if (role == Qt::TextAlignmentRole && (section == Size || section == Modified))
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

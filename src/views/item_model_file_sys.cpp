#include "views/item_model_file_sys.h"

#include "base/texts.h"
#include "views/icons.h"
#include "work/background_job.h"
#include "work/find_files_thread.h"
#include "work/shown_text.h"

#include <QDateTime>
#include <QLocale>

namespace {
qint64 countFiles(const FileCatalogue &catalogue)
{
    qint64 files = 0;
    for (FileCatalogue::Index i = 0; i < catalogue.size(); ++i)
        files += catalogue.isDirectory(i) ? 0 : 1;
    return files;
}
} // namespace

ItemModelFileSys::ItemModelFileSys(OpenBackupPtr backup, QObject *parent)
    : QAbstractItemModel(parent),
      m_backup(std::move(backup)),
      m_fileCount(countFiles(catalogue())),
      m_folderIcon(listIcon("tree_folder")),
      m_fileIcon(listIcon("tree_file"))
{
}

ItemModelFileSys::~ItemModelFileSys() = default;

FileTree::Node ItemModelFileSys::node(const QModelIndex &index) const
{
    return index.isValid() ? static_cast<FileTree::Node>(index.internalId()) : FileTree::root;
}

QModelIndex ItemModelFileSys::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, childrenOf(node(parent))[static_cast<std::size_t>(row)]);
}

QModelIndex ItemModelFileSys::parent(const QModelIndex &child) const
{
    if (!child.isValid() || isFiltered())
        return {};
    const FileTree::Node above = tree().parent(node(child));
    if (above == FileTree::root || above == FileTree::none)
        return {};
    return createIndex(m_rowOf.at(above), 0, above);
}

int ItemModelFileSys::rowCount(const QModelIndex &parent) const
{
    if (parent.column() > 0 || isFlat(node(parent)))
        return 0;
    return static_cast<int>(childrenOf(node(parent)).size());
}

int ItemModelFileSys::columnCount(const QModelIndex &) const
{
    return ColumnCount;
}

bool ItemModelFileSys::hasChildren(const QModelIndex &parent) const
{
    if (!parent.isValid())
        return rowCount() > 0;
    return parent.column() == 0 && !isFiltered() && tree().childCount(node(parent)) > 0;
}

const std::vector<FileTree::Node> &ItemModelFileSys::childrenOf(FileTree::Node parent) const
{
    const auto known = m_children.find(parent);
    if (known != m_children.end())
        return known->second;
    std::vector<FileTree::Node> nodes = tree().children(parent);
    sortFiles(nodes, m_backup->manifest(), m_order);
    noteRows(nodes);
    return m_children.emplace(parent, std::move(nodes)).first->second;
}

void ItemModelFileSys::noteRows(const std::vector<FileTree::Node> &nodes) const
{
    for (std::size_t row = 0; row < nodes.size(); ++row)
        m_rowOf[nodes[row]] = static_cast<int>(row);
}

void ItemModelFileSys::setFilter(const QString &text)
{
    const QString wanted = text.trimmed();
    m_search.reset();
    if (!wanted.isEmpty() && wanted != m_filter) {
        search(wanted);
        return;
    }
    if (wanted != m_filter)
        show({}, {});
    emit filterApplied();
}

void ItemModelFileSys::search(const QString &text)
{
    auto worker = std::make_unique<FindFilesThread>(m_backup, text, m_order);
    const FindFilesThread *finding = worker.get();
    m_search = std::make_unique<BackgroundJob>(std::move(worker));
    connect(m_search.get(), &BackgroundJob::succeeded, this, [this, finding, text] {
        show(text, finding->found());
        m_search.release()->deleteLater(); // it is still sending
        emit filterApplied();
    });
    m_search->start();
}

void ItemModelFileSys::show(const QString &filter, std::vector<FileTree::Node> found)
{
    beginResetModel();
    m_filter = filter;
    m_children.clear();
    m_rowOf.clear();
    if (isFiltered()) {
        noteRows(found);
        m_children.emplace(FileTree::root, std::move(found));
    }
    endResetModel();
}

void ItemModelFileSys::sort(int column, Qt::SortOrder order)
{
    const FileOrder wanted{static_cast<FileColumn>(column), order};
    if (column < 0 || column >= ColumnCount || wanted == m_order)
        return;
    m_order = wanted;
    // More than this takes long enough to be noticed.
    constexpr int sortedAtOnce = 20000;
    if (isFiltered() && rowCount() > sortedAtOnce) {
        search(m_filter);
        return;
    }
    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    for (auto &[parent, nodes] : m_children) {
        sortFiles(nodes, m_backup->manifest(), m_order);
        noteRows(nodes);
    }
    QModelIndexList after;
    for (const QModelIndex &index : before)
        after << createIndex(m_rowOf.at(node(index)), index.column(), node(index));
    changePersistentIndexList(before, after);
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

QString ItemModelFileSys::text(FileTree::Node node, int column) const
{
    const qint64 size = sizeOfFile(m_backup->manifest(), node);
    const qint64 modified = modifiedOfFile(m_backup->manifest(), node);
    switch (column) {
    case Name:
        return tree().name(node);
    case Size:
        return size < 0 ? QString() : QLocale::system().formattedDataSize(size);
    case Modified:
        return modified == 0 ? QString()
                             : QLocale::system().toString(QDateTime::fromSecsSinceEpoch(modified),
                                                          QLocale::ShortFormat);
    case Folder:
        return tree().path(tree().parent(node));
    default:
        return {};
    }
}

QVariant ItemModelFileSys::data(const QModelIndex &index, int role) const
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
        return toolTipOf(tree().path(shown));
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(
            (index.column() == Size || index.column() == Modified ? Qt::AlignRight : Qt::AlignLeft) |
            Qt::AlignVCenter);
    default:
        return {};
    }
}

QVariant ItemModelFileSys::headerData(int section, Qt::Orientation orientation, int role) const
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

#include "views/item_model_records.h"

#include "base/texts.h"
#include "views/fonts.h"
#include "work/shown_text.h"

#include <QGuiApplication>
#include <QHash>
#include <QLocale>

namespace {
// What an index points to besides its row: the number of its group and one, 0 for what stands at the top.
constexpr quintptr atTop = 0;
} // namespace

ItemModelRecords::ItemModelRecords(RecordTable table, QObject *parent)
    : QAbstractItemModel(parent), m_table(std::move(table))
{
    if (m_table.group)
        makeGroups();
}

void ItemModelRecords::makeGroups()
{
    QHash<QString, qsizetype> numbers;
    for (int record = 0; record < m_table.rows; ++record) {
        const QString name = m_table.group(record);
        const qsizetype number = numbers.value(name, m_groups.size());
        if (number == m_groups.size()) {
            numbers.insert(name, number);
            m_groups.append({name, {}});
        }
        m_groups[number].records.append(record);
    }
}

bool ItemModelRecords::isGroup(const QModelIndex &index) const
{
    return m_table.group && index.isValid() && index.internalId() == atTop;
}

int ItemModelRecords::recordOf(const QModelIndex &index) const
{
    if (index.internalId() == atTop)
        return index.row();
    return m_groups.at(static_cast<qsizetype>(index.internalId()) - 1).records.at(index.row());
}

QModelIndex ItemModelRecords::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : atTop);
}

QModelIndex ItemModelRecords::parent(const QModelIndex &child) const
{
    if (!child.isValid() || child.internalId() == atTop)
        return {};
    return createIndex(static_cast<int>(child.internalId()) - 1, 0, atTop);
}

int ItemModelRecords::rowCount(const QModelIndex &parent) const
{
    if (!parent.isValid())
        return m_table.group ? static_cast<int>(m_groups.size()) : m_table.rows;
    const bool holdsRows = isGroup(parent) && parent.column() == 0;
    return holdsRows ? static_cast<int>(m_groups.at(parent.row()).records.size()) : 0;
}

int ItemModelRecords::columnCount(const QModelIndex &) const
{
    return static_cast<int>(m_table.columns.size());
}

Qt::ItemFlags ItemModelRecords::flags(const QModelIndex &index) const
{
    return isGroup(index) ? Qt::ItemIsEnabled : QAbstractItemModel::flags(index);
}

QVariant ItemModelRecords::groupData(const Group &group, int column, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return column == 0 ? QStringLiteral("%1 (%2)").arg(
                                 group.name.left(longestShown).simplified(),
                                 QLocale::system().toString(static_cast<qlonglong>(group.records.size())))
                           : QVariant();
    case Qt::ToolTipRole:
        return column == 0 ? toolTipOf(group.name) : QVariant();
    case Qt::FontRole:
        return strongFont(QGuiApplication::font());
    case RecordRole::Sort:
        return group.name.toCaseFolded();
    default:
        return {};
    }
}

QVariant ItemModelRecords::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    if (isGroup(index))
        return groupData(m_groups.at(index.row()), index.column(), role);
    const RecordColumn &column = m_table.columns.at(static_cast<std::size_t>(index.column()));
    const int record = recordOf(index);
    switch (role) {
    case Qt::DisplayRole:
        return column.text(record).left(longestShown).simplified();
    case Qt::DecorationRole:
        return m_table.picture && index.column() == 0 ? m_table.picture(record) : QVariant();
    case Qt::ToolTipRole:
        return toolTipOf(column.text(record));
    case Qt::TextAlignmentRole:
        return QVariant::fromValue((column.alignRight ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    case RecordRole::Sort:
        return column.sortKey(record);
    case RecordRole::Search:
        return m_table.searchText(record);
    case RecordRole::Detail:
        return m_table.detail(record);
    case RecordRole::Identity:
        return m_table.identity(record);
    case RecordRole::Number:
        return record;
    default:
        return {};
    }
}

QVariant ItemModelRecords::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount())
        return {};
    const RecordColumn &column = m_table.columns.at(static_cast<std::size_t>(section));
    if (role == Qt::DisplayRole)
        return textFor(column.title);
    if (role == Qt::TextAlignmentRole && column.alignRight)
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

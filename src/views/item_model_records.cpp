#include "views/item_model_records.h"

#include "base/texts.h"

ItemModelRecords::ItemModelRecords(RecordTable table, QObject *parent)
    : QAbstractTableModel(parent), m_table(std::move(table))
{
}

int ItemModelRecords::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_table.rows;
}

int ItemModelRecords::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_table.columns.size());
}

QVariant ItemModelRecords::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const RecordColumn &column = m_table.columns.at(static_cast<std::size_t>(index.column()));
    switch (role) {
    case Qt::DisplayRole:
        return column.text(index.row()).simplified();
    case Qt::ToolTipRole:
        return QStringLiteral("<p>%1</p>").arg(column.text(index.row()).left(1000).toHtmlEscaped());
    case Qt::TextAlignmentRole:
        return QVariant::fromValue((column.alignRight ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    case RecordRole::Sort:
        return column.sortKey(index.row());
    case RecordRole::Search:
        return m_table.searchText(index.row());
    case RecordRole::Detail:
        return m_table.detail(index.row());
    case RecordRole::Identity:
        return m_table.identity(index.row());
    case RecordRole::Number:
        return index.row();
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

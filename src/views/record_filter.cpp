#include "views/record_filter.h"

#include "views/record_roles.h"

namespace {
bool isGroup(const QModelIndex &index)
{
    return !index.flags().testFlag(Qt::ItemIsSelectable);
}
} // namespace

RecordFilter::RecordFilter(QObject *parent) : QSortFilterProxyModel(parent)
{
    setFilterRole(RecordRole::Search);
    setSortRole(RecordRole::Sort);
    setFilterCaseSensitivity(Qt::CaseInsensitive);
    setSortLocaleAware(true);
    setRecursiveFilteringEnabled(true);
}

bool RecordFilter::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    if (!isGroup(left))
        return QSortFilterProxyModel::lessThan(left, right);
    const int order = QString::localeAwareCompare(left.data(RecordRole::Sort).toString(),
                                                  right.data(RecordRole::Sort).toString());
    return sortOrder() == Qt::AscendingOrder ? order < 0 : order > 0;
}

int RecordFilter::recordCount() const
{
    int count = 0;
    for (int row = 0; row < rowCount(); ++row)
        count += isGroup(index(row, 0)) ? rowCount(index(row, 0)) : 1;
    return count;
}

QModelIndexList RecordFilter::records() const
{
    QModelIndexList records;
    for (int row = 0; row < rowCount(); ++row) {
        const QModelIndex top = index(row, 0);
        if (!isGroup(top))
            records.append(top);
        for (int below = 0; isGroup(top) && below < rowCount(top); ++below)
            records.append(index(below, 0, top));
    }
    return records;
}

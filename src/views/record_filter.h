#pragma once

#include <QSortFilterProxyModel>

/// Filters and sorts records by what their models give under RecordRole. Groups keep their order of names,
/// however the records in them are sorted.
class RecordFilter : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit RecordFilter(QObject *parent = nullptr);

    /// Rows that stand for records: all but groups, in the order shown.
    QModelIndexList records() const;
    int recordCount() const;

protected:
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;
};

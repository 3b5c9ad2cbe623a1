#pragma once

#include "views/record_roles.h"
#include "views/record_table.h"

#include <QAbstractTableModel>

/// The records of a class as rows.
class ItemModelRecords : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit ItemModelRecords(RecordTable table, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    RecordTable m_table;
};

#pragma once

#include "views/record_roles.h"
#include "views/record_table.h"

#include <QAbstractItemModel>
#include <QList>

/// Records as a list, or as a tree of groups with their records below when the table has groups. A group
/// cannot be selected: what acts on a selection acts on records.
class ItemModelRecords : public QAbstractItemModel
{
    Q_OBJECT

public:
    explicit ItemModelRecords(RecordTable table, QObject *parent = nullptr);

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    struct Group
    {
        QString name;
        QList<int> records;
    };

    RecordTable m_table;
    QList<Group> m_groups; // in the order in which they are met

    void makeGroups();
    bool isGroup(const QModelIndex &index) const;
    int recordOf(const QModelIndex &index) const;
    QVariant groupData(const Group &group, int column, int role) const;
};

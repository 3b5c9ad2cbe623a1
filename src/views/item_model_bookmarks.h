#pragma once

#include "views/record_roles.h"
#include "work/record_source.h"

#include <QAbstractItemModel>
#include <QHash>

/// A tree of bookmarks, folders first as they are stored. Keeps the records alive.
class ItemModelBookmarks : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Column { Title, Url, ColumnCount };

    explicit ItemModelBookmarks(RecordsPtr records, QObject *parent = nullptr);

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    const BookmarkNode *node(const QModelIndex &index) const;

private:
    RecordsPtr m_records;
    QHash<const BookmarkNode *, int> m_rows; // of each node among its siblings

    const BookmarkTree &childrenOf(const QModelIndex &parent) const;
    void remember(const BookmarkTree &tree);
};

#pragma once

#include "work/file_order.h"

#include <QAbstractItemModel>
#include <QIcon>

#include <unordered_map>
#include <vector>

class BackgroundJob;

/// The files of a backup as a tree whose folders are read when they are expanded, or as the flat list of
/// those whose name holds a text. Needs a backup with an index.
class ItemModelFileSys : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Column { Name, Size, Modified, Folder, ColumnCount };

    explicit ItemModelFileSys(OpenBackupPtr backup, QObject *parent = nullptr);
    ~ItemModelFileSys() override;

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    bool hasChildren(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override;

    /// Looks for the files whose name holds `text`, on a worker, and then shows them as a list; shows the
    /// tree again when it is empty. What was shown before stays until then.
    void setFilter(const QString &text);
    /// A list is shown.
    bool isFiltered() const { return !m_filter.isEmpty(); }
    bool isSearching() const { return m_search != nullptr; }
    /// Files, not folders, of the whole backup.
    qint64 fileCount() const { return m_fileCount; }
    FileTree::Node node(const QModelIndex &index) const;

signals:
    /// What was asked for last is shown now.
    void filterApplied();

private:
    const FileTree &tree() const { return m_backup->manifest().tree(); }
    const FileCatalogue &catalogue() const { return m_backup->manifest().catalogue(); }
    bool isFlat(FileTree::Node node) const { return isFiltered() && node != FileTree::root; }
    const std::vector<FileTree::Node> &childrenOf(FileTree::Node parent) const;
    void noteRows(const std::vector<FileTree::Node> &nodes) const;
    void search(const QString &text);
    void show(const QString &filter, std::vector<FileTree::Node> found);
    QString text(FileTree::Node node, int column) const;

    OpenBackupPtr m_backup;
    // Of the folders looked into so far, which is done when a view first asks for their rows.
    mutable std::unordered_map<FileTree::Node, std::vector<FileTree::Node>> m_children;
    mutable std::unordered_map<FileTree::Node, int> m_rowOf; // within its parent
    QString m_filter;
    FileOrder m_order;
    std::unique_ptr<BackgroundJob> m_search;
    qint64 m_fileCount = 0;
    QIcon m_folderIcon;
    QIcon m_fileIcon;
};

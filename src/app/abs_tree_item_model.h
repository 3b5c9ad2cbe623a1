#pragma once

#include <QAbstractItemModel>

#include <memory>
#include <vector>

/// One node of a small tree that is kept whole in memory.
class TreeNode
{
public:
    virtual ~TreeNode() = default;

    virtual QVariant data(int role) const = 0;
    TreeNode *parent() const { return m_parent; }
    const std::vector<std::unique_ptr<TreeNode>> &children() const { return m_children; }
    int row() const;

private:
    friend class AbsTreeItemModel;

    TreeNode *m_parent = nullptr;
    std::vector<std::unique_ptr<TreeNode>> m_children;
};

/// An item model of one column over nodes that it owns.
class AbsTreeItemModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    explicit AbsTreeItemModel(QObject *parent = nullptr);
    ~AbsTreeItemModel() override;

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;

    /// Null for an invalid index.
    TreeNode *node(const QModelIndex &index) const;
    QModelIndex indexOf(const TreeNode *node) const;

protected:
    /// Below the invisible root when `parent` is null. Gives the added node.
    TreeNode *append(TreeNode *parent, std::unique_ptr<TreeNode> node);
    void remove(TreeNode *node);

private:
    TreeNode *nodeOrRoot(const QModelIndex &index) const;

    std::unique_ptr<TreeNode> m_root;
};

#include "app/abs_tree_item_model.h"

#include <algorithm>

namespace {
class RootNode : public TreeNode
{
public:
    QVariant data(int) const override { return {}; }
};
} // namespace

int TreeNode::row() const
{
    const auto &siblings = m_parent->m_children;
    const auto self = std::find_if(siblings.begin(), siblings.end(),
                                   [this](const auto &node) { return node.get() == this; });
    return static_cast<int>(self - siblings.begin());
}

AbsTreeItemModel::AbsTreeItemModel(QObject *parent)
    : QAbstractItemModel(parent), m_root(std::make_unique<RootNode>())
{
}

AbsTreeItemModel::~AbsTreeItemModel() = default;

TreeNode *AbsTreeItemModel::node(const QModelIndex &index) const
{
    return index.isValid() ? static_cast<TreeNode *>(index.internalPointer()) : nullptr;
}

TreeNode *AbsTreeItemModel::nodeOrRoot(const QModelIndex &index) const
{
    return index.isValid() ? node(index) : m_root.get();
}

QModelIndex AbsTreeItemModel::indexOf(const TreeNode *node) const
{
    if (!node || node == m_root.get())
        return {};
    return createIndex(node->row(), 0, node);
}

QModelIndex AbsTreeItemModel::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, nodeOrRoot(parent)->m_children[static_cast<std::size_t>(row)].get());
}

QModelIndex AbsTreeItemModel::parent(const QModelIndex &child) const
{
    const TreeNode *below = node(child);
    return below ? indexOf(below->m_parent) : QModelIndex();
}

int AbsTreeItemModel::rowCount(const QModelIndex &parent) const
{
    return parent.column() > 0 ? 0 : static_cast<int>(nodeOrRoot(parent)->m_children.size());
}

int AbsTreeItemModel::columnCount(const QModelIndex &) const
{
    return 1;
}

QVariant AbsTreeItemModel::data(const QModelIndex &index, int role) const
{
    return checkIndex(index, CheckIndexOption::IndexIsValid) ? node(index)->data(role) : QVariant();
}

TreeNode *AbsTreeItemModel::append(TreeNode *parent, std::unique_ptr<TreeNode> node)
{
    TreeNode *above = parent ? parent : m_root.get();
    const int row = static_cast<int>(above->m_children.size());
    beginInsertRows(indexOf(above), row, row);
    node->m_parent = above;
    TreeNode *added = above->m_children.emplace_back(std::move(node)).get();
    endInsertRows();
    return added;
}

void AbsTreeItemModel::remove(TreeNode *node)
{
    TreeNode *above = node->m_parent;
    const int row = node->row();
    beginRemoveRows(indexOf(above), row, row);
    above->m_children.erase(above->m_children.begin() + row);
    endRemoveRows();
}

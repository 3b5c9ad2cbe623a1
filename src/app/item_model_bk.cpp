#include "app/item_model_bk.h"

#include "base/texts.h"
#include "views/icons.h"

#include <QFileInfo>

namespace {
const char *iconOf(NodeKind kind)
{
    switch (kind) {
    case NodeKind::BackupsRoot:
        return "tree_backups";
    case NodeKind::LocalDatabasesRoot:
    case NodeKind::LocalDatabase:
        return "tree_local_db";
    case NodeKind::Backup:
        return "tree_backup";
    case NodeKind::Messages:
        return "tree_messages";
    case NodeKind::FileSystem:
        return "tree_files";
    }
    return "tree_backup";
}
} // namespace

QVariant BkNode::data(int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return m_label.simplified();
    case Qt::DecorationRole:
        return listIcon(iconOf(m_kind));
    case Qt::ToolTipRole:
        if (m_backup)
            return QStringLiteral("<p>%1<br/>%2</p>")
                .arg(m_label.toHtmlEscaped(), m_backup->info().folder.toHtmlEscaped());
        return m_folder.isEmpty() ? QVariant()
                                  : QVariant(QStringLiteral("<p>%1</p>").arg(m_folder.toHtmlEscaped()));
    default:
        return {};
    }
}

ItemModelBK::ItemModelBK(QObject *parent)
    : AbsTreeItemModel(parent),
      m_backups(add(nullptr, NodeKind::BackupsRoot, textFor("IDS_ROOT_BK"))),
      m_localDatabases(add(nullptr, NodeKind::LocalDatabasesRoot, textFor("IDS_ROOT_LOCALDB")))
{
}

BkNode *ItemModelBK::add(BkNode *parent, NodeKind kind, const QString &label)
{
    return static_cast<BkNode *>(append(parent, std::make_unique<BkNode>(kind, label)));
}

BkNode *ItemModelBK::addBackup(const OpenBackupPtr &backup, const BackupCounts &counts)
{
    auto node = std::make_unique<BkNode>(NodeKind::Backup, backup->info().displayName);
    node->m_backup = backup;
    auto *added = static_cast<BkNode *>(append(m_backups, std::move(node)));
    add(added, NodeKind::Messages, textFor("IDS_NODE_SMS_%1").arg(counts.messages));
    add(added, NodeKind::FileSystem, textFor("IDS_FILE_SYSTEM"));
    return added;
}

BkNode *ItemModelBK::addLocalDatabase(const QString &folder)
{
    auto node = std::make_unique<BkNode>(NodeKind::LocalDatabase, QFileInfo(folder).fileName());
    node->m_folder = folder;
    return static_cast<BkNode *>(append(m_localDatabases, std::move(node)));
}

DataSource ItemModelBK::sourceOf(BkNode *node) const
{
    if (!node || node == m_backups || node == m_localDatabases)
        return {};
    switch (node->kind()) {
    case NodeKind::Backup:
        return {node, nullptr};
    case NodeKind::LocalDatabase:
        return {nullptr, node};
    default:
        return sourceOf(static_cast<BkNode *>(node->parent()));
    }
}

QSet<QString> ItemModelBK::backupUids() const
{
    QSet<QString> uids;
    for (const auto &child : m_backups->children())
        uids.insert(backupUid(static_cast<const BkNode *>(child.get())->backup()->info().folder));
    return uids;
}

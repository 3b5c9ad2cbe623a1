#include "app/item_model_bk.h"

#include "base/error.h"
#include "base/texts.h"
#include "messages/message_source.h"
#include "personal/personal_source.h"
#include "views/icons.h"
#include "views/record_roles.h"
#include "work/shown_text.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QPalette>

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
    case NodeKind::MissingBackup:
        return "tree_backup";
    case NodeKind::MessageFile:
    case NodeKind::Messages:
        return "tree_messages";
    case NodeKind::Contacts:
        return "tree_contacts";
    case NodeKind::Calendar:
        return "tree_calendar";
    case NodeKind::Notes:
        return "tree_notes";
    case NodeKind::CallHistory:
        return "tree_calls";
    case NodeKind::Bookmarks:
        return "tree_bookmarks";
    case NodeKind::FileSystem:
        return "tree_files";
    case NodeKind::Photos:
        return "tree_photos";
    case NodeKind::Videos:
        return "tree_videos";
    case NodeKind::Voicemail:
        return "tree_voicemail";
    case NodeKind::Recordings:
        return "tree_recordings";
    }
    return "tree_backup";
}

struct ClassNode
{
    NodeKind kind;
    const char *label;
};

// Backups and local databases list their classes in orders of their own.
constexpr ClassNode backupClasses[] = {
    {NodeKind::Photos, "IDS_NODE_PHOTOS_%1"},         {NodeKind::Videos, "IDS_NODE_VIDEOS_%1"},
    {NodeKind::Messages, "IDS_NODE_SMS_%1"},          {NodeKind::Contacts, "IDS_NODE_CONTACTS_%1"},
    {NodeKind::Voicemail, "IDS_NODE_VOICEMAIL_%1"},   {NodeKind::Calendar, "IDS_NODE_CALENDAR_%1"},
    {NodeKind::Notes, "IDS_NODE_NOTES_%1"},           {NodeKind::CallHistory, "IDS_NODE_CALLS_%1"},
    {NodeKind::Recordings, "IDS_NODE_RECORDINGS_%1"}, {NodeKind::Bookmarks, "IDS_NODE_BOOKMARKS_%1"}};
constexpr ClassNode localClasses[] = {
    {NodeKind::Messages, "IDS_NODE_SMS_%1"},        {NodeKind::Contacts, "IDS_NODE_CONTACTS_%1"},
    {NodeKind::Calendar, "IDS_NODE_CALENDAR_%1"},   {NodeKind::Notes, "IDS_NODE_NOTES_%1"},
    {NodeKind::Bookmarks, "IDS_NODE_BOOKMARKS_%1"}, {NodeKind::CallHistory, "IDS_NODE_CALLS_%1"}};

QString countText(const std::optional<qint64> &count)
{
    return count ? QString::number(*count) : QStringLiteral("?");
}

QString countText(NodeKind kind, const std::optional<BackupCounts> &counts)
{
    return counts ? countText(counts->of(*dataClassOf(kind))) : QStringLiteral("\u2026");
}

// A number that lacks something is none.
std::optional<qint64> countOf(PersonalSource &records, NodeKind kind, const QString &folder, Report &report)
{
    Report found;
    std::optional<qint64> count;
    try {
        count = kind == NodeKind::Messages ? countLocalMessages(folder, found)
                                           : records.count(*dataClassOf(kind), found);
    } catch (const Error &error) {
        found.add({.kind = IssueKind::Damaged,
                   .what = "IDS_ISSUE_NOT_COUNTED",
                   .where = dataClassName(*dataClassOf(kind)),
                   .reason = error.sentence()});
    }
    report.merge(found);
    return found.isFailure() ? std::nullopt : count;
}
} // namespace

std::optional<DataClass> dataClassOf(NodeKind kind)
{
    switch (kind) {
    case NodeKind::Messages:
        return DataClass::Messages;
    case NodeKind::Contacts:
        return DataClass::Contacts;
    case NodeKind::Voicemail:
        return DataClass::Voicemail;
    case NodeKind::Calendar:
        return DataClass::Calendar;
    case NodeKind::Notes:
        return DataClass::Notes;
    case NodeKind::CallHistory:
        return DataClass::Calls;
    case NodeKind::Recordings:
        return DataClass::Recordings;
    case NodeKind::Bookmarks:
        return DataClass::Bookmarks;
    case NodeKind::FileSystem:
        return DataClass::Files;
    case NodeKind::Photos:
        return DataClass::Photos;
    case NodeKind::Videos:
        return DataClass::Videos;
    default:
        return std::nullopt;
    }
}

QVariant BkNode::data(int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return m_label.left(longestShown).simplified();
    case Qt::DecorationRole:
        return listIcon(iconOf(m_kind));
    case Qt::ToolTipRole:
        if (m_kind == NodeKind::MissingBackup)
            return toolTipOf(m_folder + QLatin1Char('\n') + m_reason);
        return m_backup ? toolTipOf(m_label + QLatin1Char('\n') + m_backup->info().folder)
                        : toolTipOf((QStringList(m_folder) + problemsOf(m_report)).join(QLatin1Char('\n')));
    case Qt::ForegroundRole:
        if (m_kind == NodeKind::MissingBackup)
            return QGuiApplication::palette().color(QPalette::Disabled, QPalette::Text);
        return {};
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

BkNode *ItemModelBK::addBackup(const OpenBackupPtr &backup, const std::optional<BackupCounts> &counts)
{
    auto node = std::make_unique<BkNode>(NodeKind::Backup, backup->info().displayName);
    node->m_backup = backup;
    auto *added = static_cast<BkNode *>(append(m_backups, std::move(node)));
    for (const auto &[kind, label] : backupClasses)
        add(added, kind, textFor(label).arg(countText(kind, counts)));
    add(added, NodeKind::FileSystem, textFor("IDS_FILE_SYSTEM"));
    return added;
}

BkNode *ItemModelBK::addMissingBackup(const QString &folder, const QString &why, const QString &reason)
{
    const QString name = QFileInfo(folder).fileName();
    auto node = std::make_unique<BkNode>(NodeKind::MissingBackup, QStringLiteral("%1 (%2)").arg(name, why));
    node->m_folder = folder;
    node->m_reason = reason;
    return static_cast<BkNode *>(append(m_backups, std::move(node)));
}

BkNode *ItemModelBK::findMissingBackup(const QString &folder) const
{
    for (const auto &child : m_backups->children()) {
        auto *node = static_cast<BkNode *>(child.get());
        if (node->kind() == NodeKind::MissingBackup && backupUid(node->folder()) == backupUid(folder))
            return node;
    }
    return nullptr;
}

void ItemModelBK::setLoaded(BkNode *backup, const BackupCounts &counts)
{
    backup->m_isLoaded = true;
    backup->m_report = counts.report;
    for (const auto &child : backup->children()) {
        auto *node = static_cast<BkNode *>(child.get());
        for (const auto &[kind, label] : backupClasses)
            if (kind == node->kind())
                node->m_label = textFor(label).arg(countText(kind, counts));
        emit dataChanged(indexOf(node), indexOf(node));
    }
}

BkNode *ItemModelBK::findLocalDatabase(const QString &folder) const
{
    for (const auto &child : m_localDatabases->children())
        if (static_cast<const BkNode *>(child.get())->folder() == folder)
            return static_cast<BkNode *>(child.get());
    return nullptr;
}

BkNode *ItemModelBK::addLocalDatabase(const QString &folder)
{
    const std::unique_ptr<PersonalSource> records = openLocalRecords(folder);
    Report report;
    BkNode *node = findLocalDatabase(folder);
    if (!node) {
        auto made = std::make_unique<BkNode>(NodeKind::LocalDatabase, QFileInfo(folder).fileName());
        made->m_folder = folder;
        node = static_cast<BkNode *>(append(m_localDatabases, std::move(made)));
        for (const auto &[kind, label] : localClasses)
            add(node, kind, {});
    }
    for (const auto &child : node->children()) {
        auto *of = static_cast<BkNode *>(child.get());
        for (const auto &[kind, label] : localClasses)
            if (kind == of->kind())
                of->m_label = textFor(label).arg(countText(countOf(*records, kind, folder, report)));
        emit dataChanged(indexOf(of), indexOf(of));
    }
    node->m_report = report;
    for (const QString &problem : problemsOf(report))
        qWarning("The local database %s: %s", qUtf8Printable(folder), qUtf8Printable(problem));
    return node;
}

BkNode *ItemModelBK::addMessageFile(const QString &path, qint64 messages)
{
    auto node = std::make_unique<BkNode>(NodeKind::MessageFile, QFileInfo(path).fileName());
    node->m_folder = path;
    auto *added = static_cast<BkNode *>(append(m_backups, std::move(node)));
    return add(added, NodeKind::Messages, textFor("IDS_NODE_SMS_%1").arg(messages));
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
    case NodeKind::MessageFile:
        return {nullptr, nullptr, node};
    case NodeKind::MissingBackup:
        return {nullptr, nullptr, nullptr, node};
    default:
        return sourceOf(static_cast<BkNode *>(node->parent()));
    }
}

QSet<QString> ItemModelBK::backupUids() const
{
    QSet<QString> uids;
    for (const auto &child : m_backups->children())
        if (const OpenBackupPtr &backup = static_cast<const BkNode *>(child.get())->backup())
            uids.insert(backupUid(backup->info().folder));
    return uids;
}

#pragma once

#include "app/abs_tree_item_model.h"
#include "work/load_bk_thread.h"

#include "personal/data_class.h"

#include <QSet>

#include <optional>

/// What a node of the data-source tree stands for. The numbers are fixed.
enum class NodeKind {
    BackupsRoot = 1,
    LocalDatabasesRoot = 2,
    Backup = 3,
    LocalDatabase = 4,
    Messages = 5,
    Contacts = 6,
    Voicemail = 7,
    Calendar = 8,
    Notes = 9,
    CallHistory = 10,
    Recordings = 11,
    Bookmarks = 12,
    FileSystem = 13,
    Photos = 14,
    Videos = 15,
    MessageFile = 16,  // a message database that does not stand in a backup
    MissingBackup = 17 // one that is listed, and not there or not readable just now
};

/// The class of data that a node lists; nothing for the kinds that are none.
std::optional<DataClass> dataClassOf(NodeKind kind);

/// A node of the data-source tree.
class BkNode : public TreeNode
{
public:
    BkNode(NodeKind kind, QString label) : m_kind(kind), m_label(std::move(label)) {}

    QVariant data(int role) const override;
    NodeKind kind() const { return m_kind; }
    const QString &label() const { return m_label; }

    /// Of a Backup node; null otherwise.
    const OpenBackupPtr &backup() const { return m_backup; }
    /// Of a Backup node: its index was built and its classes were counted since the program started.
    bool isLoaded() const { return m_isLoaded; }
    /// Of a Backup node: what loading it could not read.
    const Report &report() const { return m_report; }
    /// Of a LocalDatabase or MissingBackup node: its folder. Of a MessageFile node: the file.
    const QString &folder() const { return m_folder; }
    /// Of a MissingBackup node: why it cannot be opened.
    const QString &reason() const { return m_reason; }

private:
    friend class ItemModelBK;

    NodeKind m_kind;
    QString m_label;
    OpenBackupPtr m_backup;
    bool m_isLoaded = false;
    Report m_report;
    QString m_folder;
    QString m_reason;
};

/// What a selection in the tree belongs to: at most one of them is set.
struct DataSource
{
    BkNode *backup = nullptr;
    BkNode *localDatabase = nullptr;
    BkNode *messageFile = nullptr;
    BkNode *missingBackup = nullptr;

    /// The one that is set, or null.
    BkNode *node() const
    {
        return backup ? backup : localDatabase ? localDatabase : messageFile ? messageFile : missingBackup;
    }
};

/// The tree of data sources: the opened backups and the local databases, each with its classes of data.
class ItemModelBK : public AbsTreeItemModel
{
    Q_OBJECT

public:
    explicit ItemModelBK(QObject *parent = nullptr);

    /// A backup that is not loaded yet, with the counts of the last time. Without any the classes show that
    /// they were not counted yet.
    BkNode *addBackup(const OpenBackupPtr &backup, const std::optional<BackupCounts> &counts);
    /// A listed backup that cannot be opened now: its name is greyed, with `why` beside it.
    BkNode *addMissingBackup(const QString &folder, const QString &why, const QString &reason);
    /// Null when no backup of that folder is missing.
    BkNode *findMissingBackup(const QString &folder) const;
    /// Takes what loading the backup has counted.
    void setLoaded(BkNode *backup, const BackupCounts &counts);
    /// Adds the node of a local database, or brings the counts of the one that is there up to date.
    BkNode *addLocalDatabase(const QString &folder);
    /// Adds the node of a message database that was opened by hand; gives the node of its messages.
    BkNode *addMessageFile(const QString &path, qint64 messages);
    void removeNode(BkNode *node) { remove(node); }

    BkNode *bkNode(const QModelIndex &index) const { return static_cast<BkNode *>(node(index)); }
    /// A backup or local database itself, or what a class of data is below of.
    DataSource sourceOf(BkNode *node) const;
    BkNode *backupsRoot() const { return m_backups; }
    BkNode *localDatabasesRoot() const { return m_localDatabases; }
    /// The uids of the opened backups.
    QSet<QString> backupUids() const;

private:
    BkNode *add(BkNode *parent, NodeKind kind, const QString &label);
    BkNode *findLocalDatabase(const QString &folder) const;

    BkNode *m_backups;
    BkNode *m_localDatabases;
};

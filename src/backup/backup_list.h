#pragma once

#include "backup/cache_database.h"

#include <QHash>
#include <QList>

#include <optional>

/// One backup that the user has loaded and not unlisted.
struct ListedBackup
{
    QString uid;
    QString path; // absolute

    bool operator==(const ListedBackup &) const = default;
};

/// The backups that the window lists at its start, in "cache_list.db" of the application's data folder: it
/// outlives the cache, which may be cleared at any time. A list that is damaged is begun anew; one that
/// cannot be used is empty.
class BackupList
{
public:
    BackupList();

    /// Does nothing for a uid that is listed already.
    void addBackup(const QString &uid, const QString &path);
    void removeBackup(const QString &uid);
    QList<ListedBackup> backups();
    /// The same, or nothing when the list cannot be used: for those who take what is not listed away.
    std::optional<QList<ListedBackup>> backupsIfUsable();

    /// What a listed backup held when it was last loaded, by the name of the class.
    void setCounts(const QString &uid, const QHash<QString, qint64> &counts);
    QHash<QString, qint64> counts(const QString &uid);

private:
    CacheDatabase m_database;
};

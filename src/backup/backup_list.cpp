#include "backup/backup_list.h"

#include "base/app_folders.h"

namespace {
// Not in the script of the list, so that a list without this table is as good as one with it.
constexpr char16_t countsTable[] =
    u"create table if not exists cache_counts(uid VARCHAR NOT NULL, class VARCHAR "
    u"NOT NULL, count INTEGER NOT NULL, PRIMARY KEY(uid, class))";

Sqlite3Sql withUid(const char16_t *sql, const QString &uid)
{
    return Sqlite3Sql(QString::fromUtf16(sql)).addTextParam(uid);
}

void forgetCounts(Sqlite3DB &db, const QString &uid)
{
    db.executeThrow(QString::fromUtf16(countsTable));
    db.executeThrow(withUid(u"delete from cache_counts where uid=?", uid));
}
} // namespace

BackupList::BackupList()
    : m_database(appDataFolder().filePath(QStringLiteral("cache_list.db")),
                 QStringLiteral(":/res/cache_list.sql"))
{
}

void BackupList::addBackup(const QString &uid, const QString &path)
{
    m_database.change([&](Sqlite3DB &db) {
        if (!db.queryThrow(withUid(u"select uid from cache_list where uid like ?", uid)).moveNext())
            db.executeThrow(withUid(u"insert into cache_list(uid,path) values(?,?)", uid).addTextParam(path));
    });
}

void BackupList::removeBackup(const QString &uid)
{
    m_database.change([&](Sqlite3DB &db) {
        db.executeThrow(withUid(u"delete from cache_list where uid like ?", uid));
        forgetCounts(db, uid);
    });
}

QList<ListedBackup> BackupList::backups()
{
    return backupsIfUsable().value_or(QList<ListedBackup>());
}

std::optional<QList<ListedBackup>> BackupList::backupsIfUsable()
{
    QList<ListedBackup> backups;
    const bool isRead = m_database.read([&](Sqlite3DB &db) {
        backups.clear();
        Sqlite3Cursor row = db.queryThrow(QStringLiteral("select * from cache_list"));
        const int path = row.columnIndex(QStringLiteral("path"));
        const int uid = row.columnIndex(QStringLiteral("uid"));
        while (row.moveNext())
            backups.append({row.getText(uid), row.getText(path)});
    });
    return isRead ? std::optional(backups) : std::nullopt;
}

void BackupList::setCounts(const QString &uid, const QHash<QString, qint64> &counts)
{
    m_database.change([&](Sqlite3DB &db) {
        forgetCounts(db, uid);
        for (auto count = counts.cbegin(); count != counts.cend(); ++count)
            db.executeThrow(withUid(u"insert into cache_counts(uid,class,count) values(?,?,?)", uid)
                                .addTextParam(count.key())
                                .addInt64Param(count.value()));
    });
}

QHash<QString, qint64> BackupList::counts(const QString &uid)
{
    QHash<QString, qint64> counts;
    m_database.read([&](Sqlite3DB &db) {
        if (!db.hasTable(QStringLiteral("cache_counts")))
            return;
        Sqlite3Cursor row = db.queryThrow(withUid(u"select class, count from cache_counts where uid=?", uid));
        while (row.moveNext())
            counts.insert(row.getText(0), row.getInt64(1));
    });
    return counts;
}

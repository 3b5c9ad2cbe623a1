#include "backup/database_log.h"

#include "base/error.h"
#include "sqlite/sqlite3_db.h"

void applyLog(const QString &database)
{
    Sqlite3DB db;
    db.openThrow(database, SqliteOpen::ReadWrite);
    // A copy that breaks off with the machine is made again.
    if (!db.exec(QStringLiteral("pragma synchronous=off; pragma journal_mode=delete")))
        throw Error(QStringLiteral("can not read %1. %2").arg(database, db.lastError()));
}

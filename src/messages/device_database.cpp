#include "messages/device_database.h"

#include "base/error.h"
#include "sqlite/sqlite3_db.h"

#include <sqlite3.h>

QString openDeviceDatabase(Sqlite3DB &db, const QString &path)
{
    try {
        db.openThrow(path);
        return {};
    } catch (const Error &error) {
        // A file that somebody has locked is whole: it is not to be read behind the lock.
        const bool damaged = db.lastError() == QString::fromUtf8(sqlite3_errstr(SQLITE_CORRUPT));
        if (!damaged || !db.open(path, SqliteOpen::Salvage))
            throw;
        return error.sentence();
    }
}

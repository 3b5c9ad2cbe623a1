#include "messages/device_database.h"

#include "base/error.h"
#include "sqlite/sqlite3_db.h"

QString openDeviceDatabase(Sqlite3DB &db, const QString &path)
{
    try {
        db.openThrow(path);
        return {};
    } catch (const Error &error) {
        if (!db.open(path, SqliteOpen::Salvage))
            throw;
        return error.sentence();
    }
}

#include "backup/device_database.h"

#include "base/error.h"
#include "sqlite/sqlite3_db.h"

std::optional<QString> fetchDeviceDatabase(FileSource &source, const SourceFile &file)
{
    try {
        return source.fetchDatabase(file);
    } catch (const Error &error) {
        throw error.withContext(file.display()).at(file.display());
    }
}

bool openDeviceDatabase(Sqlite3DB &db, FileSource &source, const SourceFile &file)
{
    const std::optional<QString> path = fetchDeviceDatabase(source, file);
    if (path)
        db.openForeign({*path, file.display()});
    return path.has_value();
}

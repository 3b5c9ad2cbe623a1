#include "backup/device_database.h"

#include "base/error.h"
#include "base/report.h"
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

bool openDeviceDatabase(Sqlite3DB &db, FileSource &source, const SourceFile &file, Report &report)
{
    if (!db.isOpen()) {
        if (!openDeviceDatabase(db, source, file))
            return false;
        db.checkPages();
    }
    if (!db.damage().isEmpty())
        report.add({.kind = IssueKind::Damaged,
                    .what = "IDS_ISSUE_DATABASE_FAULTS",
                    .where = db.name(),
                    .reason = db.damage()});
    return true;
}

#include "cli/item_counts.h"

#include "backup/backup_manifest.h"
#include "base/error.h"
#include "base/report.h"
#include "cli/json_writer.h"
#include "cli/media_command.h"
#include "cli/personal_command.h"
#include "messages/message_source.h"
#include "sqlite/sqlite3_db.h"
#include "work/class_count.h"

#include <QDir>
#include <QFileInfo>

namespace {
template <typename Count>
std::optional<qint64> countOrNothing(DataClass dataClass, Report &report, Count count)
{
    try {
        return count();
    } catch (const Error &error) {
        report.add({.kind = IssueKind::Damaged,
                    .what = "IDS_ISSUE_NOT_COUNTED",
                    .where = dataClassName(dataClass),
                    .reason = error.sentence()});
        return std::nullopt;
    }
}

/// What is damaged in a store, which need not be there.
QString faultOf(const QString &path)
{
    if (!QFileInfo::exists(path))
        return {};
    Sqlite3DB db;
    db.openThrow(path);
    db.checkPages();
    return db.damage();
}

QString storeFile(DataClass dataClass)
{
    switch (dataClass) {
    case DataClass::Contacts:
        return QStringLiteral("contacts.db");
    case DataClass::Calls:
        return QStringLiteral("calls.db");
    case DataClass::Notes:
        return QStringLiteral("notes.db");
    case DataClass::Calendar:
        return QStringLiteral("calendars.db");
    case DataClass::Bookmarks:
        return QStringLiteral("bookmarks.db");
    default:
        return QStringLiteral("messages.db");
    }
}
} // namespace

ItemCounts countItems(BackupManifest &backup, Report &report)
{
    const std::unique_ptr<PersonalSource> records = openDeviceRecords(backup, backup.info().deviceId);
    ItemCounts counts;
    for (const DataClass dataClass : allDataClasses)
        if (dataClass != DataClass::Files)
            counts.append({dataClass, countOrNothing(dataClass, report, [&] {
                               return countClass(backup, *records, dataClass, report);
                           })});
    return counts;
}

ItemCounts countLocalItems(const QString &folder, Report &report)
{
    const std::unique_ptr<PersonalSource> records = openLocalRecords(folder);
    ItemCounts counts;
    for (const DataClass dataClass : allDataClasses) {
        if (dataClass != DataClass::Messages && !isPersonalClass(dataClass))
            continue;
        counts.append({dataClass, countOrNothing(dataClass, report, [&]() -> std::optional<qint64> {
                           const QString fault = faultOf(QDir(folder).filePath(storeFile(dataClass)));
                           if (!fault.isEmpty())
                               throw Error(fault, ErrorKind::Damaged);
                           return dataClass == DataClass::Messages ? countLocalMessages(folder, report)
                                                                   : records->count(dataClass, report);
                       })});
    }
    return counts;
}

void writeCounts(JsonWriter &json, const ItemCounts &counts)
{
    json.beginObject();
    for (const auto &[dataClass, count] : counts) {
        json.key(qUtf8Printable(dataClassName(dataClass)));
        if (count)
            json.number(*count);
        else
            json.null();
    }
    json.endObject();
}

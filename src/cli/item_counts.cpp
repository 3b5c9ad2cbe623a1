#include "cli/item_counts.h"

#include "backup/backup_manifest.h"
#include "base/error.h"
#include "cli/media_command.h"
#include "cli/personal_command.h"
#include "messages/abs_message_db.h"

namespace {
qint64 countClass(BackupManifest &backup, PersonalSource &records, DataClass dataClass)
{
    if (isPersonalClass(dataClass))
        return records.has(dataClass) ? records.count(dataClass) : 0;
    if (isMediaClass(dataClass))
        return countMedia(backup, dataClass);
    const bool hasMessages = backup.wellKnown(WellKnown::MessageDatabase) != FileCatalogue::none;
    return hasMessages ? openMessageDb(backup)->countMessages() : 0;
}

std::optional<qint64> countOrNothing(BackupManifest &backup, PersonalSource &records, DataClass dataClass)
{
    try {
        return countClass(backup, records, dataClass);
    } catch (const Error &error) {
        qWarning("%s are not counted: %s", qPrintable(dataClassName(dataClass)),
                 qUtf8Printable(error.sentence()));
        return std::nullopt;
    }
}
} // namespace

ItemCounts countItems(BackupManifest &backup)
{
    const std::unique_ptr<PersonalSource> records = openDeviceRecords(backup, backup.info().deviceId);
    ItemCounts counts;
    for (const DataClass dataClass : allDataClasses)
        if (dataClass != DataClass::Files)
            counts.append({dataClass, countOrNothing(backup, *records, dataClass)});
    return counts;
}

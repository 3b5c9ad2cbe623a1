#include "cli/item_counts.h"

#include "backup/backup_manifest.h"
#include "base/error.h"
#include "cli/personal_command.h"
#include "messages/abs_message_db.h"

namespace {
std::optional<qint64> countMessages(BackupManifest &backup)
{
    if (backup.wellKnown(WellKnown::MessageDatabase) == FileCatalogue::none)
        return 0;
    try {
        return openMessageDb(backup)->countMessages();
    } catch (const Error &error) {
        qWarning("messages are not counted: %s", qUtf8Printable(error.sentence()));
        return std::nullopt;
    }
}

std::optional<qint64> countRecords(PersonalSource &records, DataClass dataClass)
{
    if (!records.has(dataClass))
        return 0;
    try {
        return records.count(dataClass);
    } catch (const Error &error) {
        qWarning("%s are not counted: %s", qPrintable(dataClassName(dataClass)),
                 qPrintable(error.sentence()));
        return std::nullopt;
    }
}
} // namespace

ItemCounts countItems(BackupManifest &backup)
{
    const std::unique_ptr<PersonalSource> records = openDeviceRecords(backup, backup.info().deviceId);
    ItemCounts counts;
    for (const DataClass dataClass : allDataClasses) {
        if (dataClass == DataClass::Messages)
            counts.append({dataClass, countMessages(backup)});
        else if (isPersonalClass(dataClass))
            counts.append({dataClass, countRecords(*records, dataClass)});
        else if (dataClass != DataClass::Files)
            counts.append({dataClass, std::nullopt});
    }
    return counts;
}

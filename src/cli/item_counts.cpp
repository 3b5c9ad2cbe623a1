#include "cli/item_counts.h"

#include "backup/backup_manifest.h"
#include "base/error.h"
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
} // namespace

ItemCounts countItems(BackupManifest &backup)
{
    ItemCounts counts;
    for (const DataClass dataClass : allDataClasses) {
        if (dataClass == DataClass::Messages)
            counts.append({dataClass, countMessages(backup)});
        else if (dataClass != DataClass::Files)
            counts.append({dataClass, std::nullopt});
    }
    return counts;
}

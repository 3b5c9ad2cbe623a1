#include "cli/item_counts.h"

#include "backup/backup_manifest.h"
#include "base/error.h"
#include "cli/json_writer.h"
#include "cli/media_command.h"
#include "cli/personal_command.h"
#include "messages/message_source.h"
#include "personal/media_items.h"

#include <QDebug>

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

using Complain = std::function<void(const QString &)>;

template <typename Count>
std::optional<qint64> countOrNothing(DataClass dataClass, const Complain &complain, Count count)
{
    try {
        return count();
    } catch (const Error &error) {
        complain(QStringLiteral("%1 are not counted: %2").arg(dataClassName(dataClass), error.sentence()));
        return std::nullopt;
    }
}
} // namespace

ItemCounts countItems(BackupManifest &backup)
{
    const std::unique_ptr<PersonalSource> records = openDeviceRecords(backup, backup.info().deviceId);
    const Complain toLog = [](const QString &sentence) { qWarning().noquote() << sentence; };
    ItemCounts counts;
    for (const DataClass dataClass : allDataClasses)
        if (dataClass != DataClass::Files)
            counts.append({dataClass, countOrNothing(dataClass, toLog, [&] {
                               return countClass(backup, *records, dataClass);
                           })});
    return counts;
}

ItemCounts countLocalItems(const QString &folder, const std::function<void(const QString &)> &complain)
{
    const std::unique_ptr<PersonalSource> records = openLocalRecords(folder);
    ItemCounts counts;
    for (const DataClass dataClass : allDataClasses) {
        if (dataClass == DataClass::Messages)
            counts.append({dataClass, countOrNothing(dataClass, complain, [&] {
                               return openLocalMessages(folder).database->countMessages();
                           })});
        else if (isPersonalClass(dataClass))
            counts.append(
                {dataClass, countOrNothing(dataClass, complain, [&] { return records->count(dataClass); })});
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

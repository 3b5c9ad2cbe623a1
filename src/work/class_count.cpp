#include "work/class_count.h"

#include "backup/backup_manifest.h"
#include "base/report.h"
#include "messages/abs_message_db.h"
#include "personal/media_items.h"
#include "personal/personal_source.h"

namespace {
bool isFoundByItsFiles(DataClass dataClass)
{
    return dataClass == DataClass::Photos || dataClass == DataClass::Videos;
}

bool has(const BackupManifest &backup, const PersonalSource &records, DataClass dataClass)
{
    switch (dataClass) {
    case DataClass::Messages:
        return backup.wellKnown(WellKnown::MessageDatabase) != FileCatalogue::none;
    case DataClass::Voicemail:
        return hasVoicemail(backup);
    case DataClass::Recordings:
        return hasRecordings(backup);
    default:
        return isFoundByItsFiles(dataClass) || records.has(dataClass);
    }
}
} // namespace

std::optional<qint64> countClass(BackupManifest &backup, PersonalSource &records, DataClass dataClass,
                                 Report &report)
{
    // What stood behind the place where a catalogue breaks off is unknown.
    const bool breaksOff = backup.report().count("IDS_ISSUE_CATALOGUE_DAMAGED") > 0;
    if (isFoundByItsFiles(dataClass) && breaksOff)
        return std::nullopt;
    if (!has(backup, records, dataClass)) {
        const bool mayBeLost = breaksOff || backup.report().count("IDS_ISSUE_CATALOGUE_ROWS_DAMAGED") > 0;
        return mayBeLost ? std::nullopt : std::optional<qint64>(0);
    }
    if (dataClass == DataClass::Messages)
        return countMessages(backup, report);
    return isMediaClass(dataClass) ? countMedia(backup, dataClass, report) : records.count(dataClass, report);
}

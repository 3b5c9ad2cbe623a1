#include "work/record_source.h"

#include "base/error.h"
#include "personal/card_file.h"

namespace {
RecordsPtr readClass(PersonalSource &source, DataClass dataClass, Scope scope, Report &report)
{
    const bool has = source.has(dataClass);
    switch (dataClass) {
    case DataClass::Contacts:
        return std::make_shared<const Records>(has ? source.contacts(scope, report) : QList<ContactRecord>());
    case DataClass::Calls:
        return std::make_shared<const Records>(has ? source.calls(scope, report) : QList<CallEntry>());
    case DataClass::Notes:
        return std::make_shared<const Records>(has ? source.notes(scope, report) : QList<NoteEntry>());
    case DataClass::Calendar:
        return std::make_shared<const Records>(has ? source.calendar(scope, report) : QList<CalendarEvent>());
    case DataClass::Bookmarks:
        return std::make_shared<const Records>(has ? source.bookmarks(scope, report) : BookmarkTree());
    default:
        throw Error(QStringLiteral("%1 have no records of their own").arg(dataClassName(dataClass)));
    }
}
} // namespace

void withRecords(const RecordSource &source, Progress &progress,
                 const std::function<void(PersonalSource &)> &job)
{
    if (source.isLocal()) {
        job(*openLocalRecords(source.folder));
        return;
    }
    if (!source.cardFile.isEmpty()) {
        job(*openCardFile(source.cardFile));
        return;
    }
    const BackupUse use(*source.backup, progress);
    job(*openDeviceRecords(source.backup->manifest(), source.backup->info().deviceId));
}

RecordsPtr readRecords(const RecordSource &source, DataClass dataClass, Scope scope, Report &report,
                       Progress &progress)
{
    RecordsPtr records;
    withRecords(source, progress,
                [&](PersonalSource &opened) { records = readClass(opened, dataClass, scope, report); });
    progress.check();
    return records;
}

#include "work/record_threads.h"

#include "base/texts.h"
#include "work/save_records.h"
#include "work/summary_text.h"

namespace {
const char *exportTextKey(const RecordSelection &selection)
{
    static constexpr const char *keys[] = {"IDS_SUC_EXPORT_%1_CONTACTS_TO_FILE", "IDS_SUC_EXPORT_%1_CALLS",
                                           "IDS_SUC_EXPORT_%1_NOTES", "IDS_SUC_EXPORT_%1_CALENDAR_ITEMS",
                                           "IDS_SUC_EXPORT_%1_BOOKMARKS"};
    return keys[selection.index()];
}
} // namespace

LoadRecordsThread::LoadRecordsThread(RecordSource source, DataClass dataClass, Scope scope)
    : m_source(std::move(source)), m_dataClass(dataClass), m_scope(scope)
{
}

QString LoadRecordsThread::work(Progress &progress)
{
    m_records = readRecords(m_source, m_dataClass, m_scope, m_report, progress);
    if (m_source.backup)
        m_report.merge(m_source.backup->manifest().report());
    return {};
}

SaveRecordsThread::SaveRecordsThread(RecordSource source, DataClass dataClass, QString folder, Scope scope)
    : m_source(std::move(source)), m_dataClass(dataClass), m_folder(std::move(folder)), m_scope(scope)
{
}

QString SaveRecordsThread::work(Progress &progress)
{
    SaveReport result;
    withRecords(m_source, progress, [&](PersonalSource &source) {
        result = saveRecords(m_dataClass, source, m_scope, m_folder, progress);
    });
    return endText(saveText(m_dataClass, result), result.report);
}

std::unique_ptr<WorkerThread> makeBackupThread(DataClass dataClass, RecordSource source, QString folder,
                                               Scope scope)
{
    switch (dataClass) {
    case DataClass::Contacts:
        return std::make_unique<BackupContactsThread>(std::move(source), std::move(folder), scope);
    case DataClass::Calls:
        return std::make_unique<BackupCallsThread>(std::move(source), std::move(folder), scope);
    case DataClass::Notes:
        return std::make_unique<BackupNotesThread>(std::move(source), std::move(folder), scope);
    case DataClass::Calendar:
        return std::make_unique<BackupCalendarThread>(std::move(source), std::move(folder), scope);
    case DataClass::Bookmarks:
        return std::make_unique<BackupBookmarsThread>(std::move(source), std::move(folder), scope);
    default:
        return nullptr;
    }
}

RemoveRecordsThread::RemoveRecordsThread(DataClass dataClass, QString folder, QStringList ids,
                                         const char *doneText)
    : m_dataClass(dataClass), m_folder(std::move(folder)), m_ids(std::move(ids)), m_doneText(doneText)
{
}

QString RemoveRecordsThread::work(Progress &progress)
{
    removeRecords(m_dataClass, m_folder, m_ids, progress);
    return textFor(m_doneText);
}

ExportRecordsThread::ExportRecordsThread(RecordSelection selection, QString format, QString target)
    : m_selection(std::move(selection)), m_format(std::move(format)), m_target(std::move(target))
{
}

QString ExportRecordsThread::work(Progress &progress)
{
    const Report report = exportRecords(m_selection, m_format, m_target, progress);
    return endText(textFor(exportTextKey(m_selection)).arg(report.done), report);
}

std::unique_ptr<WorkerThread> makeExportThread(RecordSelection selection, QString format, QString target)
{
    return std::visit(
        [&](auto &selected) -> std::unique_ptr<WorkerThread> {
            using Worker = ExportThread<std::decay_t<decltype(selected)>>;
            return std::make_unique<Worker>(std::move(selected), std::move(format), std::move(target));
        },
        selection);
}

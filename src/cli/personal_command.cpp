#include "cli/personal_command.h"

#include "backup/backup_manifest.h"
#include "base/apple_time.h"
#include "base/error.h"
#include "base/report.h"
#include "base/texts.h"
#include "cli/local_database.h"
#include "cli/open_backup.h"
#include "cli/personal_json.h"
#include "export/record_export.h"
#include "personal/card_file.h"

#include <QDir>

#include <algorithm>

namespace {
bool isWithin(const QDateTime &date, std::int64_t from, std::int64_t to)
{
    const qint64 apple = date.isValid() ? appleFromUnix(date.toSecsSinceEpoch()) : 0;
    return apple >= from && apple <= to;
}

template <typename Record, typename DateOf>
QList<Record> within(QList<Record> records, const DateRange &range, DateOf dateOf)
{
    records.removeIf([&](const Record &record) { return !isWithin(dateOf(record), range.from, range.to); });
    return records;
}

RecordSelection selectRecords(const RecordExport &request, PersonalSource &records, Report &report)
{
    const DateRange &range = request.dates;
    switch (request.dataClass) {
    case DataClass::Contacts:
        return records.contacts(request.scope, report);
    case DataClass::Calls:
        return within(records.calls(request.scope, report), range, [](const CallEntry &call) { return call.date; });
    case DataClass::Calendar:
        return within(records.calendar(request.scope, report), range, startHere);
    case DataClass::Notes:
        return within(records.notes(request.scope, report), range,
                       [](const NoteEntry &note) { return note.modified_date; });
    default:
        return std::make_shared<const BookmarkTree>(records.bookmarks(request.scope, report));
    }
}

const char *writtenText(DataClass dataClass)
{
    switch (dataClass) {
    case DataClass::Contacts:
        return "IDS_CONTACTS_WRITTEN";
    case DataClass::Calls:
        return "IDS_CALLS_WRITTEN";
    case DataClass::Notes:
        return "IDS_NOTES_WRITTEN";
    case DataClass::Calendar:
        return "IDS_EVENTS_WRITTEN";
    default:
        return "IDS_BOOKMARKS_WRITTEN";
    }
}

void requireTarget(DataClass dataClass, const QString &target)
{
    const QFileInfo info(target);
    const bool isFolder = dataClass == DataClass::Notes;
    if (info.exists() && info.isDir() != isFolder)
        throw Error(QStringLiteral("%1: %2").arg(
            target, isFolder ? QStringLiteral("not a folder") : QStringLiteral("is a folder, not a file")));
}
} // namespace

OpenRecords::OpenRecords() = default;
OpenRecords::OpenRecords(OpenRecords &&) noexcept = default;
OpenRecords &OpenRecords::operator=(OpenRecords &&) noexcept = default;

OpenRecords::~OpenRecords()
{
    records.reset(); // it reads from the backup
}

bool isPersonalClass(DataClass dataClass)
{
    switch (dataClass) {
    case DataClass::Contacts:
    case DataClass::Calls:
    case DataClass::Notes:
    case DataClass::Calendar:
    case DataClass::Bookmarks:
        return true;
    default:
        return false;
    }
}

OpenRecords openRecords(const QString &source, DataClass dataClass, const PasswordOption &password,
                        Progress &progress)
{
    OpenRecords open;
    if (const auto folder = localDatabaseOf(source)) {
        open.records = openLocalRecords(*folder);
        open.isLocal = true;
        return open;
    }
    if (dataClass == DataClass::Contacts && QFileInfo(source).isFile()) {
        open.records = openCardFile(source);
        return open;
    }
    open.backup = openBackup(source, password, progress);
    open.records = openDeviceRecords(*open.backup, open.backup->info().deviceId);
    return open;
}

ExitStatus showRecords(DataClass dataClass, const QString &source, Scope scope, const PasswordOption &password,
                       CommandContext &context)
{
    const OpenRecords open = openRecords(source, dataClass, password, context.progress);
    const RecordIdentity identity = open.isLocal ? RecordIdentity::OfLocalDatabase : RecordIdentity::None;
    context.progress.clear();
    QByteArray line;
    const auto print = [&](const auto &records, auto append) {
        for (const auto &record : records) {
            context.progress.check();
            line.resize(0);
            append(record);
            context.out.write(line);
        }
    };
    PersonalSource &records = *open.records;
    Report report;
    const auto read = [&] {
        switch (dataClass) {
        case DataClass::Contacts:
            return print(records.contacts(scope, report),
                         [&](const auto &contact) { appendContactLine(line, contact, identity); });
        case DataClass::Calls:
            return print(records.calls(scope, report),
                         [&](const auto &call) { appendCallLine(line, call, identity); });
        case DataClass::Notes:
            return print(records.notes(scope, report),
                         [&](const auto &note) { appendNoteLine(line, note, identity); });
        case DataClass::Calendar:
            return print(records.calendar(scope, report), [&](const auto &event) { appendEventLine(line, event); });
        default:
            print(records.bookmarks(scope, report), [&](const auto &node) { appendBookmarkLine(line, *node); });
        }
    };
    readOrReportAbsent(report, read);
    report.merge(reportOf(open.backup.get()));
    return context.report(report);
}

ExitStatus exportRecords(const RecordExport &request, const PasswordOption &password, CommandContext &context)
{
    const OpenRecords open = openRecords(request.source, request.dataClass, password, context.progress);
    const QString target = QDir(request.target).absolutePath();
    requireTarget(request.dataClass, target);
    Report report;
    const RecordSelection selection = selectRecords(request, *open.records, report);
    report.merge(reportOf(open.backup.get()));
    report.merge(exportRecords(selection, request.format, target, context.progress));
    context.progress.clear();
    context.tell(textFor(writtenText(request.dataClass), report.done));
    return context.report(report);
}

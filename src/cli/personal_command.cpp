#include "cli/personal_command.h"

#include "backup/backup_manifest.h"
#include "base/apple_time.h"
#include "base/error.h"
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

RecordSelection selectRecords(DataClass dataClass, PersonalSource &records, const DateRange &range)
{
    switch (dataClass) {
    case DataClass::Contacts:
        return records.contacts();
    case DataClass::Calls:
        return within(records.calls(), range, [](const CallEntry &call) { return call.date; });
    case DataClass::Calendar:
        return within(records.calendar(), range, [](const CalendarEvent &event) { return event.start_date; });
    case DataClass::Notes:
        return within(records.notes(), range, [](const NoteEntry &note) { return note.modified_date; });
    default:
        return std::make_shared<const BookmarkTree>(records.bookmarks());
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
    open.backup = openBackup(source, password, PasswordNeed::Always, progress);
    open.records = openDeviceRecords(*open.backup, open.backup->info().deviceId);
    return open;
}

ExitStatus showRecords(DataClass dataClass, const QString &source, const PasswordOption &password,
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
    switch (dataClass) {
    case DataClass::Contacts:
        print(records.contacts(), [&](const auto &contact) { appendContactLine(line, contact, identity); });
        break;
    case DataClass::Calls:
        print(records.calls(), [&](const auto &call) { appendCallLine(line, call, identity); });
        break;
    case DataClass::Notes:
        print(records.notes(), [&](const auto &note) { appendNoteLine(line, note, identity); });
        break;
    case DataClass::Calendar:
        print(records.calendar(), [&](const auto &event) { appendEventLine(line, event); });
        break;
    default:
        print(records.bookmarks(), [&](const auto &node) { appendBookmarkLine(line, *node); });
    }
    for (const QString &problem : records.problems(dataClass))
        context.tell(problem);
    return ExitStatus::Done;
}

ExitStatus exportRecords(const RecordExport &request, const PasswordOption &password, CommandContext &context)
{
    const OpenRecords open = openRecords(request.source, request.dataClass, password, context.progress);
    const QString target = QDir(request.target).absolutePath();
    requireTarget(request.dataClass, target);
    const SimpleExportSummary summary =
        exportRecords(selectRecords(request.dataClass, *open.records, request.dates), request.format, target,
                      context.progress);
    context.progress.clear();
    context.tell(QStringLiteral("%1 %2 written").arg(summary.written).arg(dataClassName(request.dataClass)));
    for (const QString &remark :
         open.records->problems(request.dataClass) + summary.skipped + summary.remarks)
        context.tell(remark);
    return ExitStatus::Done;
}

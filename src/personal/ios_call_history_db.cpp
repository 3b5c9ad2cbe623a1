#include "personal/ios_call_history_db.h"

#include "backup/device_database.h"
#include "backup/file_record.h"
#include "base/error.h"
#include "base/report.h"
#include "personal/contact_functions.h"
#include "personal/home_country.h"
#include "personal/number_names.h"
#include "personal/stored_date.h"
#include "sqlite/read_rows.h"

#include <QHash>

#include <algorithm>
#include <limits>

namespace {
const SourceFile olderFile{QStringLiteral("WirelessDomain"),
                           QStringLiteral("Library/CallHistory/call_history.db")};
const SourceFile newerFile{QStringLiteral("HomeDomain"),
                           QStringLiteral("Library/CallHistoryDB/CallHistory.storedata")};

constexpr int firstVersionWithNewFlags = 12;

QString fileIdOf(const SourceFile &file)
{
    return QString::fromLatin1(fileId(file.domain.toUtf8(), file.relativePath.toUtf8()));
}

/// Where a call stands among the others: dates may have fractions of seconds, those without stand last.
double orderOf(const CallEntry &call, double stored)
{
    return call.date.isValid() ? stored : std::numeric_limits<double>::lowest();
}

/// Puts the newest first, as the database would.
QList<CallEntry> newestFirst(QList<std::pair<double, CallEntry>> dated)
{
    std::stable_sort(dated.begin(), dated.end(),
                     [](const auto &a, const auto &b) { return a.first > b.first; });
    QList<CallEntry> calls;
    calls.reserve(dated.size());
    for (auto &entry : dated)
        calls.append(std::move(entry.second));
    return calls;
}

/// What makes two calls of the two databases one. Systems write a number now with its country and now
/// without.
QString identityOf(const CallEntry &call)
{
    return QStringLiteral("%1 %2 %3")
        .arg(unixSeconds(call.date))
        .arg(call.type)
        .arg(numberSuffix(call.address));
}

/// Both lists in one, newest first; `doubled` is the number of older calls that are among the newer.
QList<CallEntry> joined(QList<CallEntry> older, QList<CallEntry> newer, qint64 &doubled)
{
    QHash<QString, int> known;
    for (const CallEntry &call : std::as_const(newer))
        ++known[identityOf(call)];
    QList<CallEntry> calls = std::move(newer);
    for (CallEntry &call : older) {
        int &same = known[identityOf(call)];
        if (same > 0)
            --same, ++doubled;
        else
            calls.append(std::move(call));
    }
    std::stable_sort(calls.begin(), calls.end(),
                     [](const CallEntry &a, const CallEntry &b) { return a.date > b.date; });
    return calls;
}
} // namespace

bool AbsCallsDbCore::open(FileSource &source, Report &report)
{
    return openDeviceDatabase(m_db, source, file(), report);
}

SourceFile IOS5CallsDbCore::file() const
{
    return olderFile;
}

int IOS5CallsDbCore::clientVersion(Report &report) const
{
    int version = 0;
    readRows(m_db,
             {.table = QStringLiteral("_SqliteDatabaseProperties"),
              .columns = {QStringLiteral("key"), QStringLiteral("value")},
              .need = TableRows::Need::Expected},
             report, [&version](const Sqlite3Cursor &row) {
                 return [&version, &row] {
                     if (row.viewText(1) == QByteArrayView("_ClientVersion"))
                         version = row.getInt(2);
                 };
             });
    return version;
}

CallType IOS5CallsDbCore::typeOfFlags(int flags, bool hasAnsweredColumn, bool answered, int clientVersion)
{
    if (hasAnsweredColumn) {
        if (flags == 0)
            return answered ? CallType::Incoming : CallType::Missed;
        return flags == 9 ? CallType::Outgoing : CallType::Unknown;
    }
    if (clientVersion >= firstVersionWithNewFlags) {
        if (flags == 0)
            return CallType::Incoming;
        return flags == 9 ? CallType::Outgoing : CallType::Missed;
    }
    switch (flags) {
    case 4:
        return CallType::Incoming;
    case 5:
        return CallType::Outgoing;
    case 8:
        return CallType::Missed;
    default:
        return CallType::Unknown;
    }
}

QList<CallEntry> IOS5CallsDbCore::readAll(Report &report)
{
    static const TableRows rows{QStringLiteral("call"),
                                {QStringLiteral("address"), QStringLiteral("date"),
                                 QStringLiteral("duration"), QStringLiteral("flags")},
                                {QStringLiteral("name"), QStringLiteral("country_code"),
                                 QStringLiteral("network_code"), QStringLiteral("read"),
                                 QStringLiteral("assisted"), QStringLiteral("face_time_data"),
                                 QStringLiteral("originalAddress"), QStringLiteral("answered")}};
    m_db.requireTable(rows.table);
    const bool hasAnswered = m_db.tbCols(rows.table).contains(QStringLiteral("answered"));
    // Without calls, or with that column, nobody needs the version: the table that has it may be missing.
    auto version = [&, known = std::optional<int>()]() mutable {
        if (!known)
            known = hasAnswered ? 0 : clientVersion(report);
        return *known;
    };
    QList<std::pair<double, CallEntry>> calls;
    readRows(m_db, rows, report, [&](const Sqlite3Cursor &row) {
        return [&] {
            CallEntry call;
            call.address = row.getText(1);
            call.date = storedDate(row, 2, Epoch::Unix, m_db.name(), report);
            call.duration = row.getInt(3);
            call.name = row.getText(5);
            call.country_code = row.getText(6);
            call.network_code = row.getText(7);
            call.read = row.getInt(8);
            call.assisted = row.getInt(9);
            call.face_time_data = row.getBlob(10);
            call.originalAddress = row.getText(11);
            call.answered = row.getInt(12);
            call.type =
                static_cast<int>(typeOfFlags(row.getInt(4), hasAnswered, call.answered != 0, version()));
            const double order = orderOf(call, row.getDouble(2));
            calls.append({order, std::move(call)});
        };
    });
    return newestFirst(std::move(calls));
}

SourceFile IOS8CallsDbCore::file() const
{
    return newerFile;
}

QList<CallEntry> IOS8CallsDbCore::readAll(Report &report)
{
    static const TableRows rows{
        QStringLiteral("ZCALLRECORD"),
        {QStringLiteral("ZADDRESS"), QStringLiteral("ZDATE"), QStringLiteral("ZDURATION"),
         QStringLiteral("ZANSWERED"), QStringLiteral("ZORIGINATED")},
        {QStringLiteral("ZNAME"), QStringLiteral("ZREAD"), QStringLiteral("ZFACE_TIME_DATA"),
         QStringLiteral("ZCALLTYPE"), QStringLiteral("ZNUMBER_AVAILABILITY"), QStringLiteral("ZDEVICE_ID"),
         QStringLiteral("ZISO_COUNTRY_CODE"), QStringLiteral("ZUNIQUE_ID")}};
    QList<std::pair<double, CallEntry>> calls;
    readRows(m_db, rows, report, [&](const Sqlite3Cursor &row) {
        return [&] {
            CallEntry call;
            call.address = row.getText(1); // a BLOB of the same bytes on some versions
            call.date = storedDate(row, 2, Epoch::Apple, m_db.name(), report);
            call.duration = row.getInt(3);
            call.answered = row.getInt(4);
            call.name = row.getText(6);
            call.read = row.getInt(7);
            call.face_time_data = row.getBlob(8);
            call.call_type = row.getInt(9);
            call.availability = row.getInt(10);
            call.device_id = row.getText(11);
            call.cn = row.getText(12);
            call.unique_id = row.getText(13);
            const CallType incoming = call.answered != 0 ? CallType::Incoming : CallType::Missed;
            call.type = static_cast<int>(row.getInt(5) != 0 ? CallType::Outgoing : incoming);
            const double order = orderOf(call, row.getDouble(2));
            calls.append({order, std::move(call)});
        };
    });
    return newestFirst(std::move(calls));
}

IOSCallHistoryDb::IOSCallHistoryDb(FileSource &source) : m_source(source) {}

QList<CallEntry> IOSCallHistoryDb::readAll(Report &report)
{
    std::optional<QList<CallEntry>> older, newer;
    std::optional<Error> failure;
    const auto read = [&](AbsCallsDbCore &&core) -> std::optional<QList<CallEntry>> {
        try {
            return core.open(m_source, report) ? std::optional(core.readAll(report)) : std::nullopt;
        } catch (const Error &error) {
            report.add("IDS_ISSUE_DATABASE_DAMAGED", error);
            failure = error;
            return std::nullopt;
        }
    };
    older = read(IOS5CallsDbCore());
    newer = read(IOS8CallsDbCore());
    if (!older && !newer && failure)
        throw *failure;
    if (!older && !newer)
        throw Error(QStringLiteral("Cannot find %1 or %2.").arg(fileIdOf(newerFile), fileIdOf(olderFile)),
                    ErrorKind::NotFound);
    QList<CallEntry> calls;
    if (older && newer) {
        qint64 doubled = 0;
        calls = joined(std::move(*older), std::move(*newer), doubled);
        if (doubled > 0)
            report.add({.kind = IssueKind::LeftOut, .what = "IDS_ISSUE_CALLS_IN_BOTH", .count = doubled});
    } else {
        calls = older ? std::move(*older) : std::move(*newer);
    }
    const NumberNames names(m_source, numbersOf(&m_source).normalise, report);
    for (CallEntry &call : calls)
        call.person = names.nameOfNumber(call.address);
    return calls;
}

#include "personal/ios_call_history_db.h"

#include "backup/device_database.h"
#include "backup/file_record.h"
#include "base/apple_time.h"
#include "base/error.h"
#include "base/report.h"
#include "personal/contact_functions.h"
#include "personal/home_country.h"
#include "personal/number_names.h"

#include <QHash>

#include <algorithm>

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

QDateTime instant(qint64 unixSeconds)
{
    return QDateTime::fromSecsSinceEpoch(unixSeconds, Qt::UTC);
}

void requireTable(const Sqlite3DB &db, const char *table)
{
    if (!db.hasTable(QLatin1String(table)))
        throw Error(
            QStringLiteral("can not read %1. It has no table \"%2\"").arg(db.name(), QLatin1String(table)),
            ErrorKind::Damaged, FileAccess::Reading)
            .at(db.name());
}

/// What makes two calls of the two databases one. Systems write a number now with its country and now without.
QString identityOf(const CallEntry &call)
{
    return QStringLiteral("%1 %2 %3")
        .arg(call.date.toSecsSinceEpoch())
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

bool AbsCallsDbCore::open(FileSource &source)
{
    if (!openDeviceDatabase(m_db, source, file()))
        return false;
    prepare();
    return true;
}

SourceFile IOS5CallsDbCore::file() const
{
    return olderFile;
}

void IOS5CallsDbCore::prepare()
{
    requireTable(m_db, "call");
    m_columns = m_db.tbCols(QStringLiteral("call"));
    if (!m_db.hasTable(QStringLiteral("_SqliteDatabaseProperties")))
        return;
    Sqlite3Cursor version = m_db.queryThrow(
        QStringLiteral("select value from _SqliteDatabaseProperties where key='_ClientVersion'"));
    if (version.moveNext())
        m_clientVersion = version.getInt(0);
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

QList<CallEntry> IOS5CallsDbCore::readAll()
{
    Sqlite3Cursor row = m_db.queryThrow(QStringLiteral("select * from call order by date desc"));
    const auto column = [&row](const char *name) { return row.columnIndex(QLatin1String(name)); };
    const int address = column("address"), date = column("date"), duration = column("duration"),
              flags = column("flags"), name = column("name"), country = column("country_code"),
              network = column("network_code"), read = column("read"), assisted = column("assisted"),
              faceTime = column("face_time_data"), original = column("originalAddress"),
              answered = column("answered");
    QList<CallEntry> calls;
    while (row.moveNext()) {
        CallEntry call;
        call.address = row.getText(address);
        call.date = instant(row.getInt64(date));
        call.duration = row.getInt(duration);
        call.name = row.getText(name);
        call.country_code = row.getText(country);
        call.network_code = row.getText(network);
        call.read = row.getInt(read);
        call.assisted = row.getInt(assisted);
        call.face_time_data = row.getBlob(faceTime);
        call.originalAddress = row.getText(original);
        call.answered = row.getInt(answered);
        call.type = static_cast<int>(
            typeOfFlags(row.getInt(flags), answered >= 0, call.answered != 0, m_clientVersion));
        calls.append(std::move(call));
    }
    return calls;
}

SourceFile IOS8CallsDbCore::file() const
{
    return newerFile;
}

void IOS8CallsDbCore::prepare()
{
    requireTable(m_db, "ZCALLRECORD");
    if (!m_db.hasTable(QStringLiteral("Z_PRIMARYKEY")))
        return;
    Sqlite3Cursor row = m_db.queryThrow(QStringLiteral("select * from Z_PRIMARYKEY"));
    const int entity = row.columnIndex(QStringLiteral("Z_ENT"));
    const int name = row.columnIndex(QStringLiteral("Z_NAME"));
    while (row.moveNext())
        if (row.viewText(name) == QByteArrayView("CallRecord"))
            m_entity = row.getInt(entity);
}

QList<CallEntry> IOS8CallsDbCore::readAll()
{
    Sqlite3Cursor row = m_db.queryThrow(QStringLiteral("select * from ZCALLRECORD order by ZDATE desc"));
    const auto column = [&row](const char *name) { return row.columnIndex(QLatin1String(name)); };
    const int address = column("ZADDRESS"), date = column("ZDATE"), duration = column("ZDURATION"),
              name = column("ZNAME"), read = column("ZREAD"), faceTime = column("ZFACE_TIME_DATA"),
              answered = column("ZANSWERED"), callType = column("ZCALLTYPE"),
              availability = column("ZNUMBER_AVAILABILITY"), originated = column("ZORIGINATED"),
              device = column("ZDEVICE_ID"), country = column("ZISO_COUNTRY_CODE"),
              unique = column("ZUNIQUE_ID");
    QList<CallEntry> calls;
    while (row.moveNext()) {
        CallEntry call;
        call.address = row.getText(address); // a BLOB of the same bytes on some versions
        call.date = instant(unixFromApple(row.getInt(date)));
        call.duration = row.getInt(duration);
        call.name = row.getText(name);
        call.read = row.getInt(read);
        call.face_time_data = row.getBlob(faceTime);
        call.answered = row.getInt(answered);
        call.call_type = row.getInt(callType);
        call.availability = row.getInt(availability);
        call.device_id = row.getText(device);
        call.cn = row.getText(country);
        call.unique_id = row.getText(unique);
        const CallType incoming = call.answered != 0 ? CallType::Incoming : CallType::Missed;
        call.type = static_cast<int>(row.getInt(originated) != 0 ? CallType::Outgoing : incoming);
        calls.append(std::move(call));
    }
    return calls;
}

IOSCallHistoryDb::IOSCallHistoryDb(FileSource &source) : m_source(source) {}

QList<CallEntry> IOSCallHistoryDb::readAll(Report &report)
{
    std::optional<QList<CallEntry>> older, newer;
    std::optional<Error> failure;
    const auto read = [&](AbsCallsDbCore &&core) -> std::optional<QList<CallEntry>> {
        try {
            return core.open(m_source) ? std::optional(core.readAll()) : std::nullopt;
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

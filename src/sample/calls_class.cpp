#include "sample/core_data.h"
#include "sample/data_classes.h"
#include "base/apple_time.h"
#include "sample/table_schema.h"

namespace sample {

namespace {

enum class Direction { Incoming, Outgoing, Missed };

struct Call
{
    const char *address; // empty: the other side hid its number
    Direction direction;
    int duration;
    int kind = 1; // 1 telephone, 8 video, 16 audio over the network
    bool sameSecond = false;
};

constexpr Call calls[] = {
    {"+14155550132", Direction::Incoming, 61},
    {"4155550132", Direction::Outgoing, 3605},
    {"+4917139200123", Direction::Missed, 0},
    {"017139200123", Direction::Outgoing, 12},
    {"+447700900123", Direction::Incoming, 59},
    {"+14155550150", Direction::Missed, 0},
    {"22000", Direction::Outgoing, 4},
    {"", Direction::Incoming, 33},
    {"grace.h@example.org", Direction::Outgoing, 700, 8},
    {"+14155550147", Direction::Incoming, 90, 16},
    {"+14155550161", Direction::Incoming, 5},
    {"+14155550161", Direction::Missed, 0, 1, true},
    {"+1 (415) 555-0172", Direction::Outgoing, 7200},
};

constexpr Column oldColumns[] = {
    {"ROWID", "INTEGER PRIMARY KEY AUTOINCREMENT"},
    {"address", "TEXT"},
    {"date", "INTEGER"},
    {"duration", "INTEGER"},
    {"flags", "INTEGER"},
    {"id", "INTEGER"},
    {"name", "TEXT"},
    {"country_code", "TEXT"},
    {"network_code", "TEXT", 6},
    {"read", "INTEGER", 6},
    {"assisted", "INTEGER", 6},
    {"face_time_data", "BLOB", 6},
    {"originalAddress", "TEXT", 6},
    {"answered", "INTEGER", 7},
};

constexpr Column recordColumns[] = {
    {"Z_PK", "INTEGER PRIMARY KEY"},
    {"Z_ENT", "INTEGER"},
    {"Z_OPT", "INTEGER"},
    {"ZANSWERED", "INTEGER"},
    {"ZCALL_CATEGORY", "INTEGER", 10},
    {"ZCALLTYPE", "INTEGER"},
    {"ZDISCONNECTED_CAUSE", "INTEGER"},
    {"ZFACE_TIME_DATA", "BLOB"},
    {"ZHANDLE_TYPE", "INTEGER", 10},
    {"ZNUMBER_AVAILABILITY", "INTEGER"},
    {"ZORIGINATED", "INTEGER"},
    {"ZREAD", "INTEGER"},
    {"ZDATE", "TIMESTAMP"},
    {"ZDURATION", "FLOAT"},
    {"ZDEVICE_ID", "VARCHAR", 0, 15},
    {"ZISO_COUNTRY_CODE", "VARCHAR"},
    {"ZLOCATION", "VARCHAR"},
    {"ZNAME", "VARCHAR"},
    {"ZSERVICE_PROVIDER", "VARCHAR", 10},
    {"ZUNIQUE_ID", "VARCHAR"},
    {"ZADDRESS", "BLOB", 0, 11},
    {"ZADDRESS", "VARCHAR", 12},
};

/// Unix seconds, newest last.
qint64 dateOf(const Making &making, std::size_t index)
{
    const std::size_t slot = calls[index].sameSecond ? index - 1 : index;
    return making.generation.backupDate - static_cast<qint64>(std::size(calls) - slot) * 40000;
}

/// The older table says it with flags alone, of which there were two sets, and later with flags and a column
/// of its own.
int flagsOf(const Call &call, int ios)
{
    const bool isMissed = call.direction == Direction::Missed;
    if (ios < 6)
        return isMissed ? 8 : call.direction == Direction::Outgoing ? 5 : 4;
    if (call.direction == Direction::Outgoing)
        return 9;
    return isMissed && ios < 7 ? 17 : 0;
}

void putOldHistory(Making &making, bool empty)
{
    const int ios = making.generation.ios;
    const QString path = making.inScratch("call_history.db");
    SqliteFile file(path);
    file.execute(
        createTable("call", oldColumns, ios) +
        "CREATE TABLE data (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, pdp_ip INTEGER, bytes_rcvd REAL, "
        "bytes_sent REAL);"
        "CREATE TABLE _SqliteDatabaseProperties (key TEXT, value TEXT, UNIQUE(key));"
        "INSERT INTO _SqliteDatabaseProperties VALUES('_ClientVersion', '" +
        (ios < 6 ? "9" : "12") + "')");
    for (std::size_t i = 0; i < std::size(calls) && !empty; ++i) {
        const Call &call = calls[i];
        Statement(file, "insert into call(address, date, duration, flags, id, country_code) "
                        "values(?,?,?,?,-1,'310')")
            .run(Utf8{call.address}, dateOf(making, i), call.duration, flagsOf(call, ios));
        if (ios >= 7)
            Statement(file, "update call set answered=? where ROWID=?")
                .run(call.direction != Direction::Missed, file.lastInsertId());
    }
    if (ios >= 6)
        file.execute("update call set network_code='410', read=1, assisted=0");
    file.close(SqliteFile::Journal::Rollback);
    making.container.putFile(
        making.place("WirelessDomain", QStringLiteral("Library/CallHistory/call_history.db")), path);
}

void addGroupCall(SqliteFile &file, qint64 date, const QByteArray &uniqueId)
{
    file.execute(
        "CREATE TABLE ZHANDLE (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZTYPE INTEGER, "
        "ZNORMALIZEDVALUE VARCHAR, ZVALUE VARCHAR);"
        "CREATE TABLE Z_2REMOTEPARTICIPANTHANDLES (Z_2REMOTEPARTICIPANTCALLS INTEGER, "
        "Z_4REMOTEPARTICIPANTHANDLES INTEGER, PRIMARY KEY (Z_2REMOTEPARTICIPANTCALLS, "
        "Z_4REMOTEPARTICIPANTHANDLES));"
        "INSERT INTO ZHANDLE VALUES(1,4,1,2,'+14155550132','+14155550132');"
        "INSERT INTO ZHANDLE VALUES(2,4,1,3,'grace.h@example.org','grace.h@example.org')");
    Statement(
        file,
        "insert into ZCALLRECORD(Z_ENT, Z_OPT, ZANSWERED, ZCALLTYPE, ZORIGINATED, ZREAD, ZDATE, ZDURATION, "
        "ZUNIQUE_ID) values(2,1,1,8,0,1,?,1800.5,?)")
        .run(static_cast<double>(date) + 0.25, Utf8{uniqueId});
    const qint64 call = file.lastInsertId();
    for (const int handle : {1, 2})
        Statement(file, "insert into Z_2REMOTEPARTICIPANTHANDLES values(?,?)").run(call, handle);
}

void addRecord(SqliteFile &file, const Making &making, std::size_t index, const QByteArray &uniqueId)
{
    const Call &call = calls[index];
    const int ios = making.generation.ios;
    Statement insert(
        file,
        "insert into ZCALLRECORD(Z_ENT, Z_OPT, ZANSWERED, ZCALLTYPE, ZNUMBER_AVAILABILITY, ZORIGINATED, "
        "ZREAD, ZDATE, ZDURATION, ZISO_COUNTRY_CODE, ZLOCATION, ZUNIQUE_ID, ZADDRESS) "
        "values(2,1,?1,?2,0,?3,1,?4,?5,'us','<<RecentsNumberLocationNotFound>>',?6,?7)");
    const QByteArray address(call.address);
    if (address.isEmpty())
        insert.bind(7, nullptr);
    else if (ios <= 11) // bytes in older stores, text in newer ones
        insert.bind(7, address);
    else
        insert.bind(7, Utf8{address});
    insert.run(call.direction == Direction::Incoming, call.kind, call.direction == Direction::Outgoing,
               static_cast<double>(appleFromUnix(dateOf(making, index))) + 0.75,
               static_cast<double>(call.duration) + 0.3, Utf8{uniqueId});
    const qint64 record = file.lastInsertId();
    if (ios >= 10)
        Statement(file,
                  "update ZCALLRECORD set ZCALL_CATEGORY=1, ZHANDLE_TYPE=?, ZSERVICE_PROVIDER=? where Z_PK=?")
            .run(address.contains('@') ? 3 : 2,
                 Utf8{call.kind == 1 ? "com.apple.Telephony" : "com.apple.FaceTime"}, record);
}

void putNewHistory(Making &making)
{
    const int ios = making.generation.ios;
    const QString path = making.inScratch("CallHistory.storedata");
    SqliteFile file(path);
    SeededGenerator chance = making.chance.fork("calls");
    file.execute(createTable("ZCALLRECORD", recordColumns, ios) +
                 "CREATE TABLE ZCALLDBPROPERTIES (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, "
                 "ZTIMER_ALL FLOAT)");
    for (std::size_t i = 0; i < std::size(calls); ++i)
        addRecord(file, making, i, chance.uuid());
    if (ios >= 14)
        addGroupCall(file, appleFromUnix(making.generation.backupDate) - 9000, chance.uuid());
    addCoreDataTables(file, {{1, "CallDBProperties", 0},
                             {2, "CallRecord", file.integer("select max(Z_PK) from ZCALLRECORD")}});
    making.summary.counts.calls = static_cast<int>(file.integer("select count(*) from ZCALLRECORD"));
    file.close(SqliteFile::Journal::Wal);
    making.container.putFile(
        making.place("HomeDomain", QStringLiteral("Library/CallHistoryDB/CallHistory.storedata")), path);
}

} // namespace

void addCalls(Making &making)
{
    if (making.generation.ios < 9) {
        putOldHistory(making, false);
        making.summary.counts.calls = static_cast<int>(std::size(calls));
        return;
    }
    if (making.options.emptyOldCallHistory)
        putOldHistory(making, true);
    putNewHistory(making);
}

} // namespace sample

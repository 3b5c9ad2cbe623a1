#include "personal/local_call_history_db.h"

#include "base/report.h"
#include "personal/stored_date.h"
#include "sqlite/read_rows.h"

#include <QCryptographicHash>
#include <QtEndian>

#include <algorithm>

namespace {
// Columns that came later, each with the statement that adds it to an older store.
constexpr std::pair<const char *, const char *> laterColumns[] = {
    {"name", "ALTER TABLE call ADD COLUMN name TEXT;"},
    {"country_code", "ALTER TABLE call ADD COLUMN country_code TEXT;"},
    {"network_code", "ALTER TABLE call ADD COLUMN network_code TEXT;"},
    {"read", "ALTER TABLE call ADD COLUMN read INTEGER;"},
    {"assisted", "ALTER TABLE call ADD COLUMN assisted INTEGER;"},
    {"face_time_data", "ALTER TABLE call ADD COLUMN face_time_data BLOB;"},
    {"originaladdress", "ALTER TABLE call ADD COLUMN originalAddress TEXT;"},
    {"answered", "ALTER TABLE call ADD COLUMN answered INTEGER DEFAULT '1';"},
    {"call_type", "ALTER TABLE call ADD COLUMN call_type INTEGER DEFAULT 1;"},
    {"availability", "ALTER TABLE call ADD COLUMN availability INTEGER DEFAULT 0;"},
    {"device_id", "ALTER TABLE call ADD COLUMN device_id TEXT;"},
    {"cn", "ALTER TABLE call ADD COLUMN cn TEXT;"},
    {"unique_id", "ALTER TABLE call ADD COLUMN unique_id TEXT;"},
};

QByteArray littleEndian(qint64 value)
{
    const quint32 bytes = qToLittleEndian(static_cast<quint32>(value));
    return QByteArray(reinterpret_cast<const char *>(&bytes), sizeof bytes);
}
} // namespace

LocalCallHistoryDb::LocalCallHistoryDb(const QString &folder)
    : AbsLocalDb(folder, QStringLiteral("calls.db"), QStringLiteral(":/res/local_callhistory_db.sql"))
{
}

void LocalCallHistoryDb::upgrade()
{
    const QSet<QString> columns = m_db.tbCols(QStringLiteral("call"));
    for (const auto &[name, statement] : laterColumns)
        if (!columns.contains(QLatin1String(name)))
            m_db.executeThrow(QString::fromLatin1(statement));
}

qint64 LocalCallHistoryDb::count()
{
    Sqlite3Cursor row = m_db.queryThrow(QStringLiteral("select count(*) from call not indexed"));
    return row.moveNext() ? row.getInt64(0) : 0;
}

QList<CallEntry> LocalCallHistoryDb::readAll(Report &report)
{
    static const TableRows rows{
        QStringLiteral("call"),
        {QStringLiteral("address"), QStringLiteral("date"), QStringLiteral("duration"),
         QStringLiteral("flags"), QStringLiteral("person"), QStringLiteral("name"),
         QStringLiteral("country_code"), QStringLiteral("network_code"), QStringLiteral("read"),
         QStringLiteral("assisted"), QStringLiteral("face_time_data"), QStringLiteral("originalAddress"),
         QStringLiteral("answered"), QStringLiteral("call_type"), QStringLiteral("availability"),
         QStringLiteral("device_id"), QStringLiteral("cn"), QStringLiteral("unique_id")}};
    QList<CallEntry> calls;
    readRows(m_db, rows, report, [&](const Sqlite3Cursor &row) {
        return [&] {
            CallEntry call;
            call.id = row.getInt64(0);
            call.address = row.getText(1);
            call.date = storedDate(row, 2, Epoch::Unix, m_db.name(), report);
            call.duration = row.getInt(3);
            call.type = row.getInt(4);
            call.person = row.getText(5);
            call.name = row.getText(6);
            call.country_code = row.getText(7);
            call.network_code = row.getText(8);
            call.read = row.getInt(9);
            call.assisted = row.getInt(10);
            call.face_time_data = row.getBlob(11);
            call.originalAddress = row.getText(12);
            call.answered = row.getInt(13);
            call.call_type = row.getInt(14);
            call.availability = row.getInt(15);
            call.device_id = row.getText(16);
            call.cn = row.getText(17);
            call.unique_id = row.getText(18);
            calls.append(std::move(call));
        };
    });
    std::sort(calls.begin(), calls.end(), [](const CallEntry &a, const CallEntry &b) {
        return a.date != b.date ? a.date > b.date : a.id > b.id;
    });
    return calls;
}

QString LocalCallHistoryDb::hashOf(const CallEntry &call)
{
    QCryptographicHash hash(QCryptographicHash::Md5);
    hash.addData(littleEndian(unixSeconds(call.date)));
    hash.addData(call.address.toUtf8());
    hash.addData(littleEndian(call.type));
    return QString::fromLatin1(hash.result().toHex());
}

LocalCallHistoryDb::Added LocalCallHistoryDb::add(const CallEntry &call)
{
    const QString hash = hashOf(call);
    // Only newer systems give calls an identity of their own: none is no difference.
    Sqlite3Cursor &there = m_db.cachedThrow(
        Sqlite3Sql(
            QStringLiteral("select _id,coalesce(duration,0)<>?2 or (?3<>'' and coalesce(name,'')<>?3) or "
                           "(?4<>'' and coalesce(unique_id,'') not in ('',?4)) from call where hash=?1"))
            .addTextParam(hash)
            .addIntParam(call.duration)
            .addTextParam(call.name)
            .addTextParam(call.unique_id));
    if (there.moveNext())
        return {there.getInt64(0), true, there.getInt(1) != 0};
    Sqlite3Sql insert(
        QStringLiteral("insert into call(address,date,duration,flags,person,hash,name,country_code,"
                       "network_code,read,assisted,face_time_data,originalAddress,answered,call_type,"
                       "availability,device_id,cn,unique_id) values(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)"));
    m_db.executeCachedThrow(addDate(insert.addTextParam(call.address), call.date)
                                .addIntParam(call.duration)
                                .addIntParam(call.type)
                                .addTextParam(call.person)
                                .addTextParam(hash)
                                .addTextParam(call.name)
                                .addTextParam(call.country_code)
                                .addTextParam(call.network_code)
                                .addIntParam(call.read)
                                .addIntParam(call.assisted)
                                .addBlobParam(call.face_time_data)
                                .addTextParam(call.originalAddress)
                                .addIntParam(call.answered)
                                .addIntParam(call.call_type)
                                .addIntParam(call.availability)
                                .addTextParam(call.device_id)
                                .addTextParam(call.cn)
                                .addTextParam(call.unique_id));
    return {m_db.lastInsertId()};
}

bool LocalCallHistoryDb::remove(qint64 id)
{
    m_db.executeCachedThrow(Sqlite3Sql(QStringLiteral("delete from call where _id=?")).addInt64Param(id));
    return m_db.changes() > 0;
}

#include "personal/local_call_history_db.h"

#include <QCryptographicHash>
#include <QtEndian>

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

qint64 secondsOf(const CallEntry &call)
{
    return call.date.toMSecsSinceEpoch() / 1000;
}

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
    Sqlite3Cursor row = m_db.queryThrow(QStringLiteral("select count(*) from call"));
    return row.moveNext() ? row.getInt64(0) : 0;
}

QList<CallEntry> LocalCallHistoryDb::readAll()
{
    Sqlite3Cursor row = m_db.queryThrow(QStringLiteral("select * from call order by date desc"));
    const auto column = [&row](const char *name) { return row.columnIndex(QLatin1String(name)); };
    const int id = column("_id"), address = column("address"), date = column("date"),
              duration = column("duration"), flags = column("flags"), person = column("person"),
              name = column("name"), country = column("country_code"), network = column("network_code"),
              read = column("read"), assisted = column("assisted"), faceTime = column("face_time_data"),
              original = column("originalAddress"), answered = column("answered"),
              callType = column("call_type"), availability = column("availability"),
              device = column("device_id"), cn = column("cn"), unique = column("unique_id");
    QList<CallEntry> calls;
    while (row.moveNext()) {
        CallEntry call;
        call.id = row.getInt64(id);
        call.address = row.getText(address);
        call.date = QDateTime::fromSecsSinceEpoch(row.getInt64(date), Qt::UTC);
        call.duration = row.getInt(duration);
        call.type = row.getInt(flags);
        call.person = row.getText(person);
        call.name = row.getText(name);
        call.country_code = row.getText(country);
        call.network_code = row.getText(network);
        call.read = row.getInt(read);
        call.assisted = row.getInt(assisted);
        call.face_time_data = row.getBlob(faceTime);
        call.originalAddress = row.getText(original);
        call.answered = row.getInt(answered);
        call.call_type = row.getInt(callType);
        call.availability = row.getInt(availability);
        call.device_id = row.getText(device);
        call.cn = row.getText(cn);
        call.unique_id = row.getText(unique);
        calls.append(std::move(call));
    }
    return calls;
}

QString LocalCallHistoryDb::hashOf(const CallEntry &call)
{
    QCryptographicHash hash(QCryptographicHash::Md5);
    hash.addData(littleEndian(secondsOf(call)));
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
    m_db.executeCachedThrow(
        Sqlite3Sql(
            QStringLiteral(
                "insert into call(address,date,duration,flags,person,hash,name,country_code,network_code,"
                "read,assisted,face_time_data,originalAddress,answered,call_type,availability,device_id,"
                "cn,unique_id) values(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)"))
            .addTextParam(call.address)
            .addInt64Param(secondsOf(call))
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

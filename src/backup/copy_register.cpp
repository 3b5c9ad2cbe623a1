#include "backup/copy_register.h"

namespace {
std::optional<qint64> readDate(Sqlite3DB &db, const QString &name)
{
    static const QString sql = QStringLiteral("select last_date from manifest where file_name like ?");
    Sqlite3Cursor &row = db.cachedThrow(Sqlite3Sql(sql).addTextParam(name));
    const std::optional<qint64> date = row.moveNext() ? std::optional(row.getInt64(0)) : std::nullopt;
    row.reset();
    return date;
}

void writeDate(Sqlite3DB &db, const QString &name, qint64 date)
{
    static const QString update = QStringLiteral("update manifest set last_date=? where file_name like ?");
    static const QString insert = QStringLiteral("insert into manifest(file_name,last_date) values(?,?)");
    const std::optional<qint64> known = readDate(db, name);
    if (!known)
        db.executeCachedThrow(Sqlite3Sql(insert).addTextParam(name).addInt64Param(date));
    else if (*known != date)
        db.executeCachedThrow(Sqlite3Sql(update).addInt64Param(date).addTextParam(name));
}
} // namespace

CopyRegister::CopyRegister(const QString &path) : m_database(path, QStringLiteral(":/res/cache_db.sql")) {}

std::optional<qint64> CopyRegister::cachedDate(const QByteArray &fileId)
{
    std::optional<qint64> date;
    m_database.read([&](Sqlite3DB &db) { date = readDate(db, QString::fromLatin1(fileId)); });
    return date;
}

bool CopyRegister::setCachedDate(const QByteArray &fileId, qint64 date)
{
    return m_database.change([&](Sqlite3DB &db) { writeDate(db, QString::fromLatin1(fileId), date); });
}

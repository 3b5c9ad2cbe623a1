#include "sqlite/sqlite3_db.h"

#include "base/error.h"

#include <QFileInfo>
#include <QUrl>

#include <sqlite3.h>

namespace {
constexpr int longestWaitMs = 2000;

int flagsOf(SqliteOpen mode)
{
    switch (mode) {
    case SqliteOpen::ReadOnly:
        return SQLITE_OPEN_READONLY;
    case SqliteOpen::ReadWrite:
        return SQLITE_OPEN_READWRITE;
    case SqliteOpen::ReadWriteCreate:
        return SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    case SqliteOpen::Immutable:
    case SqliteOpen::Salvage:
        return SQLITE_OPEN_READONLY | SQLITE_OPEN_URI;
    }
    return SQLITE_OPEN_READONLY;
}

QByteArray fileNameFor(const QString &path, SqliteOpen mode)
{
    if (mode != SqliteOpen::Immutable && mode != SqliteOpen::Salvage)
        return path.toUtf8();
    return QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()).toEncoded() + "?immutable=1";
}

// SQLite reads the file only when it must: ask for the schema so that a file that is no database fails now.
int touchSchema(sqlite3 *db)
{
    return sqlite3_exec(db, "select count(*) from sqlite_master", nullptr, nullptr, nullptr);
}

// Databases come from backups: definitions in them must not call functions or change SQLite's own tables.
// Only a connection that could change them opens a file that is shorter than its header says; one for salvage
// is read-only all the same.
void distrust(sqlite3 *db, SqliteOpen mode)
{
    const int salvage = mode == SqliteOpen::Salvage ? 1 : 0;
    sqlite3_db_config(db, SQLITE_DBCONFIG_DEFENSIVE, 1 - salvage, nullptr);
    sqlite3_db_config(db, SQLITE_DBCONFIG_WRITABLE_SCHEMA, salvage, nullptr);
    sqlite3_db_config(db, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
}
} // namespace

Sqlite3DB::~Sqlite3DB()
{
    close();
}

bool Sqlite3DB::open(const QString &path, SqliteOpen mode)
{
    close();
    m_path = path;
    const int opened = sqlite3_open_v2(fileNameFor(path, mode).constData(), &m_db, flagsOf(mode), nullptr);
    if (m_db)
        distrust(m_db, mode);
    // A store of this program may be open elsewhere in it, for as long as a few statements take.
    if (m_db && mode == SqliteOpen::ReadWriteCreate)
        sqlite3_busy_timeout(m_db, longestWaitMs);
    if (opened == SQLITE_OK && touchSchema(m_db) == SQLITE_OK)
        return true;
    m_lastError = m_db ? QString::fromUtf8(sqlite3_errmsg(m_db)) : QStringLiteral("out of memory");
    m_openError = m_db ? sqlite3_errcode(m_db) : SQLITE_NOMEM;
    close();
    return false;
}

int Sqlite3DB::lastErrorCode() const
{
    constexpr int withoutExtension = 0xFF;
    return (m_db ? sqlite3_errcode(m_db) : m_openError) & withoutExtension;
}

void Sqlite3DB::openThrow(const QString &path, SqliteOpen mode)
{
    if (!open(path, mode))
        throw Error(QStringLiteral("can not open %1. %2").arg(path, m_lastError));
}

void Sqlite3DB::close()
{
    m_cached.clear();
    sqlite3_close_v2(m_db);
    m_db = nullptr;
}

bool Sqlite3DB::exec(const QString &script)
{
    if (sqlite3_exec(m_db, script.toUtf8().constData(), nullptr, nullptr, nullptr) == SQLITE_OK)
        return true;
    m_lastError = QString::fromUtf8(sqlite3_errmsg(m_db));
    return false;
}

void Sqlite3DB::executeThrow(const Sqlite3Sql &sql)
{
    Sqlite3Cursor cursor = queryThrow(sql);
    while (cursor.moveNext()) {
    }
}

Sqlite3Cursor Sqlite3DB::queryThrow(const Sqlite3Sql &sql) const
{
    sqlite3_stmt *statement = nullptr;
    const QByteArray text = sql.sql().toUtf8();
    if (sqlite3_prepare_v2(m_db, text.constData(), static_cast<int>(text.size()), &statement, nullptr) !=
        SQLITE_OK)
        throw Error(
            QStringLiteral("can not read %1. %2").arg(m_path, QString::fromUtf8(sqlite3_errmsg(m_db))));
    sql.bindTo(statement);
    return Sqlite3Cursor(statement, m_path);
}

Sqlite3Cursor &Sqlite3DB::cachedThrow(const Sqlite3Sql &sql)
{
    auto kept = m_cached.constFind(sql.sql());
    if (kept == m_cached.constEnd())
        kept = m_cached.insert(sql.sql(), std::make_shared<Sqlite3Cursor>(queryThrow(sql)));
    else
        (*kept)->rebind(sql);
    return **kept;
}

void Sqlite3DB::executeCachedThrow(const Sqlite3Sql &sql)
{
    Sqlite3Cursor &cursor = cachedThrow(sql);
    while (cursor.moveNext()) {
    }
    cursor.reset();
}

// A kept statement that stands on a row would hold the file's lock beyond the transaction.
void Sqlite3DB::resetCached()
{
    for (const auto &cursor : std::as_const(m_cached))
        cursor->reset();
}

void Sqlite3DB::beginTran()
{
    executeThrow(QStringLiteral("begin immediate"));
}

void Sqlite3DB::commitTran()
{
    resetCached();
    executeThrow(QStringLiteral("commit"));
}

void Sqlite3DB::rollbackTran()
{
    resetCached();
    if (m_db && sqlite3_get_autocommit(m_db) == 0)
        sqlite3_exec(m_db, "rollback", nullptr, nullptr, nullptr);
}

qint64 Sqlite3DB::lastInsertId() const
{
    return sqlite3_last_insert_rowid(m_db);
}

int Sqlite3DB::changes() const
{
    return sqlite3_changes(m_db);
}

QList<_SqliteCol> Sqlite3DB::tbInfo(const QString &table) const
{
    QString quoted = table;
    quoted.replace(QLatin1Char('"'), QLatin1String("\"\""));
    QList<_SqliteCol> columns;
    Sqlite3Cursor cursor = queryThrow(QStringLiteral("pragma table_info(\"%1\")").arg(quoted));
    while (cursor.moveNext())
        columns.append({cursor.getText(1), cursor.getText(2), cursor.getInt(3) != 0, cursor.getText(4),
                        cursor.getInt(5)});
    return columns;
}

QSet<QString> Sqlite3DB::tbCols(const QString &table) const
{
    QSet<QString> names;
    const auto columns = tbInfo(table);
    for (const _SqliteCol &column : columns)
        names.insert(column.name.toLower());
    return names;
}

bool Sqlite3DB::hasTable(const QString &table) const
{
    Sqlite3Cursor cursor = queryThrow(
        Sqlite3Sql(QStringLiteral("select 1 from sqlite_master where type='table' and name=? collate nocase"))
            .addTextParam(table));
    return cursor.moveNext();
}

QString Sqlite3DB::likeCondition(const QString &text) const
{
    const int longest = sqlite3_limit(m_db, SQLITE_LIMIT_LIKE_PATTERN_LENGTH, -1);
    return text.toUtf8().size() <= longest ? QStringLiteral(" like ?") : QStringLiteral("=? collate nocase");
}

Sqlite3Transaction::Sqlite3Transaction(Sqlite3DB &db) : m_db(db)
{
    m_db.beginTran();
}

Sqlite3Transaction::~Sqlite3Transaction()
{
    if (m_open)
        m_db.rollbackTran();
}

void Sqlite3Transaction::commit()
{
    m_db.commitTran();
    m_open = false;
}

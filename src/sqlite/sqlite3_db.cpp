#include "sqlite/sqlite3_db.h"

#include "sqlite/foreign_guard.h"

#include <QFileInfo>
#include <QUrl>

#include <sqlite3.h>

#include <cerrno>
#include <utility>

namespace {
constexpr int longestWaitMs = 2000;
constexpr int withoutExtension = 0xFF; // of an error code

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

ErrorKind kindOfSystemError(int code)
{
    switch (code) {
    case ENOENT:
    case ENOTDIR:
        return ErrorKind::NotFound;
    case EACCES:
    case EPERM:
    case EROFS:
        return ErrorKind::Denied;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return ErrorKind::NoSpace;
    default:
        return ErrorKind::Other;
    }
}
} // namespace

Sqlite3DB::Sqlite3DB() = default;

Sqlite3DB::~Sqlite3DB()
{
    close();
}

bool Sqlite3DB::open(const DatabaseFile &file, SqliteOpen mode)
{
    m_isForeign = false;
    m_damage.clear();
    return openFile(file, mode);
}

bool Sqlite3DB::openFile(const DatabaseFile &file, SqliteOpen mode)
{
    close();
    m_file = file;
    m_mode = mode;
    m_openFailure = {};
    // Opening a pipe would wait for whoever writes into it.
    if (const QFileInfo info(file.path); info.exists() && !info.isFile()) {
        m_openFailure = {SQLITE_NOTADB, 0, QStringLiteral("It is no regular file.")};
        m_lastError = m_openFailure.message;
        return false;
    }
    const int opened =
        sqlite3_open_v2(fileNameFor(file.path, mode).constData(), &m_db, flagsOf(mode), nullptr);
    if (m_db)
        distrust(m_db, mode);
    if (m_db && m_isForeign)
        watchForeign();
    // A store of this program may be open elsewhere in it: somebody who writes locks readers out as well, for
    // as long as a few statements take.
    if (m_db && mode != SqliteOpen::Immutable && mode != SqliteOpen::Salvage)
        sqlite3_busy_timeout(m_db, longestWaitMs);
    if (opened == SQLITE_OK && touchSchema(m_db) == SQLITE_OK) {
        if (m_guard)
            m_guard->readTableKinds();
        return true;
    }
    m_openFailure = lastFailure();
    m_lastError = m_openFailure.message;
    close();
    return false;
}

Sqlite3DB::Failure Sqlite3DB::lastFailure() const
{
    if (m_db && ranAway())
        return {SQLITE_CORRUPT, 0, QStringLiteral("A statement on it does not end.")};
    if (m_db)
        return {sqlite3_extended_errcode(m_db), sqlite3_system_errno(m_db),
                QString::fromUtf8(sqlite3_errmsg(m_db))};
    return m_openFailure.code != 0
               ? m_openFailure
               : Failure{SQLITE_NOMEM, 0, QString::fromUtf8(sqlite3_errstr(SQLITE_NOMEM))};
}

ErrorKind Sqlite3DB::kindOf(const Failure &failure) const
{
    switch (failure.code & withoutExtension) {
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return ErrorKind::Damaged;
    case SQLITE_ERROR: // a statement that names what the tables lack
    case SQLITE_TOOBIG:
        return m_isForeign ? ErrorKind::Damaged : ErrorKind::Other;
    case SQLITE_FULL:
        return ErrorKind::NoSpace;
    case SQLITE_PERM:
    case SQLITE_READONLY:
    case SQLITE_AUTH:
        return ErrorKind::Denied;
    case SQLITE_CANTOPEN:
    case SQLITE_IOERR:
        return kindOfSystemError(failure.systemError);
    default:
        return ErrorKind::Other;
    }
}

Error Sqlite3DB::failure(const QString &sentence) const
{
    const Failure last = lastFailure();
    const ErrorKind kind = kindOf(last);
    // Damage is what reading finds, also in a file that was about to be changed.
    const bool writes = m_mode == SqliteOpen::ReadWrite || m_mode == SqliteOpen::ReadWriteCreate;
    const bool isWriting = writes && kind != ErrorKind::Damaged;
    return Error(sentence.arg(name(), last.message), kind,
                 isWriting ? FileAccess::Writing : FileAccess::Reading)
        .at(m_file.name);
}

bool Sqlite3DB::ranAway() const
{
    return m_guard && m_guard->end() == ForeignGuard::End::RanAway &&
           sqlite3_errcode(m_db) == SQLITE_INTERRUPT;
}

void Sqlite3DB::fail() const
{
    if (m_guard && m_guard->end() == ForeignGuard::End::Stopped && sqlite3_errcode(m_db) == SQLITE_INTERRUPT)
        throw Cancelled();
    const int code = lastFailure().code;
    const int simple = code & withoutExtension;
    const bool isWrite = simple == SQLITE_FULL || simple == SQLITE_READONLY || code == SQLITE_IOERR_WRITE ||
                         code == SQLITE_IOERR_FSYNC || code == SQLITE_IOERR_TRUNCATE;
    throw failure(isWrite ? QStringLiteral("can not write %1. %2") : QStringLiteral("can not read %1. %2"));
}

int Sqlite3DB::lastErrorCode() const
{
    return (m_db ? sqlite3_errcode(m_db) : m_openFailure.code) & withoutExtension;
}

void Sqlite3DB::openThrow(const DatabaseFile &file, SqliteOpen mode)
{
    if (!open(file, mode))
        throw failure(QStringLiteral("can not open %1. %2"));
}

void Sqlite3DB::openForeign(const DatabaseFile &file, SqliteOpen mode)
{
    m_isForeign = true;
    m_damage.clear();
    if (openFile(file, mode))
        return;
    const Error error = failure(QStringLiteral("can not open %1. %2"));
    // One that somebody has locked is whole: it is not to be read behind the lock.
    const bool isCutOff = lastErrorCode() == SQLITE_CORRUPT;
    if (!isCutOff || !openFile(file, SqliteOpen::Salvage))
        throw error;
    m_damage = error.sentence();
}

void Sqlite3DB::checkPages()
{
    if (!m_damage.isEmpty())
        return;
    try {
        Sqlite3Cursor row = queryThrow(QStringLiteral("pragma quick_check(1)"));
        QString answer = row.moveNext() ? row.getText(0).simplified() : QString();
        if (answer != QLatin1String("ok"))
            m_damage = answer.remove(QStringLiteral("*** in database main *** "));
    } catch (const Error &error) {
        m_damage = error.sentence();
    }
}

void Sqlite3DB::goOnWith(Sqlite3DB &copy)
{
    close();
    copy.m_cached.clear();
    copy.m_guard.reset();
    m_db = std::exchange(copy.m_db, nullptr);
    watchForeign();
    m_guard->readTableKinds();
}

void Sqlite3DB::watchForeign()
{
    m_guard = std::make_unique<ForeignGuard>(m_db);
    m_guard->setSize(QFileInfo(m_file.path).size());
}

void Sqlite3DB::close()
{
    m_cached.clear();
    m_guard.reset();
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
    if (m_guard)
        if (const QString table = m_guard->badTableOf(sql.sql()); !table.isEmpty())
            requireTable(table);
    sqlite3_stmt *statement = nullptr;
    const QByteArray text = sql.sql().toUtf8();
    if (sqlite3_prepare_v2(m_db, text.constData(), static_cast<int>(text.size()), &statement, nullptr) !=
        SQLITE_OK)
        fail();
    sql.bindTo(statement);
    return Sqlite3Cursor(statement, *this);
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
    QList<_SqliteCol> columns;
    Sqlite3Cursor cursor = queryThrow(QStringLiteral("pragma table_info(%1)").arg(quotedName(table)));
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

QString Sqlite3DB::tableFault(const QString &table) const
{
    if (const QString fault = m_guard ? m_guard->faultOf(table) : QString(); !fault.isEmpty())
        return QStringLiteral("the table %1 of %2 %3").arg(table, name(), fault);
    return hasTable(table) ? QString() : QStringLiteral("%1 has no table %2").arg(name(), table);
}

void Sqlite3DB::requireTable(const QString &table) const
{
    if (const QString fault = tableFault(table); !fault.isEmpty())
        throw Error(fault, ErrorKind::Damaged, FileAccess::Reading).at(m_file.name);
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

#include "sample/sqlite_file.h"

#include "base/error.h"
#include "sample/wal_salt.h"

#include <QFile>

#include <sqlite3.h>

namespace sample {

Statement::Statement(SqliteFile &file, const QByteArray &sql) : m_file(file)
{
    file.check(sqlite3_prepare_v2(file.m_handle, sql.constData(), static_cast<int>(sql.size()), &m_statement,
                                  nullptr),
               sql.constData());
}

Statement::Statement(Statement &&other) noexcept
    : m_file(other.m_file), m_statement(std::exchange(other.m_statement, nullptr))
{
}

Statement::~Statement()
{
    sqlite3_finalize(m_statement);
}

void Statement::bind(int position, qint64 value)
{
    sqlite3_bind_int64(m_statement, position, value);
}

void Statement::bind(int position, double value)
{
    sqlite3_bind_double(m_statement, position, value);
}

void Statement::bind(int position, std::nullptr_t)
{
    sqlite3_bind_null(m_statement, position);
}

void Statement::bind(int position, const QString &text)
{
    if (text.isNull()) {
        sqlite3_bind_null(m_statement, position);
        return;
    }
    const QByteArray utf8 = text.toUtf8();
    sqlite3_bind_text(m_statement, position, utf8.constData(), static_cast<int>(utf8.size()),
                      SQLITE_TRANSIENT);
}

void Statement::bind(int position, Utf8 text)
{
    sqlite3_bind_text(m_statement, position, text.bytes.data(), static_cast<int>(text.bytes.size()),
                      SQLITE_STATIC);
}

void Statement::bind(int position, const QByteArray &blob)
{
    if (blob.isNull())
        sqlite3_bind_null(m_statement, position);
    else
        sqlite3_bind_blob(m_statement, position, blob.constData(), static_cast<int>(blob.size()),
                          SQLITE_STATIC);
}

void Statement::step()
{
    int result = SQLITE_ROW;
    while (result == SQLITE_ROW)
        result = sqlite3_step(m_statement);
    if (result != SQLITE_DONE)
        m_file.fail(QString::fromUtf8(sqlite3_sql(m_statement)));
    sqlite3_reset(m_statement);
}

SqliteFile::SqliteFile(const QString &path) : m_path(path)
{
    open();
    // Nothing is kept that could differ between two runs, and nothing is waited for: a sample that
    // a power cut interrupts is made again.
    execute("pragma page_size=4096; pragma encoding='UTF-8'; pragma journal_mode=off; pragma synchronous=off;"
            "pragma secure_delete=on; pragma cache_size=-65536; pragma locking_mode=exclusive; begin");
}

SqliteFile::~SqliteFile()
{
    sqlite3_close(m_handle);
}

void SqliteFile::open()
{
    check(sqlite3_open_v2(m_path.toUtf8().constData(), &m_handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE,
                          nullptr),
          "open");
}

void SqliteFile::execute(const QByteArray &sql)
{
    check(sqlite3_exec(m_handle, sql.constData(), nullptr, nullptr, nullptr), sql.constData());
}

qint64 SqliteFile::lastInsertId() const
{
    return sqlite3_last_insert_rowid(m_handle);
}

qint64 SqliteFile::integer(const QByteArray &sql)
{
    sqlite3_stmt *statement = nullptr;
    check(sqlite3_prepare_v2(m_handle, sql.constData(), -1, &statement, nullptr), sql.constData());
    const qint64 result = sqlite3_step(statement) == SQLITE_ROW ? sqlite3_column_int64(statement, 0) : 0;
    sqlite3_finalize(statement);
    return result;
}

void SqliteFile::fail(const QString &what) const
{
    throw Error(QStringLiteral("can not write %1. %2 (%3)")
                    .arg(m_path, QString::fromUtf8(sqlite3_errmsg(m_handle)), what));
}

void SqliteFile::check(int result, const char *what) const
{
    if (result != SQLITE_OK)
        fail(QString::fromUtf8(what));
}

void SqliteFile::finish()
{
    execute("commit");
    check(sqlite3_close(m_handle), "close");
    m_handle = nullptr;
}

void SqliteFile::close(Journal journal)
{
    finish();
    if (journal == Journal::Rollback)
        return;
    QFile file(m_path);
    // Bytes 18 and 19 are the versions a writer and a reader must know: 2 is the write-ahead log.
    if (!file.open(QIODevice::ReadWrite) || !file.seek(18) || file.write("\x02\x02", 2) != 2)
        throw Error(QStringLiteral("can not write %1. %2").arg(m_path, file.errorString()));
}

void SqliteFile::beginWal()
{
    execute("commit; pragma journal_mode=wal; pragma wal_autocheckpoint=0; begin");
}

void SqliteFile::closeKeepingWal(quint64 salt)
{
    execute("commit");
    // Closing would fold the log into the database, so both are set aside while they are as they should stay.
    const QString aside = m_path + QStringLiteral("-aside");
    if (!QFile::copy(m_path, aside) ||
        !QFile::copy(m_path + QStringLiteral("-wal"), aside + QStringLiteral("-wal")))
        throw Error(QStringLiteral("can not create %1.").arg(aside));
    check(sqlite3_close(m_handle), "close");
    m_handle = nullptr;
    for (const QString &companion : {QString(), QStringLiteral("-wal")}) {
        QFile::remove(m_path + companion);
        if (!QFile::rename(aside + companion, m_path + companion))
            throw Error(QStringLiteral("can not create %1.").arg(m_path + companion));
    }
    saltWal(m_path + QStringLiteral("-wal"), salt);
}

} // namespace sample

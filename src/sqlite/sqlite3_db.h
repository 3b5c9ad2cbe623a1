#pragma once

#include "sqlite/sqlite3_cursor.h"
#include "sqlite/sqlite3_row.h"
#include "sqlite/sqlite3_sql.h"

#include <QSet>
#include <QStringList>

struct sqlite3;

enum class SqliteOpen {
    ReadOnly,        // the file is never written; companions may appear beside it
    ReadWrite,       // must exist
    ReadWriteCreate, // made when missing
    Immutable,       // read as it stands, no companion is made or looked at
    Salvage,         // as Immutable, also when the file was cut off: what is left can be read
};

/// One connection to one SQLite file, owned and used by one thread at a time. Closing is what the destructor
/// does as well; an open transaction is rolled back by it.
class Sqlite3DB
{
public:
    Sqlite3DB() = default;
    ~Sqlite3DB();
    Sqlite3DB(const Sqlite3DB &) = delete;
    Sqlite3DB &operator=(const Sqlite3DB &) = delete;

    /// False when the file cannot be opened or is no database; lastError() then says why.
    bool open(const QString &path, SqliteOpen mode = SqliteOpen::ReadOnly);
    /// Throws Error("can not open PATH. REASON"). A file that is no database, or is locked, fails here and
    /// not at the first statement.
    void openThrow(const QString &path, SqliteOpen mode = SqliteOpen::ReadOnly);
    void close();
    bool isOpen() const { return m_db != nullptr; }
    QString path() const { return m_path; }
    QString lastError() const { return m_lastError; }
    /// SQLite's code of the last failure, of opening as well, without its extension.
    int lastErrorCode() const;

    /// Runs a script of any number of statements; false on failure, see lastError().
    bool exec(const QString &script);
    /// Runs one statement to its end. Throws Error with SQLite's message.
    void executeThrow(const Sqlite3Sql &sql);
    /// Prepares a statement and stands before its first row. Throws Error with SQLite's message.
    Sqlite3Cursor queryThrow(const Sqlite3Sql &sql) const;

    /// The same as queryThrow() with a statement that is prepared once and kept: for the statements of a
    /// loop. The cursor is the caller's until the same text is asked for again, or the transaction ends.
    Sqlite3Cursor &cachedThrow(const Sqlite3Sql &sql);
    /// Runs a kept statement to its end.
    void executeCachedThrow(const Sqlite3Sql &sql);

    void beginTran();
    void commitTran();
    void rollbackTran();
    qint64 lastInsertId() const;
    /// Rows that the last statement inserted, changed or deleted.
    int changes() const;

    QList<_SqliteCol> tbInfo(const QString &table) const;
    /// Column names of a table in lower case; empty when there is no such table.
    QSet<QString> tbCols(const QString &table) const;
    bool hasTable(const QString &table) const;
    /// The rest of a condition that compares a column with `text`, which is to be bound: with LIKE, or, as
    /// LIKE refuses long patterns, for equality without regard to the case of ASCII letters.
    QString likeCondition(const QString &text) const;

    /// For calls that this wrapper does not have.
    sqlite3 *handle() const { return m_db; }

private:
    sqlite3 *m_db = nullptr;
    QString m_path;
    QString m_lastError;
    int m_openError = 0;
    QHash<QString, std::shared_ptr<Sqlite3Cursor>> m_cached;

    void resetCached();
};

/// Rolls back when it goes out of scope, unless it was committed.
class Sqlite3Transaction
{
public:
    explicit Sqlite3Transaction(Sqlite3DB &db);
    ~Sqlite3Transaction();
    Sqlite3Transaction(const Sqlite3Transaction &) = delete;
    Sqlite3Transaction &operator=(const Sqlite3Transaction &) = delete;

    void commit();

private:
    Sqlite3DB &m_db;
    bool m_open = true;
};

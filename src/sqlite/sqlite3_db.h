#pragma once

#include "base/error.h"
#include "sqlite/sqlite3_cursor.h"
#include "sqlite/sqlite3_row.h"
#include "sqlite/sqlite3_sql.h"

#include <QSet>
#include <QStringList>

struct sqlite3;
class ForeignGuard;

enum class SqliteOpen {
    ReadOnly,        // the file is never written; companions may appear beside it
    ReadWrite,       // must exist
    ReadWriteCreate, // made when missing
    Immutable,       // read as it stands, no companion is made or looked at
    Salvage,         // as Immutable, also when the file was cut off: what is left can be read
};

/// A database file of this computer, and what it is called.
struct DatabaseFile
{
    DatabaseFile(const QString &place, const QString &calledBy = {}) : path(place), name(calledBy) {}

    QString path;
    /// The file of the backup that it is a copy of, "domain path". Sentences then tell this and not the path,
    /// and it is the Error::where() of what fails. Empty for a file that is meant itself.
    QString name;
};

/// One connection to one SQLite file, owned and used by one thread at a time. Closing is what the destructor
/// does as well; an open transaction is rolled back by it.
///
/// The kind of an Error tells what SQLite's code means: Damaged (what is there is no whole database),
/// NoSpace, Denied, NotFound.
class Sqlite3DB
{
public:
    Sqlite3DB();
    ~Sqlite3DB();
    Sqlite3DB(const Sqlite3DB &) = delete;
    Sqlite3DB &operator=(const Sqlite3DB &) = delete;

    /// False when the file cannot be opened or is no database; lastError() then says why. What is no regular
    /// file (a pipe, a device) is not touched.
    bool open(const DatabaseFile &file, SqliteOpen mode = SqliteOpen::ReadOnly);
    /// Throws Error("can not open NAME. REASON"). A file that is no database, or is locked, fails here and
    /// not at the first statement.
    void openThrow(const DatabaseFile &file, SqliteOpen mode = SqliteOpen::ReadOnly);
    /// The same for a database that somebody else made: one out of a backup, or a loose file. Whatever cannot
    /// be read of it is damage. One that was cut off is opened for what is left of it, see damage().
    /// Statements on it may name tables alone: a view, a virtual table or one with computed columns in the
    /// place of a table is damage. A statement ends with Error when it works on and on without a row, and
    /// with Cancelled when the job of this thread is to stop (StatementStop).
    void openForeign(const DatabaseFile &file, SqliteOpen mode = SqliteOpen::ReadOnly);
    /// Goes on under its name with what `copy` holds, which is closed by it. No cursor may be there.
    void goOnWith(Sqlite3DB &copy);
    /// Looks at every page of the file, which takes one reading of it: SQLite itself follows a tree whose
    /// pages are swapped, doubled or emptied without a word. Throws Cancelled.
    void checkPages();
    /// What openForeign() or checkPages() found wrong with the file as a whole, a sentence; empty for
    /// nothing.
    QString damage() const { return m_damage; }
    void close();
    bool isOpen() const { return m_db != nullptr; }
    QString path() const { return m_file.path; }
    /// What sentences call it.
    QString name() const { return m_file.name.isEmpty() ? m_file.path : m_file.name; }
    QString lastError() const { return m_lastError; }
    /// The last failure as an error; "%1" of the sentence is replaced by the name, "%2" by SQLite's message.
    Error failure(const QString &sentence) const;
    /// What SQLite says of the last failure, of a statement as well.
    QString lastMessage() const { return lastFailure().message; }
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
    /// Why a table cannot be read at all: it is not there, or no table; a sentence. Empty when it can be.
    QString tableFault(const QString &table) const;
    /// Throws Error with that sentence.
    void requireTable(const QString &table) const;
    /// The rest of a condition that compares a column with `text`, which is to be bound: with LIKE, or, as
    /// LIKE refuses long patterns, for equality without regard to the case of ASCII letters.
    QString likeCondition(const QString &text) const;

    /// For calls that this wrapper does not have.
    sqlite3 *handle() const { return m_db; }
    /// Null for a database of our own.
    ForeignGuard *guard() const { return m_guard.get(); }
    /// Throws the failure of a statement, which says whether the file could not be read or not be written.
    [[noreturn]] void fail() const;

private:
    /// What SQLite says of a failure, kept of an attempt to open.
    struct Failure
    {
        int code = 0;        // extended
        int systemError = 0; // errno
        QString message;
    };

    sqlite3 *m_db = nullptr;
    DatabaseFile m_file{QString()};
    SqliteOpen m_mode = SqliteOpen::ReadOnly;
    bool m_isForeign = false;
    std::unique_ptr<ForeignGuard> m_guard;
    QString m_damage;
    QString m_lastError;
    Failure m_openFailure;
    QHash<QString, std::shared_ptr<Sqlite3Cursor>> m_cached;

    bool openFile(const DatabaseFile &file, SqliteOpen mode);
    Failure lastFailure() const;
    ErrorKind kindOf(const Failure &failure) const;
    void watchForeign();
    bool ranAway() const;
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

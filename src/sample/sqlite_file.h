#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace sample {

class SqliteFile;

/// UTF-8 bytes that go into a column as text; a bare QByteArray goes in as a blob.
struct Utf8
{
    QByteArrayView bytes;
};

/// A prepared statement that is run again and again with other values. Must be gone before its database
/// closes.
class Statement
{
public:
    Statement(SqliteFile &file, const QByteArray &sql);
    Statement(Statement &&other) noexcept;
    Statement(const Statement &) = delete;
    Statement &operator=(const Statement &) = delete;
    Statement &operator=(Statement &&) = delete;
    ~Statement();

    /// Binds the values in order and runs the statement to its end. Throws Error.
    template <typename... Values>
    void run(const Values &...values)
    {
        int position = 0;
        (bind(++position, values), ...);
        step();
    }

    void bind(int position, qint64 value);
    void bind(int position, int value) { bind(position, qint64(value)); }
    void bind(int position, bool value) { bind(position, qint64(value)); }
    void bind(int position, double value);
    void bind(int position, std::nullptr_t);
    /// NULL when the text or the array is null.
    void bind(int position, const QString &text);
    void bind(int position, Utf8 text);
    void bind(int position, const QByteArray &blob);
    void step();

private:
    SqliteFile &m_file;
    sqlite3_stmt *m_statement = nullptr;
};

/// A database that is written from empty to finished in one transaction. The bytes depend on the statements
/// alone.
class SqliteFile
{
public:
    /// What the header says of the journal: device databases mostly say WAL without having one beside them.
    enum class Journal { Rollback, Wal };

    explicit SqliteFile(const QString &path);
    SqliteFile(const SqliteFile &) = delete;
    SqliteFile &operator=(const SqliteFile &) = delete;
    ~SqliteFile();

    /// Runs one or more statements without parameters. Throws Error.
    void execute(const QByteArray &sql);
    qint64 lastInsertId() const;
    /// First column of the first row.
    qint64 integer(const QByteArray &sql);

    void close(Journal journal);

    /// Commits what there is into the file itself; what follows stays in the write-ahead log.
    void beginWal();
    /// Closes and keeps the log as path + "-wal". Its salts, which SQLite draws by chance, are replaced by
    /// `salt`.
    void closeKeepingWal(quint64 salt);
    const QString &path() const { return m_path; }

private:
    friend class Statement;

    [[noreturn]] void fail(const QString &what) const;
    void check(int result, const char *what) const;
    void open();
    void finish();

    QString m_path;
    sqlite3 *m_handle = nullptr;
};

} // namespace sample

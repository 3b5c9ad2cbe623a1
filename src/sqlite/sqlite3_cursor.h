#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QHash>
#include <QString>

#include <memory>

struct sqlite3_stmt;
class Sqlite3DB;
class Sqlite3Row;
class Sqlite3Sql;

/// One prepared statement and the row it stands on. Owned by whoever asked the database for it, and must be
/// gone before the database is closed. A column that the statement does not have, an index of -1 included,
/// reads as 0 or empty; so does NULL. Resolve names with columnIndex() before a loop.
class Sqlite3Cursor
{
public:
    Sqlite3Cursor(Sqlite3Cursor &&) noexcept;
    Sqlite3Cursor &operator=(Sqlite3Cursor &&) noexcept;
    ~Sqlite3Cursor();

    /// Steps to the next row; false after the last. Throws Error when the database fails.
    bool moveNext();
    /// Stands before the first row again.
    void reset();
    /// The same with other values.
    void rebind(const Sqlite3Sql &values);

    /// Binds one value in place, counted from 1, for the statements of a big loop; a position that the
    /// statement does not have is passed over.
    void bindInt64(int position, qint64 value);
    void bindText(int position, const QString &value);
    void bindBlob(int position, const QByteArray &value);
    void bindNull(int position);
    /// Runs to the end and stands ready for other values. Throws Error when the database fails.
    void execute();
    /// The same, but false when the row is refused because a value that must be unique is there already.
    bool executeUnlessTaken();

    /// Number of columns.
    int count() const;
    QString columnName(int column) const;
    /// Index of a column by its name without regard to case, -1 when there is none.
    int columnIndex(const QString &name) const;

    bool isNull(int column) const;
    int getInt(int column) const;
    qint64 getInt64(int column) const;
    double getDouble(int column) const;
    QString getText(int column) const;
    QByteArray getBlob(int column) const;
    /// The UTF-8 text or the bytes of a column where SQLite holds them: valid until the next step.
    QByteArrayView viewText(int column) const;
    QByteArrayView viewBlob(int column) const;

    int getInt(const QString &name) const { return getInt(columnIndex(name)); }
    qint64 getInt64(const QString &name) const { return getInt64(columnIndex(name)); }
    QString getText(const QString &name) const { return getText(columnIndex(name)); }
    QByteArray getBlob(const QString &name) const { return getBlob(columnIndex(name)); }

    Sqlite3Row getRow() const;

    /// For calls that this wrapper does not have.
    sqlite3_stmt *statement() const { return m_statement; }

private:
    friend class Sqlite3DB;
    Sqlite3Cursor(sqlite3_stmt *statement, const Sqlite3DB &db);

    bool has(int column) const;
    [[noreturn]] void fail() const;

    sqlite3_stmt *m_statement = nullptr;
    const Sqlite3DB *m_db;
    mutable QHash<QString, int> m_columns;
};

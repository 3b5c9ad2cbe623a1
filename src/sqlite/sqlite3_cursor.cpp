#include "sqlite/sqlite3_cursor.h"

#include "sqlite/foreign_guard.h"
#include "sqlite/sqlite3_db.h"
#include "sqlite/sqlite3_row.h"
#include "sqlite/sqlite3_sql.h"

#include <sqlite3.h>

#include <utility>

Sqlite3Cursor::Sqlite3Cursor(sqlite3_stmt *statement, const Sqlite3DB &db) : m_statement(statement), m_db(&db)
{
}

Sqlite3Cursor::Sqlite3Cursor(Sqlite3Cursor &&other) noexcept
    : m_statement(std::exchange(other.m_statement, nullptr)),
      m_db(other.m_db),
      m_columns(std::move(other.m_columns))
{
}

Sqlite3Cursor &Sqlite3Cursor::operator=(Sqlite3Cursor &&other) noexcept
{
    std::swap(m_statement, other.m_statement);
    std::swap(m_db, other.m_db);
    std::swap(m_columns, other.m_columns);
    return *this;
}

Sqlite3Cursor::~Sqlite3Cursor()
{
    sqlite3_finalize(m_statement);
}

bool Sqlite3Cursor::moveNext()
{
    const int result = sqlite3_step(m_statement);
    if (result != SQLITE_ROW && result != SQLITE_DONE)
        fail();
    if (ForeignGuard *guard = m_db->guard())
        guard->gotOn();
    return result == SQLITE_ROW;
}

void Sqlite3Cursor::fail() const
{
    m_db->fail();
}

void Sqlite3Cursor::bindInt64(int position, qint64 value)
{
    sqlite3_bind_int64(m_statement, position, value);
}

void Sqlite3Cursor::bindText(int position, const QString &value)
{
    const QByteArray utf8 = value.toUtf8();
    sqlite3_bind_text64(m_statement, position, utf8.constData(), static_cast<sqlite3_uint64>(utf8.size()),
                        SQLITE_TRANSIENT, SQLITE_UTF8);
}

void Sqlite3Cursor::bindBlob(int position, const QByteArray &value)
{
    sqlite3_bind_blob64(m_statement, position, value.isNull() ? "" : value.constData(),
                        static_cast<sqlite3_uint64>(value.size()), SQLITE_TRANSIENT);
}

void Sqlite3Cursor::bindNull(int position)
{
    sqlite3_bind_null(m_statement, position);
}

void Sqlite3Cursor::execute()
{
    while (moveNext()) {
    }
    reset();
}

bool Sqlite3Cursor::executeUnlessTaken()
{
    int result = SQLITE_ROW;
    while (result == SQLITE_ROW)
        result = sqlite3_step(m_statement);
    const int code = sqlite3_extended_errcode(sqlite3_db_handle(m_statement));
    if (result != SQLITE_DONE && code != SQLITE_CONSTRAINT_UNIQUE && code != SQLITE_CONSTRAINT_PRIMARYKEY)
        fail();
    reset();
    return result == SQLITE_DONE;
}

void Sqlite3Cursor::reset()
{
    sqlite3_reset(m_statement);
}

void Sqlite3Cursor::rebind(const Sqlite3Sql &values)
{
    reset();
    sqlite3_clear_bindings(m_statement);
    values.bindTo(m_statement);
}

int Sqlite3Cursor::count() const
{
    return sqlite3_column_count(m_statement);
}

QString Sqlite3Cursor::columnName(int column) const
{
    return QString::fromUtf8(sqlite3_column_name(m_statement, column));
}

int Sqlite3Cursor::columnIndex(const QString &name) const
{
    if (m_columns.isEmpty())
        for (int i = count(); i-- > 0;)
            m_columns.insert(columnName(i).toLower(), i);
    return m_columns.value(name.toLower(), -1);
}

bool Sqlite3Cursor::has(int column) const
{
    return column >= 0 && column < sqlite3_data_count(m_statement);
}

bool Sqlite3Cursor::isNull(int column) const
{
    return !has(column) || sqlite3_column_type(m_statement, column) == SQLITE_NULL;
}

int Sqlite3Cursor::getInt(int column) const
{
    return has(column) ? sqlite3_column_int(m_statement, column) : 0;
}

qint64 Sqlite3Cursor::getInt64(int column) const
{
    return has(column) ? sqlite3_column_int64(m_statement, column) : 0;
}

double Sqlite3Cursor::getDouble(int column) const
{
    return has(column) ? sqlite3_column_double(m_statement, column) : 0;
}

QString Sqlite3Cursor::getText(int column) const
{
    return QString::fromUtf8(viewText(column));
}

QByteArray Sqlite3Cursor::getBlob(int column) const
{
    return viewBlob(column).toByteArray();
}

QByteArrayView Sqlite3Cursor::viewText(int column) const
{
    if (!has(column))
        return {};
    const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(m_statement, column));
    return text ? QByteArrayView(text, sqlite3_column_bytes(m_statement, column)) : QByteArrayView();
}

QByteArrayView Sqlite3Cursor::viewBlob(int column) const
{
    if (!has(column))
        return {};
    const auto *bytes = static_cast<const char *>(sqlite3_column_blob(m_statement, column));
    return bytes ? QByteArrayView(bytes, sqlite3_column_bytes(m_statement, column)) : QByteArrayView();
}

Sqlite3Row Sqlite3Cursor::getRow() const
{
    Sqlite3Row row;
    for (int i = 0; i < count(); ++i) {
        const QString name = columnName(i);
        switch (has(i) ? sqlite3_column_type(m_statement, i) : SQLITE_NULL) {
        case SQLITE_INTEGER:
            row.set(name, getInt64(i));
            break;
        case SQLITE_FLOAT:
            row.set(name, getDouble(i));
            break;
        case SQLITE_TEXT:
            row.set(name, getText(i));
            break;
        case SQLITE_BLOB:
            row.set(name, getBlob(i));
            break;
        default:
            row.set(name, QVariant());
        }
    }
    return row;
}

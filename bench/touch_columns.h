#pragma once

#include "sqlite/sqlite3_db.h"

#include <sqlite3.h>

#include <initializer_list>

namespace bench {

/// The baseline of a reader: steps through its statements and touches every column, and does nothing with
/// them.
template <typename Statements = std::initializer_list<const char *>>
void touchEveryColumn(const QString &path, const Statements &statements)
{
    Sqlite3DB db;
    db.openThrow(path);
    volatile qint64 sink = 0;
    for (const char *sql : statements) {
        Sqlite3Cursor cursor = db.queryThrow(QString::fromLatin1(sql));
        sqlite3_stmt *row = cursor.statement();
        const int columns = cursor.count();
        while (cursor.moveNext())
            for (int i = 0; i < columns; ++i)
                switch (sqlite3_column_type(row, i)) {
                case SQLITE_INTEGER:
                    sink = sink + sqlite3_column_int64(row, i);
                    break;
                case SQLITE_TEXT:
                    sink = sink + *sqlite3_column_text(row, i) + sqlite3_column_bytes(row, i);
                    break;
                case SQLITE_BLOB:
                    sink = sink + sqlite3_column_bytes(row, i);
                    break;
                default:
                    break;
                }
    }
}

} // namespace bench

#pragma once

#include "sqlite/sqlite3_db.h"

#include <QStringList>

#include <functional>
#include <vector>

class Report;

/// Makes of a statement that stands before its first row what is to be done for each of its rows. May be
/// called more than once in a reading; the statement lives as long as what is returned is used. Column 0 is
/// the row id, then come the columns that were asked for, in their order, under their names.
using PrepareRows = std::function<std::function<void()>(const Sqlite3Cursor &)>;

/// What is to be read of a table.
struct TableRows
{
    enum class Need {
        Essential, // without it there is nothing to show: Error
        Expected,  // its absence is damage
        Optional,  // some systems do not have it
    };

    QString table;
    /// What every system has in it: a missing one is damage, and reads as null. None at all: whatever there
    /// is.
    QStringList columns{};
    /// What only some systems have: a missing one reads as null.
    QStringList optional{};
    Need need = Need::Essential;
};

/// What came of a reading.
struct RowsRead
{
    qint64 rows = 0;     // handed over
    qint64 lost = 0;     // that are known to be there
    bool isWhole = true; // false when rows were lost, be it nobody can tell how many
};

/// Reads every row of a table by ascending row id. Where the database is damaged it reads around: from the
/// end, between the damaged pages, and, where an index has all the columns, there; the order is any then, and
/// no row comes twice. What is lost goes into the report as one issue of the table, missing columns and
/// tables as others. Throws Error when an Essential table cannot be read at all.
RowsRead readRows(const Sqlite3DB &db, const TableRows &what, Report &report, const PrepareRows &prepare);

/// The same for the rows of these ids; one that is not there is no damage.
RowsRead readRowsById(const Sqlite3DB &db, const TableRows &what, const std::vector<qint64> &ids,
                      Report &report, const PrepareRows &prepare);

/// The number of rows that readRows() reads.
qint64 countRows(const Sqlite3DB &db, const TableRows &what, Report &report);

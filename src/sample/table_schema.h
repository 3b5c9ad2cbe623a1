#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <span>

namespace sample {

/// One column and the generations that have it.
struct Column
{
    const char *name;
    const char *declaration;
    int since = 0;
    int until = 99; // the last generation that has it

    bool existsIn(int ios) const { return ios >= since && ios <= until; }
};

/// The CREATE TABLE statement of one generation; `constraints` is appended behind the columns when not empty.
QByteArray createTable(const char *table, std::span<const Column> columns, int ios,
                       const char *constraints = "");

/// The names of the columns of one generation, in the order of the table.
QByteArrayList columnNames(std::span<const Column> columns, int ios);

} // namespace sample

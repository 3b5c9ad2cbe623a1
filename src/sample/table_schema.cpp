#include "sample/table_schema.h"

namespace sample {

QByteArray createTable(const char *table, std::span<const Column> columns, int ios, const char *constraints)
{
    QByteArrayList parts;
    for (const Column &column : columns) {
        if (column.existsIn(ios))
            parts << QByteArray(column.name) + ' ' + column.declaration;
    }
    if (*constraints)
        parts << constraints;
    return QByteArray("CREATE TABLE ") + table + " (" + parts.join(", ") + ");\n";
}

QByteArrayList columnNames(std::span<const Column> columns, int ios)
{
    QByteArrayList names;
    for (const Column &column : columns) {
        if (column.existsIn(ios))
            names << column.name;
    }
    return names;
}

} // namespace sample

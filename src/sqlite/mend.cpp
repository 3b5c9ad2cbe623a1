#include "sqlite/mend.h"

#include "base/report.h"
#include "sqlite/foreign_guard.h"

#include <sqlite3.h>

#include <algorithm>

namespace {
/// A table without its constraints, which damage may have broken: the names and types of its columns, and
/// which of them is the row id, -1 for none.
struct Columns
{
    explicit Columns(const QList<_SqliteCol> &columns)
    {
        const auto keys = std::count_if(columns.begin(), columns.end(),
                                        [](const _SqliteCol &column) { return column.primaryKey > 0; });
        QStringList parameters{QStringLiteral("?")};
        for (const _SqliteCol &column : columns) {
            const bool isRowid = keys == 1 && column.primaryKey > 0 &&
                                 column.type.compare(QLatin1String("INTEGER"), Qt::CaseInsensitive) == 0;
            if (isRowid)
                rowid = static_cast<int>(definitions.size());
            else
                parameters.append(QStringLiteral("?"));
            definitions.append(quotedName(column.name) + (isRowid ? QStringLiteral(" INTEGER PRIMARY KEY")
                                                          : column.type.isEmpty()
                                                              ? QString()
                                                              : u' ' + quotedName(column.type)));
            if (!isRowid)
                names.append(quotedName(column.name));
        }
        values = parameters.join(u',');
    }

    QStringList definitions;
    QStringList names{QStringLiteral("_rowid_")}; // that are inserted
    QString values;
    int rowid = -1;
};

// Readers join tables by columns such as "message_id", which the indexes of a damaged database no longer help with.
void indexReferences(Sqlite3DB &db, const QString &table)
{
    const auto columns = db.tbInfo(table);
    for (const _SqliteCol &column : columns)
        if (column.name.endsWith(QLatin1String("_id"), Qt::CaseInsensitive))
            db.executeThrow(QStringLiteral("create index %1 on %2(%3)")
                                .arg(quotedName(table + u' ' + column.name), quotedName(table),
                                     quotedName(column.name)));
}

RowsRead copyTable(const Sqlite3DB &from, Sqlite3DB &to, const TableRows &what, Report &report)
{
    const Columns columns(from.tbInfo(what.table));
    const QString table = quotedName(what.table);
    to.executeThrow(QStringLiteral("create table %1(%2)").arg(table, columns.definitions.join(u',')));
    Sqlite3Cursor insert = to.queryThrow(
        QStringLiteral("insert into %1(%2) values(%3)").arg(table, columns.names.join(u','), columns.values));
    qint64 refused = 0;
    RowsRead read = readRows(from, what, report, [&](const Sqlite3Cursor &row) {
        return [&] {
            int position = 0;
            for (int column = 0; column < row.count(); ++column)
                if (column - 1 != columns.rowid || column == 0)
                    sqlite3_bind_value(insert.statement(), ++position,
                                       sqlite3_column_value(row.statement(), column));
            if (!insert.executeUnlessTaken())
                ++refused;
        };
    });
    if (refused == 0)
        return read;
    report.add({.what = "IDS_ISSUE_ROWS_DAMAGED",
                .where = from.name(),
                .count = refused,
                .reason = what.table + QStringLiteral(": row ids stand in it twice")});
    read.isWhole = false;
    return read;
}
} // namespace

QSet<QString> mend(Sqlite3DB &db, const QStringList &tables, Report &report)
{
    Sqlite3DB copy;
    copy.openThrow({QString(), db.name()}, SqliteOpen::ReadWriteCreate);
    copy.exec(QStringLiteral("pragma journal_mode=off; pragma synchronous=off"));
    QSet<QString> incomplete;
    copy.beginTran();
    for (const QString &table : tables) {
        TableRows what{table};
        what.need = table == tables.first() ? TableRows::Need::Essential : TableRows::Need::Optional;
        const bool isAbsent = !db.hasTable(table) && db.guard()->faultOf(table).isEmpty();
        if (isAbsent && what.need == TableRows::Need::Optional)
            continue;
        const bool isTable = db.tableFault(table).isEmpty();
        const bool isWhole =
            (isTable ? copyTable(db, copy, what, report) : readRows(db, what, report, {})).isWhole;
        if (isTable)
            indexReferences(copy, table);
        if (!isWhole)
            incomplete.insert(table);
    }
    copy.commitTran();
    db.goOnWith(copy);
    return incomplete;
}

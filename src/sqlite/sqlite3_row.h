#pragma once

#include "sqlite/sqlite3_sql.h"

#include <QList>
#include <QPair>

/// What `pragma table_info` says of one column.
struct _SqliteCol
{
    QString name;
    QString type;
    bool notNull = false;
    QString defaultValue;
    int primaryKey = 0;
};

/// One row as column names and values, in column order.
class Sqlite3Row
{
public:
    void set(const QString &column, const QVariant &value);
    QVariant value(const QString &column) const;
    const QList<QPair<QString, QVariant>> &columns() const { return m_columns; }

    /// "insert into TABLE(...) values(?,...)" with this row's values as parameters.
    Sqlite3Sql insertSql(const QString &table) const;

private:
    QList<QPair<QString, QVariant>> m_columns;
};

#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <vector>

struct sqlite3_stmt;

/// The name of a table or column as it is written in a statement, whatever it holds.
QString quotedName(const QString &name);

/// The text of a statement and the values of its positional `?` parameters, in order.
class Sqlite3Sql
{
public:
    Sqlite3Sql() = default;
    Sqlite3Sql(const QString &sql) : m_sql(sql) {}

    Sqlite3Sql &appendSql(const QString &sql);
    Sqlite3Sql &addTextParam(const QString &value);
    Sqlite3Sql &addIntParam(int value);
    Sqlite3Sql &addInt64Param(qint64 value);
    Sqlite3Sql &addDoubleParam(double value);
    Sqlite3Sql &addBlobParam(const QByteArray &value);
    Sqlite3Sql &addNullParam();

    const QString &sql() const { return m_sql; }
    /// Binds every value to a prepared statement of this text.
    void bindTo(sqlite3_stmt *statement) const;

private:
    QString m_sql;
    std::vector<QVariant> m_params;
};

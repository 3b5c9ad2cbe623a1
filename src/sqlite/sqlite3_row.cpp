#include "sqlite/sqlite3_row.h"

#include <QStringList>

void Sqlite3Row::set(const QString &column, const QVariant &value)
{
    for (auto &entry : m_columns) {
        if (entry.first.compare(column, Qt::CaseInsensitive) == 0) {
            entry.second = value;
            return;
        }
    }
    m_columns.append({column, value});
}

QVariant Sqlite3Row::value(const QString &column) const
{
    for (const auto &entry : m_columns)
        if (entry.first.compare(column, Qt::CaseInsensitive) == 0)
            return entry.second;
    return {};
}

Sqlite3Sql Sqlite3Row::insertSql(const QString &table) const
{
    QStringList names;
    QStringList marks;
    Sqlite3Sql sql;
    for (const auto &[name, value] : m_columns) {
        QString quoted = name;
        names.append(QLatin1Char('"') + quoted.replace(QLatin1Char('"'), QLatin1String("\"\"")) +
                     QLatin1Char('"'));
        marks.append(QStringLiteral("?"));
        switch (value.typeId()) {
        case QMetaType::Double:
            sql.addDoubleParam(value.toDouble());
            break;
        case QMetaType::QString:
            sql.addTextParam(value.toString());
            break;
        case QMetaType::QByteArray:
            sql.addBlobParam(value.toByteArray());
            break;
        case QMetaType::UnknownType:
            sql.addNullParam();
            break;
        default:
            sql.addInt64Param(value.toLongLong());
        }
    }
    return sql.appendSql(QStringLiteral("insert into %1(%2) values(%3)")
                             .arg(table, names.join(QLatin1Char(',')), marks.join(QLatin1Char(','))));
}

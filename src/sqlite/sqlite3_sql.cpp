#include "sqlite/sqlite3_sql.h"

#include <sqlite3.h>

QString quotedName(const QString &name)
{
    return u'"' + QString(name).replace(QLatin1Char('"'), QLatin1String("\"\"")) + u'"';
}

Sqlite3Sql &Sqlite3Sql::appendSql(const QString &sql)
{
    m_sql += sql;
    return *this;
}

Sqlite3Sql &Sqlite3Sql::addTextParam(const QString &value)
{
    m_params.emplace_back(value);
    return *this;
}

Sqlite3Sql &Sqlite3Sql::addIntParam(int value)
{
    return addInt64Param(value);
}

Sqlite3Sql &Sqlite3Sql::addInt64Param(qint64 value)
{
    m_params.emplace_back(value);
    return *this;
}

Sqlite3Sql &Sqlite3Sql::addDoubleParam(double value)
{
    m_params.emplace_back(value);
    return *this;
}

Sqlite3Sql &Sqlite3Sql::addBlobParam(const QByteArray &value)
{
    m_params.emplace_back(value);
    return *this;
}

Sqlite3Sql &Sqlite3Sql::addNullParam()
{
    m_params.emplace_back();
    return *this;
}

void Sqlite3Sql::bindTo(sqlite3_stmt *statement) const
{
    int index = 0;
    for (const QVariant &value : m_params) {
        ++index;
        switch (value.typeId()) {
        case QMetaType::LongLong:
            sqlite3_bind_int64(statement, index, value.toLongLong());
            break;
        case QMetaType::Double:
            sqlite3_bind_double(statement, index, value.toDouble());
            break;
        case QMetaType::QString: {
            const QByteArray utf8 = value.toString().toUtf8();
            sqlite3_bind_text64(statement, index, utf8.constData(), static_cast<sqlite3_uint64>(utf8.size()),
                                SQLITE_TRANSIENT, SQLITE_UTF8);
            break;
        }
        case QMetaType::QByteArray: {
            const QByteArray bytes = value.toByteArray();
            sqlite3_bind_blob64(statement, index, bytes.isNull() ? "" : bytes.constData(),
                                static_cast<sqlite3_uint64>(bytes.size()), SQLITE_TRANSIENT);
            break;
        }
        default:
            sqlite3_bind_null(statement, index);
        }
    }
}

#pragma once

#include "messages/column_list.h"
#include "messages/record_date.h"
#include "sqlite/sqlite3_db.h"

#include <QStringList>

#include <optional>
#include <vector>

/// The statement that inserts records into one table, prepared once. Columns that the table lacks are left
/// out. Must be gone before the database is closed.
template <typename Record>
class RecordInsert
{
public:
    template <typename Field>
    using List = ColumnList<Record, Field>;

    RecordInsert(Sqlite3DB &db, const char *table)
        : m_db(&db),
          m_table(QLatin1String(table)),
          m_tableColumns(db.tbCols(m_table)),
          m_columns(QStringLiteral("ROWID"))
    {
    }

    void numbers(List<int> fields) { resolve(fields, m_numbers); }
    /// But for the row id, which is given with each record.
    void bigNumbers(List<qint64> fields)
    {
        for (const auto &[column, field] : fields)
            if (QLatin1String(column) != QLatin1String("rowid"))
                resolve(List<qint64>{{column, field}}, m_bigNumbers);
    }
    /// Empty texts are stored as NULL, but for those that the table requires.
    void texts(List<QString> fields) { resolve(fields, m_texts); }
    void repeatedTexts(List<QString> fields) { resolve(fields, m_texts); }
    void requiredTexts(List<QString> fields) { resolve(fields, m_requiredTexts); }
    void bytes(List<QByteArray> fields) { resolve(fields, m_bytes); }
    void dates(List<int> fields, DateUnit unit) { resolve(fields, m_dates, unit); }

    /// Where a column stands among the values of the statement, so that a caller can bind another one; 0 when
    /// the table lacks it. A column without a field in the record may be asked for before the first bind().
    int position(const char *column)
    {
        const QString name = QLatin1String(column);
        const qsizetype known = m_columns.indexOf(name);
        return known >= 0 ? static_cast<int>(known) + 1 : add(name);
    }

    /// The statement with the values of a record, ready to be executed; its row id is chosen by the database.
    Sqlite3Cursor &bind(const Record &record)
    {
        if (!m_statement)
            m_statement = m_db->queryThrow(text());
        Sqlite3Cursor &row = *m_statement;
        row.bindNull(1);
        for (const auto &[position, field] : m_bigNumbers)
            row.bindInt64(position, record.*field);
        for (const auto &[position, field] : m_numbers)
            row.bindInt64(position, record.*field);
        for (const auto &[position, field, unit] : m_dates)
            row.bindInt64(position, storedDate(record.*field, unit));
        for (const auto &[position, field] : m_requiredTexts)
            row.bindText(position, record.*field);
        for (const auto &[position, field] : m_texts)
            (record.*field).isEmpty() ? row.bindNull(position) : row.bindText(position, record.*field);
        for (const auto &[position, field] : m_bytes)
            (record.*field).isEmpty() ? row.bindNull(position) : row.bindBlob(position, record.*field);
        return row;
    }

private:
    template <typename Field>
    struct Resolved
    {
        int position;
        Field Record::*field;
    };
    struct ResolvedDate
    {
        int position;
        int Record::*field;
        DateUnit unit;
    };

    template <typename Field, typename Target, typename... Extra>
    void resolve(List<Field> fields, std::vector<Target> &resolved, Extra... extra)
    {
        for (const auto &[column, field] : fields)
            if (const int position = add(QLatin1String(column)))
                resolved.push_back(Target{position, field, extra...});
    }

    int add(const QString &column)
    {
        if (!m_tableColumns.contains(column.toLower()))
            return 0;
        m_columns.append(column);
        return static_cast<int>(m_columns.size());
    }

    QString text() const
    {
        const QStringList marks(m_columns.size(), QStringLiteral("?"));
        return QStringLiteral("insert into %1(%2) values(%3)")
            .arg(m_table, m_columns.join(u','), marks.join(u','));
    }

    Sqlite3DB *m_db;
    QString m_table;
    QSet<QString> m_tableColumns;
    QStringList m_columns;
    std::optional<Sqlite3Cursor> m_statement;
    std::vector<Resolved<qint64>> m_bigNumbers;
    std::vector<Resolved<int>> m_numbers;
    std::vector<ResolvedDate> m_dates;
    std::vector<Resolved<QString>> m_requiredTexts;
    std::vector<Resolved<QString>> m_texts;
    std::vector<Resolved<QByteArray>> m_bytes;
};

#pragma once

#include "messages/column_list.h"
#include "messages/record_date.h"
#include "messages/string_pool.h"
#include "sqlite/sqlite3_cursor.h"

#include <vector>

/// Which columns of a statement fill which fields of a record: resolved once, before its rows are walked. A
/// column that the statement lacks leaves the field as a new record has it.
template <typename Record>
class RecordColumns
{
public:
    template <typename Field>
    using List = ColumnList<Record, Field>;

    explicit RecordColumns(const Sqlite3Cursor &cursor) : m_cursor(&cursor) {}

    void numbers(List<int> fields) { resolve(fields, m_numbers); }
    void bigNumbers(List<qint64> fields) { resolve(fields, m_bigNumbers); }
    void texts(List<QString> fields) { resolve(fields, m_texts); }
    void requiredTexts(List<QString> fields) { texts(fields); }
    /// Texts of which there are few: equal ones share their memory.
    void repeatedTexts(List<QString> fields) { resolve(fields, m_repeatedTexts); }
    void bytes(List<QByteArray> fields) { resolve(fields, m_bytes); }
    void dates(List<int> fields, DateUnit unit) { resolve(fields, m_dates, unit); }

    /// Fills a record from the row that the cursor stands on. False when an instant of it is one that no
    /// record can hold.
    bool fill(Record &record)
    {
        bool datesFit = true;
        const Sqlite3Cursor &row = *m_cursor;
        for (const auto &[column, field, nothing] : m_bigNumbers)
            record.*field = row.getInt64(column);
        for (const auto &[column, field, nothing] : m_texts)
            record.*field = row.getText(column);
        for (const auto &[column, field, nothing] : m_bytes)
            record.*field = row.getBlob(column);
        for (const auto &[column, field, nothing] : m_numbers)
            record.*field = row.getInt(column);
        for (const auto &[column, field, unit] : m_dates) {
            const qint64 stored = row.getInt64(column);
            record.*field = recordDate(stored, unit);
            datesFit = datesFit && (unit == DateUnit::AsStored || isRecordDate(stored, unit));
        }
        for (auto &[column, field, pool] : m_repeatedTexts)
            record.*field = pool.text(row.viewText(column));
        return datesFit;
    }

private:
    struct Nothing
    {
    };
    template <typename Field, typename Extra = Nothing>
    struct Resolved
    {
        int column;
        Field Record::*field;
        Extra extra{};
    };

    template <typename Field, typename Target, typename... Extra>
    void resolve(List<Field> fields, std::vector<Target> &resolved, Extra... extra)
    {
        for (const auto &[column, field] : fields)
            if (const int index = m_cursor->columnIndex(QLatin1String(column)); index >= 0)
                resolved.push_back(Target{index, field, extra...});
    }

    const Sqlite3Cursor *m_cursor;
    std::vector<Resolved<qint64>> m_bigNumbers;
    std::vector<Resolved<int>> m_numbers;
    std::vector<Resolved<int, DateUnit>> m_dates;
    std::vector<Resolved<QString>> m_texts;
    std::vector<Resolved<QString, StringPool>> m_repeatedTexts;
    std::vector<Resolved<QByteArray>> m_bytes;
};

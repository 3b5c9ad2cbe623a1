#include "messages/message_versions.h"

#include <limits>

MessageVersions::MessageVersions(Sqlite3DB &store, qint64 takenAt) : m_db(store), m_takenAt(takenAt)
{
    Sqlite3Cursor row =
        m_db.queryThrow(QStringLiteral("select first, last, taken_at from message_source order by taken_at"));
    while (row.moveNext()) {
        const qint64 first = row.getInt64(0);
        const qint64 last = row.getInt64(1);
        if (first < 1 || last < first || last == std::numeric_limits<qint64>::max())
            continue;
        splitAt(first);
        splitAt(last + 1);
        m_ranges.erase(m_ranges.lower_bound(first), m_ranges.upper_bound(last));
        m_ranges[first] = {last, row.getInt64(2)};
    }
}

// After it no range holds both the row and the one before it.
void MessageVersions::splitAt(qint64 row)
{
    auto next = m_ranges.lower_bound(row);
    if (next == m_ranges.begin())
        return;
    auto &[first, range] = *std::prev(next);
    if (range.last < row)
        return;
    m_ranges.emplace_hint(next, row, range);
    range.last = row - 1;
}

qint64 MessageVersions::ageOf(qint64 row) const
{
    const auto next = m_ranges.upper_bound(row);
    if (next == m_ranges.begin())
        return 0;
    const Range &range = std::prev(next)->second;
    return row <= range.last ? range.takenAt : 0;
}

bool MessageVersions::isNewest(qint64 row) const
{
    return m_takenAt >= ageOf(row);
}

bool MessageVersions::isFormerText(qint64 row, const QString &text)
{
    Sqlite3Cursor &found = m_db.cachedThrow(
        Sqlite3Sql(QStringLiteral("select 1 from message_history where message_id=? and text=?"))
            .addInt64Param(row)
            .addTextParam(text));
    const bool isFormer = found.moveNext();
    found.reset();
    return isFormer;
}

void MessageVersions::add(qint64 row, const QString &text, int date, qint64 takenAt)
{
    if (isFormerText(row, text))
        return;
    m_db.executeCachedThrow(
        Sqlite3Sql(
            QStringLiteral("insert into message_history(message_id,text,date,taken_at) values(?,?,?,?)"))
            .addInt64Param(row)
            .addTextParam(text)
            .addInt64Param(date)
            .addInt64Param(takenAt));
}

void MessageVersions::keepTextBefore(qint64 row, const QString &newText)
{
    Sqlite3Cursor &present = m_db.cachedThrow(
        Sqlite3Sql(QStringLiteral("select text, date from message where rowid=?")).addInt64Param(row));
    if (!present.moveNext())
        return;
    const QString text = present.getText(0);
    const int date = present.getInt(1);
    present.reset();
    if (text != newText)
        add(row, text, date, ageOf(row));
}

void MessageVersions::addFormerText(qint64 row, const _MsgMessage &older)
{
    Sqlite3Cursor &present = m_db.cachedThrow(
        Sqlite3Sql(QStringLiteral("select 1 from message where rowid=? and ifnull(text, '')=?"))
            .addInt64Param(row)
            .addTextParam(older.text));
    const bool isPresent = present.moveNext();
    present.reset();
    if (!isPresent)
        add(row, older.text, older.date, m_takenAt);
}

void MessageVersions::rowsSeen(qint64 first, qint64 last)
{
    if (m_takenAt <= 0)
        return;
    splitAt(first);
    splitAt(last + 1);
    for (qint64 at = first; at <= last;) {
        auto range = m_ranges.lower_bound(at);
        if (range == m_ranges.end() || range->first > at) {
            const qint64 end = range == m_ranges.end() ? last : std::min(last, range->first - 1);
            range = m_ranges.emplace_hint(range, at, Range{end, m_takenAt});
        }
        range->second.takenAt = std::max(range->second.takenAt, m_takenAt);
        at = range->second.last + 1;
    }
}

void MessageVersions::finish()
{
    if (m_takenAt <= 0)
        return;
    m_db.executeThrow(QStringLiteral("delete from message_source"));
    // Neighbours of one age are written as one.
    for (auto range = m_ranges.begin(); range != m_ranges.end();) {
        const qint64 first = range->first;
        Range whole = range->second;
        for (++range; range != m_ranges.end() && range->first == whole.last + 1 &&
                      range->second.takenAt == whole.takenAt;
             ++range)
            whole.last = range->second.last;
        m_db.executeCachedThrow(
            Sqlite3Sql(QStringLiteral("insert into message_source(first,last,taken_at) values(?,?,?)"))
                .addInt64Param(first)
                .addInt64Param(whole.last)
                .addInt64Param(whole.takenAt));
    }
}

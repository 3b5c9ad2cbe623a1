#include "personal/stored_date.h"

#include "base/apple_time.h"
#include "base/report.h"
#include "sqlite/sqlite3_cursor.h"
#include "sqlite/sqlite3_sql.h"

#include <cmath>

std::optional<QDateTime> storedDate(const Sqlite3Cursor &row, int column, Epoch epoch)
{
    constexpr double farAway = 1e15; // where seconds are long beyond any year
    if (row.isNull(column))
        return QDateTime();
    const double number = row.getDouble(column);
    bool isNumber = false;
    row.viewText(column).toByteArray().toDouble(&isNumber);
    if (!isNumber || !(std::abs(number) < farAway))
        return std::nullopt;
    const auto stored = static_cast<qint64>(number);
    const qint64 seconds = epoch == Epoch::Apple ? unixFromApple(stored) : stored;
    if (isoUtc(seconds).isEmpty())
        return std::nullopt;
    return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC);
}

QDateTime storedDate(const Sqlite3Cursor &row, int column, Epoch epoch, const QString &where, Report &report)
{
    const std::optional<QDateTime> date = storedDate(row, column, epoch);
    if (!date)
        noteBadDate(where, report);
    return date.value_or(QDateTime());
}

void noteBadDate(const QString &where, Report &report)
{
    report.add({.kind = IssueKind::Damaged, .what = "IDS_ISSUE_DATES_DAMAGED", .where = where});
}

qint64 unixSeconds(const QDateTime &date)
{
    return date.isValid() ? date.toMSecsSinceEpoch() / 1000 : 0;
}

Sqlite3Sql &addDate(Sqlite3Sql &sql, const QDateTime &date)
{
    return date.isValid() ? sql.addInt64Param(unixSeconds(date)) : sql.addNullParam();
}

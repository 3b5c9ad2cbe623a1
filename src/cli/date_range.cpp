#include "cli/date_range.h"

#include "base/apple_time.h"

#include <QDateTime>
#include <QRegularExpression>

std::optional<std::int64_t> parseDate(const QString &text, RangeEnd end)
{
    // QDate reads "+012-1-1" and the like; the shape is checked first.
    static const QRegularExpression shape(
        QStringLiteral("\\A[0-9]{4}-[0-9]{2}-[0-9]{2}(T[0-9]{2}:[0-9]{2}:[0-9]{2})?\\z"));
    const QRegularExpressionMatch match = shape.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const QDate date = QDate::fromString(text.left(10), QStringLiteral("yyyy-MM-dd"));
    if (!date.isValid())
        return std::nullopt;
    if (match.capturedLength(1) > 0) {
        const QTime time = QTime::fromString(text.mid(11), QStringLiteral("hh:mm:ss"));
        if (!time.isValid())
            return std::nullopt;
        return appleFromUnix(QDateTime(date, time, Qt::LocalTime).toSecsSinceEpoch());
    }
    // Not 23:59:59: where clocks change at midnight, a day ends when the next begins.
    return end == RangeEnd::First ? appleFromUnix(date.startOfDay().toSecsSinceEpoch())
                                  : appleFromUnix(date.addDays(1).startOfDay().toSecsSinceEpoch()) - 1;
}

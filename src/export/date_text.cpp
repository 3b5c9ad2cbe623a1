#include "export/date_text.h"

#include <QDateTime>
#include <QLocale>

namespace {
constexpr int secondsPerDay = 86400;

QString joined(const QString &date, const QString &time)
{
    return date + QLatin1Char(' ') + time;
}

/// True when a locale's short date-time is its short date, a blank and its short time, as it is for nearly
/// all of them.
bool shortFormatFallsIntoParts(const QLocale &locale)
{
    for (const QDateTime &probe :
         {QDateTime(QDate(2012, 1, 2), QTime(3, 4, 5)), QDateTime(QDate(2023, 11, 30), QTime(21, 43, 56))})
        if (locale.toString(probe, QLocale::ShortFormat) !=
            joined(locale.toString(probe.date(), QLocale::ShortFormat),
                   locale.toString(probe.time(), QLocale::ShortFormat)))
            return false;
    return true;
}
} // namespace

DateText DateText::fixed(const QString &datePattern, const QString &timePattern)
{
    DateText result;
    result.m_dateText = [datePattern](QDate date) { return QLocale::c().toString(date, datePattern); };
    result.m_timeText = [timePattern](QTime time) { return QLocale::c().toString(time, timePattern); };
    result.m_stepSeconds = timePattern.contains(QLatin1Char('s')) ? 1 : 60;
    return result;
}

DateText DateText::systemShort()
{
    const QLocale locale = QLocale::system();
    DateText result;
    if (!shortFormatFallsIntoParts(locale)) {
        result.m_wholeText = [locale](const QDateTime &t) {
            return locale.toString(t, QLocale::ShortFormat);
        };
        return result;
    }
    result.m_dateText = [locale](QDate date) { return locale.toString(date, QLocale::ShortFormat); };
    result.m_timeText = [locale](QTime time) { return locale.toString(time, QLocale::ShortFormat); };
    const bool showsSeconds = result.m_timeText(QTime(1, 2, 3)) != result.m_timeText(QTime(1, 2, 4));
    result.m_stepSeconds = showsSeconds ? 1 : 60;
    return result;
}

void DateText::append(QByteArray &out, std::int64_t appleSeconds)
{
    const std::int64_t unixSeconds = unixFromApple(appleSeconds);
    if (m_wholeText) {
        out += m_wholeText(m_clock.local(unixSeconds)).toUtf8();
        return;
    }
    std::int64_t day = 0;
    int second = 0;
    m_clock.split(unixSeconds, day, second);

    QByteArray &date = m_days[day];
    if (date.isEmpty())
        date = m_dateText(QDate(1970, 1, 1).addDays(day)).toUtf8();
    if (m_times.empty())
        m_times.resize(static_cast<std::size_t>(secondsPerDay / m_stepSeconds));
    QByteArray &time = m_times[static_cast<std::size_t>(second / m_stepSeconds)];
    if (time.isEmpty())
        time = m_timeText(QTime::fromMSecsSinceStartOfDay(second * 1000)).toUtf8();
    out += date;
    out += ' ';
    out += time;
}

QString conversationDate(std::int64_t appleSeconds)
{
    return QLocale::c().toString(LocalClock().local(unixFromApple(appleSeconds)),
                                 QStringLiteral("dd MMM yyyy h:m AP"));
}

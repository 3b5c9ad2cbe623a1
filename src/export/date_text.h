#pragma once

#include "base/apple_time.h"

#include <QByteArray>
#include <QDate>
#include <QTime>

#include <functional>
#include <unordered_map>
#include <vector>

/// Writes local dates and times in one look, remembering every day and time of day that it has written:
/// messages come in bursts, and formatting is much dearer than looking up. Not for use by two threads at a
/// time.
class DateText
{
public:
    /// Month names and AM/PM in English, whatever the system's language, so that a page is the same
    /// everywhere. The result is the two parts with a blank between them.
    static DateText fixed(const QString &datePattern, const QString &timePattern);
    /// The system locale's short format.
    static DateText systemShort();

    /// UTF-8, for Apple absolute seconds.
    void append(QByteArray &out, std::int64_t appleSeconds);

private:
    LocalClock m_clock;
    std::function<QString(QDate)> m_dateText;
    std::function<QString(QTime)> m_timeText;
    std::function<QString(const QDateTime &)> m_wholeText; // for looks that do not fall into two parts
    int m_stepSeconds = 60;
    std::unordered_map<std::int64_t, QByteArray> m_days;
    std::vector<QByteArray> m_times; // by second of the day, divided by the step
};

/// Messages at most this far apart share one line that tells the time.
inline constexpr std::int64_t sameTimeSeconds = 60;

/// The look of dates in system items and conversation views: "dd MMM yyyy h:m AP".
QString conversationDate(std::int64_t appleSeconds);

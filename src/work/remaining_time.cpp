#include "work/remaining_time.h"

#include "base/texts.h"

#include <algorithm>

namespace {
constexpr qint64 honestAfterMs = 5000;
constexpr int honestAfterPercent = 2;
} // namespace

std::optional<qint64> RemainingTime::secondsLeft(int percent, qint64 nowMs)
{
    if (m_beginMs < 0 || percent < m_lastPercent) {
        m_beginMs = nowMs;
        m_beginPercent = percent;
    }
    m_lastPercent = percent;
    const qint64 elapsed = nowMs - m_beginMs;
    const int gained = percent - m_beginPercent;
    if (elapsed < honestAfterMs || gained < honestAfterPercent || percent >= 100)
        return std::nullopt;
    return elapsed * (100 - percent) / gained / 1000;
}

QString remainingText(qint64 seconds)
{
    constexpr qint64 minute = 60;
    constexpr qint64 step = 5;
    if (seconds >= 90 * minute)
        return textFor("IDS_ABOUT_%1_HOURS_LEFT").arg((seconds + 30 * minute) / (60 * minute));
    if (seconds >= 90)
        return textFor("IDS_ABOUT_%1_MINUTES_LEFT").arg((seconds + 30) / minute);
    return textFor("IDS_ABOUT_%1_SECONDS_LEFT").arg(std::max(step, (seconds + step - 1) / step * step));
}

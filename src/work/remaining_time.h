#pragma once

#include <QString>

#include <optional>

/// Guesses how long a job still takes, and says nothing before five seconds have shown how fast it is.
class RemainingTime
{
public:
    /// A report of `percent` at `nowMs` of any clock that only runs forward. Gives seconds. A percentage that
    /// falls begins a new stretch of work.
    std::optional<qint64> secondsLeft(int percent, qint64 nowMs);

private:
    qint64 m_beginMs = -1;
    int m_beginPercent = 0;
    int m_lastPercent = 0;
};

/// "About 20 seconds left", coarser the longer it takes.
QString remainingText(qint64 seconds);

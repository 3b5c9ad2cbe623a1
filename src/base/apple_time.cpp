#include "base/apple_time.h"

#include <QTimeZone>

namespace {
constexpr std::int64_t nanosecondsThreshold = 1'000'000'000'000'000;
constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;
constexpr std::int64_t secondsPerDay = 86400;
// Every zone changes its offset at a multiple of 15 minutes, so one block never holds two offsets.
constexpr std::int64_t blockSeconds = 900;

std::int64_t floorDiv(std::int64_t a, std::int64_t b)
{
    const std::int64_t q = a / b;
    return (a % b != 0 && (a < 0) != (b < 0)) ? q - 1 : q;
}
} // namespace

std::int64_t appleSeconds(std::int64_t stored, bool columnIsNanoseconds)
{
    const bool huge = stored > nanosecondsThreshold || stored < -nanosecondsThreshold;
    return columnIsNanoseconds || huge ? stored / nanosecondsPerSecond : stored;
}

QString isoUtc(std::int64_t unixSeconds)
{
    constexpr std::int64_t yearOne = -62135596800;
    constexpr std::int64_t endOfYear9999 = 253402300799;
    if (unixSeconds < yearOne || unixSeconds > endOfYear9999)
        return {};
    return QDateTime::fromSecsSinceEpoch(unixSeconds, Qt::UTC).toString(Qt::ISODate);
}

void LocalClock::split(std::int64_t unixSeconds, std::int64_t &day, int &secondOfDay) const
{
    const std::int64_t block = floorDiv(unixSeconds, blockSeconds);
    if (block != m_block) {
        m_block = block;
        m_offset = QDateTime::fromSecsSinceEpoch(unixSeconds, Qt::LocalTime).offsetFromUtc();
    }
    const std::int64_t local = unixSeconds + m_offset;
    day = floorDiv(local, secondsPerDay);
    secondOfDay = static_cast<int>(local - day * secondsPerDay);
}

QDateTime LocalClock::local(std::int64_t unixSeconds) const
{
    return QDateTime::fromSecsSinceEpoch(unixSeconds, Qt::LocalTime);
}

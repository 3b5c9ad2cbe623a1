#pragma once

#include <QDateTime>

#include <cstdint>

/// Seconds between 1970-01-01 and 2001-01-01, both UTC.
inline constexpr std::int64_t appleEpochUnix = 978307200;

/// A device's time column in seconds since 2001, whatever its unit: values above 10^15 are nanoseconds.
/// Rounds toward zero.
std::int64_t appleSeconds(std::int64_t stored, bool columnIsNanoseconds);

/// Unix seconds of an Apple absolute time.
constexpr std::int64_t unixFromApple(std::int64_t appleSeconds)
{
    return appleSeconds + appleEpochUnix;
}
constexpr std::int64_t appleFromUnix(std::int64_t unixSeconds)
{
    return unixSeconds - appleEpochUnix;
}

/// "2012-01-01T00:00:00Z" for Unix seconds; empty when the instant lies outside the years 1 to 9999.
QString isoUtc(std::int64_t unixSeconds);

/// Turns Unix seconds into local date and time quickly: the zone's offset is asked for once an hour of
/// data, not once a value. Not for use by two threads at a time.
class LocalClock
{
public:
    /// Local wall-clock time.
    QDateTime local(std::int64_t unixSeconds) const;
    /// Days since 1970-01-01 and seconds of the day, in local time.
    void split(std::int64_t unixSeconds, std::int64_t &day, int &secondOfDay) const;

private:
    mutable std::int64_t m_block = INT64_MIN;
    mutable std::int64_t m_offset = 0;
};

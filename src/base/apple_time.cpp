#include "base/apple_time.h"

#include <QTimeZone>

#include <chrono>

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

void writeDigits(char *to, int count, unsigned value)
{
    for (int i = count - 1; i >= 0; --i, value /= 10)
        to[i] = static_cast<char>('0' + value % 10);
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
    // A list of a million files asks for this a million times; QDateTime takes forty times as long.
    const std::int64_t days = floorDiv(unixSeconds, secondsPerDay);
    const std::chrono::year_month_day date{std::chrono::sys_days{std::chrono::days{days}}};
    const int second = static_cast<int>(unixSeconds - days * secondsPerDay);
    char text[] = "0000-00-00T00:00:00Z";
    writeDigits(text, 4, static_cast<unsigned>(static_cast<int>(date.year())));
    writeDigits(text + 5, 2, static_cast<unsigned>(date.month()));
    writeDigits(text + 8, 2, static_cast<unsigned>(date.day()));
    writeDigits(text + 11, 2, static_cast<unsigned>(second / 3600));
    writeDigits(text + 14, 2, static_cast<unsigned>(second / 60 % 60));
    writeDigits(text + 17, 2, static_cast<unsigned>(second % 60));
    return QString::fromLatin1(text, sizeof text - 1);
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

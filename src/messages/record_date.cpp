#include "messages/record_date.h"

#include "base/apple_time.h"

#include <algorithm>
#include <limits>

int recordDate(qint64 stored, DateUnit unit)
{
    const qint64 value =
        unit == DateUnit::AsStored ? stored : appleSeconds(stored, unit == DateUnit::Nanoseconds);
    return static_cast<int>(
        std::clamp<qint64>(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

qint64 storedDate(int value, DateUnit unit)
{
    constexpr qint64 nanosecondsPerSecond = 1'000'000'000;
    return unit == DateUnit::Nanoseconds ? value * nanosecondsPerSecond : value;
}

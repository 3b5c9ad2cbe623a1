#include "messages/record_date.h"

#include "base/apple_time.h"

#include <algorithm>
#include <limits>

namespace {
qint64 seconds(qint64 stored, DateUnit unit)
{
    return unit == DateUnit::AsStored ? stored : appleSeconds(stored, unit == DateUnit::Nanoseconds);
}
} // namespace

int recordDate(qint64 stored, DateUnit unit)
{
    return static_cast<int>(std::clamp<qint64>(seconds(stored, unit), std::numeric_limits<int>::min(),
                                               std::numeric_limits<int>::max()));
}

bool isRecordDate(qint64 stored, DateUnit unit)
{
    return seconds(stored, unit) == recordDate(stored, unit);
}

qint64 storedDate(int value, DateUnit unit)
{
    constexpr qint64 nanosecondsPerSecond = 1'000'000'000;
    return unit == DateUnit::Nanoseconds ? value * nanosecondsPerSecond : value;
}

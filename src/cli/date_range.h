#pragma once

#include <QString>

#include <cstdint>
#include <optional>

/// Apple absolute seconds, both ends inclusive; open ends reach to the limits of the type.
struct DateRange
{
    std::int64_t from = INT64_MIN;
    std::int64_t to = INT64_MAX;
};

/// Which end of a span a date stands for: a date without a time is the day's first or its last second.
enum class RangeEnd { First, Last };

/// "yyyy-MM-dd" or "yyyy-MM-ddThh:mm:ss" in local time as Apple absolute seconds; nothing for any other text.
std::optional<std::int64_t> parseDate(const QString &text, RangeEnd end);

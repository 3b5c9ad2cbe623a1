#pragma once

#include <QString>

#include <cstdint>

/// What a plain copy lacks of its content, "1600 of 11845 bytes"; empty when nothing. It should have
/// `listedBytes`, 0 where nobody knows. A database is measured by what it says of itself, since the length that
/// is listed for one that is in use may be that of another hour; its log and its index have no length to hold.
QString shortfallOf(const QString &copy, std::uint64_t listedBytes);

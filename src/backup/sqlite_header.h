#pragma once

#include <cstdint>
#include <optional>

class QString;

/// True when the file begins as a plain SQLite database does.
bool hasSqliteHeader(const QString &path);

/// The length that a plain SQLite database says it has: 0 when it does not tell, nothing for another file.
std::optional<std::uint64_t> databaseBytes(const QString &path);

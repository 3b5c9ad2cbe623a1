#pragma once

class QString;

/// True when the file begins as a plain SQLite database does.
bool hasSqliteHeader(const QString &path);

#pragma once

#include <QString>

/// Brings what a copied database keeps in the companions beside it into the one file, which then needs none,
/// not even to be read. Throws Error.
void applyLog(const QString &database);

/// Why the last changes in a write-ahead log cannot be applied, as a sentence; empty for a log that is whole and for
/// an empty one. Behind its end a log may hold what is left of an earlier one, which is no fault.
QString faultOfLog(const QString &log);

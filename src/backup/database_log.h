#pragma once

#include <QString>

/// Brings what a copied database keeps in the companions beside it into the one file, which then needs none,
/// not even to be read. Throws Error.
void applyLog(const QString &database);

#pragma once

#include <QString>

/// The number as the user's locale writes it.
QString localNumber(qint64 value);

/// The text of the key `one` for 1, else that of `many` with the number in place of %1.
QString countedText(const char *one, const char *many, qint64 count);

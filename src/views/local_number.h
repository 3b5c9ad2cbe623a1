#pragma once

#include <QString>

/// The number as the user's locale writes it.
QString localNumber(qint64 value);

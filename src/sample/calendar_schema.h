#pragma once

#include "sample/generation.h"

#include <QByteArray>

namespace sample {

/// Tables of an empty Calendar.sqlitedb.
QByteArray calendarTables(const Generation &generation);

} // namespace sample

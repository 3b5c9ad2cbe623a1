#pragma once

#include "views/date_range_edit.h"

#include <QStringList>

/// The names, the first dozen of them when there are more.
QString peopleText(const QStringList &people);
/// How many messages, as a sentence.
QString messageCountText(qint64 count);
/// The first and the last day in local time, or the one day that both are.
QString daysText(const DateRange &days);

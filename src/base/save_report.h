#pragma once

#include "base/report.h"

/// What saving records into a local database did.
struct SaveReport
{
    qint64 added = 0;
    qint64 merged = 0; // those that were there already, changed or not
    Report report;     // what was left out, and what came with the records

    qint64 handled() const { return added + merged; }
};

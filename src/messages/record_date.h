#pragma once

#include <QtGlobal>

/// How a device counts in a column of instants since 2001.
enum class DateUnit {
    Seconds,
    Nanoseconds,
    AsStored, // whatever it is, it is kept
};

/// The value as the records hold it; one that they cannot hold becomes the first or last that they can.
int recordDate(qint64 stored, DateUnit unit);
/// False for one that they cannot hold.
bool isRecordDate(qint64 stored, DateUnit unit);
/// The other direction.
qint64 storedDate(int value, DateUnit unit);

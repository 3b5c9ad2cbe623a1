#pragma once

#include <QString>

namespace sample {

/// What differs between the systems whose backups are written.
struct Generation
{
    int ios;
    const char *productVersion;
    const char *buildVersion;
    const char *productType;
    const char *productName;
    int messageClientVersion;
    int addressBookClientVersion;
    int calendarClientVersion;
    qint64 backupDate; // Unix seconds; every other date lies before it

    bool nanosecondDates() const { return ios >= 11; }
};

/// The generation of 5, 6, 7, 9, 10, 11, 12, 14, 15, 16 or 17; throws Error for any other number.
const Generation &generationFor(int ios);

} // namespace sample

#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

/// The program's own numbers for the kind of a call.
enum class CallType { Unknown = 0, Incoming = 4, Outgoing = 5, Missed = 8 };

/// One call, whatever the generation of the database it comes from.
struct CallEntry
{
    qint64 id = 0;    // in a local database, 0 elsewhere
    QString address;  // the other party's number or address as stored
    QDateTime date;   // UTC
    int duration = 0; // seconds
    int type = 0;     // a CallType
    QString name;     // stored with the call by the device
    QString country_code;
    QString network_code;
    int read = 0;
    int assisted = 0;
    QByteArray face_time_data;
    QString originalAddress;
    int answered = 0;
    int call_type = 1;
    int availability = 0;
    QString device_id;
    QString cn; // ISO country code
    QString unique_id;
    QString person; // name of the contact that owns the address, empty when none

    bool operator==(const CallEntry &) const = default;
};
Q_DECLARE_TYPEINFO(CallEntry, Q_RELOCATABLE_TYPE);

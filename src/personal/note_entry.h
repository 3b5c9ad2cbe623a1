#pragma once

#include <QDateTime>
#include <QString>

/// One note. Dates are UTC.
struct NoteEntry
{
    QDateTime create_date;
    QDateTime modified_date;
    QString title;
    QString summary; // plain text
    QString content; // the body as stored, HTML
    QString dev_id;  // identity of the device it comes from
    QString src_id;  // the note's identity in its source
    QString hash;    // in a local database, empty elsewhere

    bool operator==(const NoteEntry &) const = default;
};
Q_DECLARE_TYPEINFO(NoteEntry, Q_RELOCATABLE_TYPE);

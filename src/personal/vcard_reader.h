#pragma once

#include "personal/contact_record.h"

#include <QByteArrayView>
#include <QList>
#include <QStringList>

/// The contacts of a vCard text, and what could not be read of it.
struct VCardContacts
{
    QList<ContactRecord> contacts;
    QStringList problems; // what is left out: "card 3 (Ada): reason"
};

/// Reads vCards of versions 2.1, 3.0 and 4.0: folded lines, quoted-printable with soft breaks, Base64,
/// CHARSET. A malformed card or line is left out and named; the others are read. Never throws for what the
/// text holds.
VCardContacts readVCards(QByteArrayView text);

#pragma once

#include "base/report.h"
#include "personal/contact_record.h"

#include <QByteArrayView>
#include <QList>

/// The contacts of a vCard text, and what could not be read of it or has no place in a contact.
struct VCardContacts
{
    QList<ContactRecord> contacts;
    Report report; // places are cards: "friends.vcf card 3 (Ada)"
};

/// Reads vCards of versions 2.1, 3.0 and 4.0: folded lines, quoted-printable with soft breaks, Base64,
/// CHARSET. The family name comes first in N but in the cards that this program writes. A second note,
/// nickname or organisation is joined with the first. A malformed card or line is left out and named by
/// `file`; the others are read. Never throws for what the text holds.
VCardContacts readVCards(QByteArrayView text, const QString &file);

#pragma once

#include "personal/contact_record.h"

#include <QByteArray>
#include <QList>
#include <QMap>

/// One line of a vCard: name, parameters by name, and the value as it is written.
struct VCardProperty
{
    QByteArray name;
    QMap<QByteArray, QByteArray> params;
    QByteArray value;
};

/// Writes contacts as vCards of version 3.0 with the habits of older telephones: CHARSET on texts,
/// quoted-printable notes and addresses, given name first in N.
class VCardExport
{
public:
    /// The whole vCard of one contact, lines ended by CR LF.
    static QByteArray exportContact(const ContactRecord &contact);

    static QList<VCardProperty> propertiesOf(const ContactRecord &contact);
    static QByteArray serialize(const QList<VCardProperty> &properties);
    /// Base64 in pieces of `width` characters, joined by CR LF and a blank; 0 means one piece.
    static QByteArray foldBase64(const QByteArray &bytes, int width);
    /// Quoted-printable with a soft break once `width` - 3 characters are reached; 0 means none.
    static QByteArray quotedPrintable(const QByteArray &bytes, int width);
};

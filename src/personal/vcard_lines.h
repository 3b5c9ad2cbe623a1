#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QMultiMap>
#include <QString>
#include <QStringList>

#include <optional>

/// One property of a vCard as it stands: name without its group, parameters, undecoded value.
struct VCardLine
{
    QByteArray name; // upper case
    QMultiMap<QByteArray, QByteArray>
        params; // upper-case names; a bare word of version 2.1 is a TYPE or an ENCODING
    QByteArray value;

    bool hasType(const char *type) const;
    QByteArray param(const char *name) const { return params.value(name); }
    bool isQuotedPrintable() const;
    bool isBase64() const;

    /// True for a value that carries bytes within itself, by Base64 or a "data:" address.
    bool carriesBytes() const;
    /// Those bytes; nothing when they cannot be read whole.
    std::optional<QByteArray> embeddedBytes() const;
    /// The value as text: by its CHARSET, else UTF-8 where the bytes are that, else the local 8-bit code
    /// page. Escapes stay.
    QString text() const;
};

/// The properties of a text, in order. Folded lines, soft breaks of quoted-printable and the lines of Base64
/// are joined, whatever the line ends. A line that is no property has an empty name.
QList<VCardLine> splitVCardLines(QByteArrayView text);

/// The parts of a structured value, split at unescaped ";", with escapes undone.
QStringList vCardParts(const QString &value);
/// Escapes undone: \n \, \; \\.
QString vCardUnescaped(const QString &value);

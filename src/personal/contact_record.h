#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>

#include <array>

/// Kinds of a contact's data rows. The number is what a local database stores as a row's `type`.
enum class ContactDataKind {
    Name = 1,
    Photo = 2,
    Phone = 3,
    Email = 4,
    Nickname = 5,
    Event = 6,
    GroupMembership = 7,
    Im = 8,
    Note = 9,
    Organization = 10,
    Relation = 11,
    PostalAddress = 12,
    Website = 13,
};

/// One row: data1 to data14 are texts whose meaning depends on the row's kind, data15 is bytes.
struct ContactDataRow
{
    qint64 id = 0; // of the row in a local database, 0 elsewhere
    std::array<QString, 14> texts;
    QByteArray data15;

    /// `column` is 1 to 14.
    const QString &data(int column) const { return texts.at(static_cast<std::size_t>(column - 1)); }
    QString &data(int column) { return texts.at(static_cast<std::size_t>(column - 1)); }

    bool operator==(const ContactDataRow &) const = default;
};

/// One contact as typed rows, in the order of reading.
struct ContactRecord
{
    qint64 id = 0;  // in a local database, 0 elsewhere
    QString src_id; // the contact's identity in its source
    QMap<ContactDataKind, QList<ContactDataRow>> rows;

    bool operator==(const ContactRecord &) const = default;
};

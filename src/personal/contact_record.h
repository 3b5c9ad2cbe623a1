#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>

#include <vector>

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
    static constexpr int textColumns = 14;

    qint64 id = 0; // of the row in a local database, 0 elsewhere
    QByteArray data15;

    /// `column` is 1 to 14.
    const QString &data(int column) const
    {
        const auto index = static_cast<std::size_t>(column - 1);
        return index < m_texts.size() ? m_texts[index] : m_none;
    }
    /// The same to be changed. Valid until a later column is.
    QString &data(int column)
    {
        const auto size = static_cast<std::size_t>(column);
        if (m_texts.size() < size)
            m_texts.resize(size);
        return m_texts[size - 1];
    }

    bool operator==(const ContactDataRow &other) const
    {
        for (int column = 1; column <= textColumns; ++column)
            if (data(column) != other.data(column))
                return false;
        return id == other.id && data15 == other.data15;
    }

private:
    // Up to the last column that is set: an address book has a hundred thousand rows, most with two texts.
    std::vector<QString> m_texts;
    inline static const QString m_none;
};
Q_DECLARE_TYPEINFO(ContactDataRow, Q_RELOCATABLE_TYPE);

/// One contact as typed rows, in the order of reading.
struct ContactRecord
{
    qint64 id = 0;  // in a local database, 0 elsewhere
    QString src_id; // the contact's identity in its source
    QMap<ContactDataKind, QList<ContactDataRow>> rows;

    bool operator==(const ContactRecord &) const = default;
};
Q_DECLARE_TYPEINFO(ContactRecord, Q_RELOCATABLE_TYPE);

#pragma once

#include "personal/contact_record.h"
#include "sqlite/sqlite3_db.h"

#include <QStringList>

class FileSource;

/// Any source of contacts. Used by one thread at a time.
class IContactsDb
{
public:
    virtual ~IContactsDb() = default;
    virtual qint64 count() = 0;
    virtual QList<ContactRecord> readAll() = 0;
};

/// Reads the address book of a source. Opens it on first use and keeps it open; `source` must outlive the
/// reader.
class IOSContactsDb : public IContactsDb
{
public:
    explicit IOSContactsDb(FileSource &source);

    /// Throws Error("Cannot find AddressBook.sqlitedb") when the source has no address book.
    qint64 count() override;
    /// Every person in ascending row id. Values without a label row are not read. Throws as count() does.
    QList<ContactRecord> readAll() override;
    /// The rows that readAll() has left out: "Ada King: reason".
    const QStringList &problems() const { return m_problems; }

private:
    struct Person
    {
        qint64 rowid;
        ContactRecord record;
    };

    FileSource &m_source;
    Sqlite3DB m_people;
    Sqlite3DB m_images;
    QStringList m_problems;

    void open();
    QList<Person> readPeople();
    void readPhotos(QList<Person> &people);
    void readValues(QList<Person> &people);
    bool fillDate(ContactDataRow &row, qint64 appleSecondsValue, const ContactRecord &record);
};

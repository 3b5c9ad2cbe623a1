#pragma once

#include "personal/contact_record.h"
#include "personal/scope.h"
#include "sqlite/sqlite3_db.h"

class FileSource;
class Report;

/// Reads the address book of a source. Opens it on first use and keeps it open; `source` must outlive the
/// reader.
class IOSContactsDb
{
public:
    explicit IOSContactsDb(FileSource &source);

    /// Every person in ascending row id. Values without a label row are left out. Throws
    /// Error("Cannot find AddressBook.sqlitedb") when the source has no address book.
    QList<ContactRecord> readAll(Scope scope, Report &report);

private:
    struct Person
    {
        qint64 rowid;
        ContactRecord record;
    };

    FileSource &m_source;
    Sqlite3DB m_people;
    Sqlite3DB m_images;

    void open(Report &report);
    QList<Person> readPeople(Report &report);
    void readPhotos(QList<Person> &people, Report &report);
    void readValues(QList<Person> &people, Report &report);
    static bool fillDate(ContactDataRow &row, qint64 appleSecondsValue, Report &report);
};

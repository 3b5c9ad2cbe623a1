#pragma once

#include "personal/contact_record.h"
#include "personal/scope.h"
#include "sqlite/sqlite3_db.h"

#include <QHash>

class ContactLabels;
class ContactParts;
class FileSource;
class Report;

/// Reads the address book of a source. Opens it on first use and keeps it open; `source` must outlive the
/// reader.
class IOSContactsDb
{
public:
    explicit IOSContactsDb(FileSource &source);

    /// Every person in ascending row id. Left out are birthdays of 2001-01-01 and before, values without a
    /// label or of an unknown kind, memberships of groups, and small pictures of people who have no large
    /// one: Everything brings them in, the values of an unknown kind as web addresses. Throws Error("Cannot
    /// find AddressBook.sqlitedb") when the source has no address book.
    QList<ContactRecord> readAll(Scope scope, Report &report);

private:
    struct Value;

    FileSource &m_source;
    Sqlite3DB m_people;
    Sqlite3DB m_images;

    void open(Report &report);
    QList<ContactRecord> readPeople(Scope scope, Report &report);
    void readPhotos(Scope scope, Report &report);
    void readThumbnails(Scope scope, Report &report);
    void readValues(Scope scope, Report &report);
    void readGroups(Scope scope, Report &report);

    QHash<qint64, ContactRecord *> m_byRowid; // while reading
};

#pragma once

#include "personal/number_normaliser.h"
#include "sqlite/sqlite3_db.h"

#include <QByteArray>
#include <QHash>
#include <QTemporaryDir>

#include <optional>

class FileSource;

/// A person's name and picture as the conversation list shows them.
struct ContactName
{
    QString name;
    QByteArray photo; // as stored, empty when there is none
};

/// Puts names to phone numbers: an index of a device's address book, kept in a private temporary folder that
/// goes with the object. Used by one thread at a time.
class IOSContactsMemDb
{
public:
    /// Builds the index from the address book and its pictures. A failure is logged, and every number is then
    /// without a name; it never throws for what the address book holds.
    IOSContactsMemDb(FileSource &source, const NumberNormaliser &normalise);

    /// The owner of a normalised number: of exactly this number, else the first person by row id one of whose
    /// numbers ends in the same nine digits (numbers of at least seven).
    std::optional<ContactName> find(const QString &normalisedNumber) const;

private:
    void build(FileSource &source, const NumberNormaliser &normalise);
    void createIndex();
    void addPersons(const Sqlite3DB &addressBook);
    void addNumbers(const Sqlite3DB &addressBook, const NumberNormaliser &normalise);
    void addPhotos(FileSource &source);
    std::optional<ContactName> first(const Sqlite3Sql &sql) const;

    QTemporaryDir m_folder;
    Sqlite3DB m_db;
    QHash<QString, qint64> m_personBySuffix;
};

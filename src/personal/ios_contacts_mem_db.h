#pragma once

#include "personal/number_names.h"
#include "sqlite/sqlite3_db.h"

#include <QByteArray>

/// A person's name and picture as the conversation list shows them.
struct ContactName
{
    QString name;
    QByteArray photo; // as stored, empty when there is none
};

/// Puts names and pictures to the phone numbers of messages. The names are held in memory, so that a run that
/// is killed leaves none of them behind. Used by one thread at a time.
class IOSContactsMemDb
{
public:
    /// Reads the address book, and finds its pictures. What fails costs names or pictures, and is told in the
    /// report, which must outlive the object.
    IOSContactsMemDb(FileSource &source, const NumberNormaliser &normalise, Report &report);

    /// The owner of a number, as NumberNames finds it.
    std::optional<ContactName> find(const QString &number) const;

private:
    void findPhotos(FileSource &source);
    QByteArray photoOf(qint64 person) const;

    Report &m_report;
    NumberNames m_names;
    Sqlite3DB m_images;
    QHash<qint64, qint64> m_imageOf; // row id of the picture, by person
};

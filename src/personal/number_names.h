#pragma once

#include "base/report.h"
#include "personal/number_normaliser.h"

#include <QHash>
#include <QString>

#include <optional>

class FileSource;
class Sqlite3DB;

/// Puts names to numbers: the index of an address book that calls, voicemail and messages ask, so that one
/// number has one name. Built once.
class NumberNames
{
public:
    struct Person
    {
        qint64 rowid = 0;
        QString name; // empty for a person without one
    };

    /// A source without an address book has no names. What cannot be read of one is told in the report.
    NumberNames(FileSource &source, const NumberNormaliser &normalise, Report &report);

    /// The owner of a telephone number: of a number that is the same when both are normalised, else of one
    /// that ends in the same nine digits. A number that several people have is that of the value stored last.
    std::optional<Person> ownerOfNumber(const QString &number) const;

    /// The name of the owner of a number, else of whoever has this text, or its last nine digits, among the
    /// other values: an e-mail address for one. Empty when nobody does or it has neither digits nor letters.
    QString nameOfNumber(const QString &address) const;

private:
    void readAddressBook(const Sqlite3DB &db, Report &report);
    void addValue(qint64 person, int property, const QString &value);
    std::optional<Person> person(std::optional<qint64> rowid) const;

    NumberNormaliser m_normalise;
    QHash<qint64, QString> m_names; // by person
    QHash<QString, qint64> m_ownerOfNumber;
    QHash<QString, qint64> m_ownerOfSuffix;
    QHash<QString, qint64> m_ownerOfOther;
};

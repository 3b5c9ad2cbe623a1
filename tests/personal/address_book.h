#pragma once

#include "../support/scratch_source.h"

/// The address books that the tests of this folder read.
namespace AddressBook {
inline const SourceFile file{QStringLiteral("HomeDomain"),
                             QStringLiteral("Library/AddressBook/AddressBook.sqlitedb")};
inline const SourceFile images{QStringLiteral("HomeDomain"),
                               QStringLiteral("Library/AddressBook/AddressBookImages.sqlitedb")};

inline QString schema()
{
    return QStringLiteral(
        "create table ABPerson(ROWID INTEGER PRIMARY KEY AUTOINCREMENT, First TEXT, Last TEXT, Middle TEXT,"
        " Organization TEXT, Department TEXT, Note TEXT, Birthday TEXT, JobTitle TEXT, Nickname TEXT, Prefix "
        "TEXT,"
        " Suffix TEXT);"
        "create table ABMultiValue(UID INTEGER PRIMARY KEY, record_id INTEGER, property INTEGER, identifier "
        "INTEGER,"
        " label INTEGER, value TEXT);"
        "create table ABMultiValueLabel(value TEXT, UNIQUE(value));"
        "create table ABMultiValueEntry(parent_id INTEGER, key INTEGER, value TEXT, UNIQUE(parent_id, key));"
        "create table ABMultiValueEntryKey(value TEXT, UNIQUE(value));");
}
} // namespace AddressBook

#pragma once

#include "sample/generation.h"

#include <QByteArray>

namespace sample {

/// Tables of an empty AddressBook.sqlitedb and AddressBookImages.sqlitedb.
QByteArray addressBookTables(const Generation &generation);
QByteArray addressBookImageTables(const Generation &generation);

} // namespace sample

#pragma once

#include "sqlite/read_rows.h"

#include <QSet>

/// Puts a private copy of what can be read of these tables, as readRows() reads them, in the place of an
/// opened foreign database, for readers that join tables. Tables that the database does not have are passed
/// over. The copy lies in an unnamed temporary file, of which nothing stays behind. What is lost goes into
/// the report. Returns the tables that have lost rows. Throws Error when nothing of the first table can be
/// read. No cursor may be there.
QSet<QString> mend(Sqlite3DB &db, const QStringList &tables, Report &report);

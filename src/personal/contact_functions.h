#pragma once

#include <QString>

class Sqlite3DB;

/// The parts joined by single blanks, empty ones left out, trimmed.
QString personName(const QString &first, const QString &middle, const QString &last);

/// What two spellings of one number have in common: the last nine digits, all of them when there are fewer.
/// A text with an ASCII letter is an address and comes back unchanged.
QString numberSuffix(const QString &number);

/// Makes person_name(first, middle, last) and number_suffix(value) known to the statements of a connection.
/// Throws Error.
void registerContactFunctions(Sqlite3DB &db);

#pragma once

#include <QDateTime>

#include <optional>

class Report;
class Sqlite3Cursor;
class Sqlite3Sql;

/// From when on a column counts seconds.
enum class Epoch { Unix, Apple };

/// The instant that a column holds, in UTC and without fractions of a second; a null one for NULL. Nothing
/// for what is no date: no number, or outside the years 1 to 9999.
std::optional<QDateTime> storedDate(const Sqlite3Cursor &row, int column, Epoch epoch);

/// The same, but what is no date is null as well, and noted as damage of `where`.
QDateTime storedDate(const Sqlite3Cursor &row, int column, Epoch epoch, const QString &where, Report &report);

void noteBadDate(const QString &where, Report &report);

/// Unix seconds for the columns and hashes of a store; 0 for a null date.
qint64 unixSeconds(const QDateTime &date);

/// Adds them as a parameter: NULL for a null date.
Sqlite3Sql &addDate(Sqlite3Sql &sql, const QDateTime &date);

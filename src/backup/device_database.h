#pragma once

#include "backup/file_source.h"

class Report;
class Sqlite3DB;

/// The private copy of FileSource::fetchDatabase(); the where() of an Error that it throws is the file.
std::optional<QString> fetchDeviceDatabase(FileSource &source, const SourceFile &file);

/// Opens the private copy of a database of the source, as one that somebody else made, under the name that it
/// has in the backup. False when the source does not list the file. Throws Error, whose where() is the file.
bool openDeviceDatabase(Sqlite3DB &db, FileSource &source, const SourceFile &file);
/// The same for the database that a class of data is read from, which may be open already: all its pages are
/// looked at once, and damage goes into the report, for what is lost by it may be beyond counting.
bool openDeviceDatabase(Sqlite3DB &db, FileSource &source, const SourceFile &file, Report &report);

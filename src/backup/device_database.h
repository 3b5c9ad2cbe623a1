#pragma once

#include "backup/file_source.h"

class Sqlite3DB;

/// The private copy of FileSource::fetchDatabase(); the where() of an Error that it throws is the file.
std::optional<QString> fetchDeviceDatabase(FileSource &source, const SourceFile &file);

/// Opens the private copy of a database of the source, as one that somebody else made, under the name that it
/// has in the backup. False when the source does not list the file. Throws Error, whose where() is the file.
bool openDeviceDatabase(Sqlite3DB &db, FileSource &source, const SourceFile &file);

#pragma once

#include <QString>

class Sqlite3DB;

/// Opens a message database for reading. One that was cut off is opened for what is left of it: the sentence
/// that says so is returned, else an empty text. Throws Error.
QString openDeviceDatabase(Sqlite3DB &db, const QString &path);

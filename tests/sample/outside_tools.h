#pragma once

#include "sample/sample_maker.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVariant>

/// What the checks of a sample stand on: programs that know nothing of the code under test.

/// What the program prints when given `input`. Throws std::runtime_error when it is missing or fails.
QByteArray runTool(const QString &program, const QStringList &arguments, const QByteArray &input = {});

/// A property list of either kind as plistutil reads it: maps, lists, strings, numbers, byte arrays, date
/// texts. A UID is a map with the one key "CF$UID".
QVariant readPlist(const QByteArray &bytes);

/// AES-256-CBC with a vector of zeros. Padding is checked and removed, or left when there should be none.
QByteArray opensslDecrypt(const QByteArray &key, const QByteArray &encrypted, bool padded = true);
/// Empty when the wrapped key does not open.
QByteArray opensslUnwrap(const QByteArray &kek, const QByteArray &wrapped);
QByteArray opensslPbkdf2(const char *digest, const QByteArray &password, const QByteArray &salt, int rounds);

/// The first column of all rows, opened as it stands and without leaving anything beside the file.
QStringList column(const QString &database, const QString &sql);
/// Of the first row.
QByteArray blob(const QString &database, const QString &sql);

QByteArray readAll(const QString &path);
QString storedPath(const SampleOptions &options, const SampleFile &file);

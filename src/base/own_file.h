#pragma once

#include <QFile>
#include <QString>

/// Opens for reading a file that lies in `folder` itself or below it: `name` is its path from there, no link on
/// that way is followed, and what is no regular file is not opened (reading a pipe never ends). A folder of unknown
/// origin must not hand out what lies elsewhere on this computer. The folder may itself be reached through links.
/// Throws Error("can not open PATH. REASON").
void openOwnFile(QFile &file, const QString &folder, const QString &name);

/// True when openOwnFile() would find such a file.
bool isOwnFile(const QString &folder, const QString &name);

/// Makes the folder `name` below `folder`, as far as it is missing, and returns its path. A link on the way from
/// `folder` is refused: what is written there would land elsewhere. Throws Error.
QString makeOwnFolder(const QString &folder, const QString &name);

#pragma once

class QString;

/// True when the desktop may be asked to open a file of this name: its last ending is that of a picture, a
/// sound or a film. Anything else that comes out of a backup could be a program, or a document that runs one.
bool isOpenedByTheDesktop(const QString &name);

/// Where the copy of a file is to be made that the desktop is asked to open: below openedFilesFolder().
/// `owner` is the identifier of its backup, or "loose"; `id` tells it from others of its name. Throws Error
/// when no file may have such a name or isOpenedByTheDesktop() is false for it.
QString placeToOpen(const QString &owner, const QString &id, const QString &name);

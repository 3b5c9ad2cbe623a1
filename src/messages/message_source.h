#pragma once

#include "messages/abs_message_db.h"

/// Messages together with the source of their attachments, which the database reads from as long as it lives.
struct MessageSource
{
    std::unique_ptr<FileSource> files;
    std::unique_ptr<AbsMessageDb> database;
};

/// True when the local database in `folder` has a message store.
bool hasLocalMessages(const QString &folder);
/// The message store of the local database in `folder`; no messages when there is none. Throws Error.
MessageSource openLocalMessages(const QString &folder);
/// How many are listed there, and what is damaged. Throws Error.
qint64 countLocalMessages(const QString &folder, Report &report);
/// What was deleted from it.
MessageSource openRecycledMessages(const QString &folder);

/// True for what openMessageFile() takes: a file, or a folder with a "chat.db".
bool isMessageFile(const QString &path);
/// A message database that does not stand in a backup: of macOS, of a device with "Attachments/" beside it,
/// or one written by an export. The file is never opened where it lies, but for the last. Throws Error.
MessageSource openMessageFile(const QString &path);

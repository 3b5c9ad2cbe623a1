#pragma once

#include "messages/message_source.h"

class BackupManifest;
class PasswordOption;

struct OpenMessages : MessageSource
{
    const BackupManifest *backup = nullptr; // the files, where they are those of a backup

    /// What of the backup and of its messages could not be read so far.
    Report report() const;
};

/// True for a source that is a message database by itself and has no other class of data.
bool isMessageDatabase(const QString &source);

/// Opens a backup's folder, "local:NAME", "deleted:NAME" or a message database and loads its conversations,
/// not yet their messages. Throws Error, PasswordError and Cancelled.
OpenMessages openMessages(const QString &source, Scope scope, const PasswordOption &password,
                          Progress &progress);

/// Loads the messages of the named conversations, or of all when none is named. Throws Error for a
/// conversation that is not there.
void loadMessagesOf(AbsMessageDb &database, const std::vector<qint64> &chats, const QString &source,
                    Progress &progress);

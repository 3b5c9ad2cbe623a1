#pragma once

#include "messages/abs_message_db.h"
#include "work/message_files.h"

#include <memory>

/// Where messages come from: a backup, the store of a local database, or a message database that does not
/// stand in a backup. One of the three is set.
struct MessageOrigin
{
    OpenBackupPtr backup;
    QString localDatabase = {}; // its folder
    QString file = {};          // or a folder with a "chat.db"
};

/// Messages that were loaded, with the source of what belongs to them; shared by the views and workers that
/// use them. The records may be read by anybody at any time.
struct LoadedMessages
{
    MessageFiles files;
    std::unique_ptr<const AbsMessageDb> database; // goes before what it reads from
};

using LoadedMessagesPtr = std::shared_ptr<const LoadedMessages>;

/// Reads all conversations and messages. Null when the origin has no message database. Throws Error and
/// Cancelled.
LoadedMessagesPtr loadMessages(const MessageOrigin &origin, Progress &progress, Scope scope = Scope::Usual);

#pragma once

#include "backup/backup_manifest.h"
#include "messages/abs_message_db.h"

#include <memory>

class PasswordOption;
struct CommandContext;
enum class ExitStatus;

/// The messages of a source, and the source that keeps their attachments. The database goes before the source
/// that it reads from.
struct OpenMessages
{
    std::unique_ptr<BackupManifest> source;
    std::unique_ptr<AbsMessageDb> database;
};

/// Opens a source and loads its conversations, not yet their messages. Throws Error, PasswordError and
/// Cancelled.
OpenMessages openMessages(const QString &source, const PasswordOption &password, Progress &progress);

/// Loads the messages of the named conversations, or of all when none is named. Throws Error for a
/// conversation that is not there.
void loadMessagesOf(OpenMessages &messages, const std::vector<qint64> &chats, const QString &source,
                    Progress &progress);

/// Tells what of a database could not be read. A database that broke off is a failure, whatever was read
/// before; single rows are not.
ExitStatus tellWhatWasLost(const OpenMessages &messages, const QString &source, CommandContext &context);

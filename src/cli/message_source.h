#pragma once

#include "messages/message_source.h"

class PasswordOption;
struct CommandContext;
enum class ExitStatus;

/// True for a source that is a message database by itself and has no other class of data.
bool isMessageDatabase(const QString &source);

/// Opens a backup's folder, "local:NAME", "deleted:NAME" or a message database and loads its conversations,
/// not yet their messages. Throws Error, PasswordError and Cancelled.
MessageSource openMessages(const QString &source, const PasswordOption &password, Progress &progress);

/// Loads the messages of the named conversations, or of all when none is named. Throws Error for a
/// conversation that is not there.
void loadMessagesOf(AbsMessageDb &database, const std::vector<qint64> &chats, const QString &source,
                    Progress &progress);

/// Tells what of a database could not be read. A database that broke off is a failure, whatever was read
/// before; single rows are not.
ExitStatus tellWhatWasLost(const AbsMessageDb &database, const QString &source, CommandContext &context);

/// Tells a heading with the number of lines as %1, and the first `most` of the lines.
void tellLines(const QString &heading, const QStringList &lines, qsizetype most, CommandContext &context);

/// Tells which attachments are missing.
void tellMissing(const QStringList &missingAttachments, CommandContext &context);

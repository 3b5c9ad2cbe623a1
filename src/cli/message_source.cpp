#include "cli/message_source.h"

#include "base/error.h"
#include "cli/command.h"
#include "cli/open_backup.h"

OpenMessages openMessages(const QString &source, const PasswordOption &password, Progress &progress)
{
    OpenMessages messages;
    messages.source = openBackup(source, password, PasswordNeed::Always, progress);
    try {
        messages.database = openMessageDb(*messages.source);
        messages.database->loadChats();
    } catch (const Error &error) {
        throw error.withContext(source);
    }
    return messages;
}

void loadMessagesOf(OpenMessages &messages, const std::vector<qint64> &chats, const QString &source,
                    Progress &progress)
{
    for (const qint64 rowid : chats) {
        if (messages.database->chat(rowid) == nullptr)
            throw Error(QStringLiteral("%1: there is no conversation %2").arg(source).arg(rowid));
    }
    messages.database->loadMessages(chats.size() == 1 ? chats.front() : 0, progress);
}

ExitStatus tellWhatWasLost(const OpenMessages &messages, const QString &source, CommandContext &context)
{
    const AbsMessageDb &database = *messages.database;
    if (database.skippedRows() > 0)
        context.tell(QStringLiteral("%1: %2 rows could not be read").arg(source).arg(database.skippedRows()));
    if (database.unreadableTexts() > 0)
        context.tell(QStringLiteral("%1: %2 messages have a text that could not be read")
                         .arg(source)
                         .arg(database.unreadableTexts()));
    if (database.warnings().isEmpty())
        return ExitStatus::Done;
    context.tell(QStringLiteral("%1: the message database is damaged, some of it is missing. %2")
                     .arg(source, database.warnings().join(QLatin1Char(' '))));
    return ExitStatus::Failed;
}

#include "cli/message_source.h"

#include "base/error.h"
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

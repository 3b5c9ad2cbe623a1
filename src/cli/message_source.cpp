#include "cli/message_source.h"

#include "base/error.h"
#include "cli/command.h"
#include "cli/local_database.h"
#include "cli/open_backup.h"

#include <QFileInfo>

namespace {
/// Does something with a source, so that a failure names it.
template <typename Work>
auto inNameOf(const QString &source, Work work)
{
    try {
        return work();
    } catch (const Error &error) {
        throw error.withContext(source);
    }
}

OpenMessages openUnloaded(const QString &source, const PasswordOption &password, Progress &progress)
{
    if (const auto folder = localDatabaseOf(source))
        return {inNameOf(source, [&] { return openLocalMessages(*folder); }), {}};
    if (const auto folder = deletedMessagesOf(source))
        return {inNameOf(source, [&] { return openRecycledMessages(*folder); }), {}};
    if (isMessageDatabase(source))
        return {inNameOf(source, [&] { return openMessageFile(source); }), {}};
    OpenMessages messages;
    auto backup = openBackup(source, password, progress);
    messages.backup = backup.get();
    messages.files = std::move(backup);
    messages.database = inNameOf(source, [&] { return openMessageDb(*messages.files); });
    return messages;
}
} // namespace

bool isMessageDatabase(const QString &source)
{
    return isMessageFile(source) && !isBackupFolder(source) &&
           QFileInfo(source).suffix().compare(QLatin1String("vcf"), Qt::CaseInsensitive) != 0;
}

Report OpenMessages::report() const
{
    Report all = reportOf(backup);
    all.merge(database->report());
    return all;
}

OpenMessages openMessages(const QString &source, Scope scope, const PasswordOption &password,
                          Progress &progress)
{
    OpenMessages messages = openUnloaded(source, password, progress);
    messages.database->setScope(scope);
    inNameOf(source, [&] { messages.database->loadChats(); });
    return messages;
}

void loadMessagesOf(AbsMessageDb &database, const std::vector<qint64> &chats, const QString &source,
                    Progress &progress)
{
    for (const qint64 rowid : chats) {
        if (database.chat(rowid) == nullptr)
            throw Error(QStringLiteral("%1: there is no conversation %2").arg(source).arg(rowid));
    }
    database.loadMessages(chats.size() == 1 ? chats.front() : 0, progress);
}

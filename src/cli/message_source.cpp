#include "cli/message_source.h"

#include "base/error.h"
#include "cli/command.h"
#include "cli/local_database.h"
#include "cli/open_backup.h"

#include <QFileInfo>

#include <algorithm>

namespace {
constexpr int mostNamedFiles = 20;

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

MessageSource openUnloaded(const QString &source, const PasswordOption &password, Progress &progress)
{
    if (const auto folder = localDatabaseOf(source))
        return inNameOf(source, [&] { return openLocalMessages(*folder); });
    if (const auto folder = deletedMessagesOf(source))
        return inNameOf(source, [&] { return openRecycledMessages(*folder); });
    if (isMessageDatabase(source))
        return inNameOf(source, [&] { return openMessageFile(source); });
    MessageSource messages;
    messages.files = openBackup(source, password, progress);
    messages.database = inNameOf(source, [&] { return openMessageDb(*messages.files); });
    return messages;
}
} // namespace

bool isMessageDatabase(const QString &source)
{
    return isMessageFile(source) && !isBackupFolder(source) &&
           QFileInfo(source).suffix().compare(QLatin1String("vcf"), Qt::CaseInsensitive) != 0;
}

MessageSource openMessages(const QString &source, const PasswordOption &password, Progress &progress)
{
    MessageSource messages = openUnloaded(source, password, progress);
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

ExitStatus tellWhatWasLost(const AbsMessageDb &database, const QString &source, CommandContext &context)
{
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

void tellLines(const QString &heading, const QStringList &lines, qsizetype most, CommandContext &context)
{
    if (lines.isEmpty())
        return;
    context.tell(heading.arg(lines.size()));
    for (const QString &line : lines.first(std::min(most, lines.size())))
        context.tell(QStringLiteral("  ") + line);
    if (lines.size() > most)
        context.tell(QStringLiteral("  and %1 more").arg(lines.size() - most));
}

void tellMissing(const QStringList &missingAttachments, CommandContext &context)
{
    tellLines(QStringLiteral("%1 attachments are missing:"), missingAttachments, mostNamedFiles, context);
}

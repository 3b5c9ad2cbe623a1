#include "export/message_export.h"

#include "base/app_folders.h"
#include "base/error.h"
#include "base/source_guard.h"
#include "base/texts.h"
#include "export/export_messages_csv.h"
#include "export/export_messages_db.h"
#include "export/export_messages_html.h"
#include "export/export_messages_pdf.h"
#include "export/export_messages_txt.h"
#include "export/files_folder.h"
#include "export/printed_attachments.h"
#include "messages/attachment_content.h"

#include <QDir>
#include <QFileInfo>

#include <unordered_map>

namespace {
struct Conversation
{
    const _MsgChat *chat = nullptr;
    bool severalChats = false;
    std::vector<MessageRef> refs;
};

/// Chats with one identifier, such as the SMS and the iMessage chat with one number, are one conversation.
/// Case does not count. A chat without an identifier is one of its own.
std::vector<Conversation> conversationsOf(const std::vector<MessageRef> &messages)
{
    std::vector<Conversation> result;
    std::unordered_map<const _MsgChat *, std::size_t> byChat;
    std::unordered_map<QString, std::size_t> byIdentifier;
    const auto placeOf = [&](const _MsgChat *chat) {
        const auto known = byChat.find(chat);
        if (known != byChat.end())
            return known->second;
        std::size_t place = result.size();
        if (chat && !chat->chat_identifier.isEmpty())
            place = byIdentifier.try_emplace(chat->chat_identifier.toCaseFolded(), place).first->second;
        if (place == result.size())
            result.push_back({chat, false, {}});
        else
            result[place].severalChats = true;
        byChat.emplace(chat, place);
        return place;
    };
    for (const MessageRef &ref : messages)
        result[placeOf(ref.chat)].refs.push_back(ref);
    for (Conversation &conversation : result)
        if (conversation.severalChats)
            sortForExport(conversation.refs);
    return result;
}

/// `suffix` with its dot.
QString fileNameOf(const _MsgChat *chat, const QString &suffix)
{
    const QString unknown = QStringLiteral("unknown-chat") + suffix;
    if (!chat)
        return unknown;
    const bool byIdentifier = chat->isGroup() && !chat->chat_identifier.isEmpty();
    const QString name = byIdentifier ? chat->chat_identifier : chatName(*chat, Addresses::With);
    const QString legal = portableFileName(name + suffix, unknown);
    return legal == suffix ? unknown : legal;
}

class MessageExport
{
public:
    MessageExport(qint64 total, const QString &target, FileSource *source, Progress &progress)
        : m_target(QFileInfo(target).absoluteFilePath()),
          m_source(source),
          m_progress(progress),
          m_counted(progress, textFor("IDS_EXTRACTING_MESSAGES"), QStringLiteral("Messages: %1/%2"), total)
    {
    }

    void toPages(const std::vector<MessageRef> &messages)
    {
        makeFolder(m_target);
        FilesFolder files(m_target, m_source, m_progress, m_exported);
        DateText dates = ExportMessagesHtml::dateLines();
        forEachConversation(messages, QStringLiteral(".html"),
                            [&](const _MsgChat *, const QString &path) -> std::unique_ptr<Writer> {
                                return std::make_unique<ExportMessagesHtml>(path, files, dates);
                            });
    }

    void toPdf(const std::vector<MessageRef> &messages)
    {
        makeFolder(m_target);
        FetchedAttachments attachments(m_source, m_progress, m_exported.report);
        forEachConversation(messages, QStringLiteral(".pdf"),
                            [&](const _MsgChat *chat, const QString &path) -> std::unique_ptr<Writer> {
                                const QString title =
                                    chat ? chatName(*chat, Addresses::With) : QStringLiteral("unknown");
                                return std::make_unique<ExportMessagesPdf>(path, title, attachments);
                            });
    }

    template <typename Format>
    void toOneFile(std::vector<MessageRef> messages)
    {
        sortForExport(messages);
        Format writer(m_target);
        run(writer, messages, m_target);
        noteLostContent(m_exported.report, messages, m_source);
    }

    void toDatabase(std::vector<MessageRef> messages)
    {
        sortForExport(messages);
        ExportMessagesDb writer(m_target, m_source, messages);
        run(writer, messages, writer.path());
        const SavedMessages &saved = writer.saved();
        m_exported.report = saved.report;
        m_exported.report.done = saved.added; // a message in two conversations is one
        const qint64 there = saved.merged - saved.report.count("IDS_ISSUE_EQUAL_MESSAGES");
        if (there > 0)
            m_exported.report.add(
                {.kind = IssueKind::Remark, .what = "IDS_ISSUE_MESSAGES_THERE_ALREADY", .count = there});
        m_exported.attachmentsCopied = saved.attachmentsCopied;
    }

    const ExportedMessages &exported() const { return m_exported; }

private:
    using Writer = AbsFormatExport<MessageRef>;

    QString m_target;
    FileSource *m_source;
    Progress &m_progress;
    CountedProgress m_counted;
    ExportedMessages m_exported;

    template <typename MakeWriter>
    void forEachConversation(const std::vector<MessageRef> &messages, const QString &suffix,
                             const MakeWriter &makeWriter)
    {
        FreeNames names(m_target);
        for (const Conversation &conversation : conversationsOf(messages)) {
            const QString name = names.take(fileNameOf(conversation.chat, suffix));
            const QString path = QDir(m_target).filePath(name);
            run(*makeWriter(conversation.chat, path), conversation.refs, path);
        }
    }

    void run(Writer &writer, const std::vector<MessageRef> &messages, const QString &path)
    {
        writer.begin();
        for (const MessageRef &ref : messages) {
            m_counted.item();
            writer.write(ref);
        }
        writer.end();
        m_exported.report.done += static_cast<qint64>(messages.size());
        m_exported.files += path;
    }
};
} // namespace

ExportedMessages exportMessages(const std::vector<MessageRef> &messages, MessageFormat format,
                                const QString &target, FileSource *source, Progress &progress)
{
    const SourceGuard localDatabases({localDatabasesFolder().path()}, SourceGuard::Reach::ThisThread);
    MessageExport job(static_cast<qint64>(messages.size()), target, source, progress);
    switch (format) {
    case MessageFormat::Text:
        job.toOneFile<ExportMessagesTxt>(messages);
        break;
    case MessageFormat::Csv:
        job.toOneFile<ExportMessagesCsv>(messages);
        break;
    case MessageFormat::Pdf:
        job.toPdf(messages);
        break;
    case MessageFormat::Html:
        job.toPages(messages);
        break;
    case MessageFormat::Database:
        job.toDatabase(messages);
        break;
    default:
        throw Error(QStringLiteral("not support export format."));
    }
    return job.exported();
}

std::optional<MessageFormat> messageFormatOf(const QString &name)
{
    if (name == QLatin1String("text"))
        return MessageFormat::Text;
    if (name == QLatin1String("csv"))
        return MessageFormat::Csv;
    if (name == QLatin1String("pdf"))
        return MessageFormat::Pdf;
    if (name == QLatin1String("html"))
        return MessageFormat::Html;
    if (name == QLatin1String("db"))
        return MessageFormat::Database;
    return std::nullopt;
}

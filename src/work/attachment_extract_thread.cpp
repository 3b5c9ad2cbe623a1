#include "work/attachment_extract_thread.h"

#include "base/app_folders.h"
#include "base/source_guard.h"
#include "base/texts.h"
#include "export/attachment_copies.h"
#include "work/summary_text.h"

#include <QDir>

#include <unordered_set>

namespace {
/// Each once: a message may be in several conversations.
std::vector<const _MsgAttachment *> attachmentsOf(const std::vector<MessageRef> &messages)
{
    std::vector<const _MsgAttachment *> attachments;
    std::unordered_set<const _MsgAttachment *> seen;
    for (const MessageRef &ref : messages)
        for (const _MsgAttachment *attachment : ref.message->attachments)
            if (seen.insert(attachment).second)
                attachments.push_back(attachment);
    return attachments;
}
} // namespace

ExportedMessages extractAttachments(const std::vector<MessageRef> &messages, const MessageFiles &files,
                                    const QString &folder, Progress &progress)
{
    const SourceGuard localDatabases({localDatabasesFolder().path()}, SourceGuard::Reach::ThisThread);
    ExportedMessages exported;
    const std::vector<const _MsgAttachment *> attachments = attachmentsOf(messages);
    CountedProgress counted(progress, textFor("IDS_EXTRACTING_ATTACHMENTS"), {},
                            static_cast<qint64>(attachments.size()));
    files.use(progress, [&](FileSource *source) {
        AttachmentCopies copies(folder, source, progress, exported);
        for (const _MsgAttachment *attachment : attachments) {
            counted.item();
            copies.copy(*attachment);
        }
    });
    return exported;
}

AttachmentExtractThread::AttachmentExtractThread(std::vector<MessageRef> messages,
                                                 std::shared_ptr<const void> owner, MessageFiles files,
                                                 QString folder)
    : m_messages(std::move(messages)),
      m_owner(std::move(owner)),
      m_files(std::move(files)),
      m_folder(std::move(folder))
{
}

QString AttachmentExtractThread::work(Progress &progress)
{
    const ExportedMessages exported = extractAttachments(m_messages, m_files, m_folder, progress);
    return endText(textFor("IDS_SUC_EXTRACTED_%1_ATTACHMENTS_TO_%2")
                       .arg(QString::number(exported.attachmentsCopied), QDir::toNativeSeparators(m_folder)),
                   exported.report);
}

#include "work/export_messages_thread.h"

#include "base/texts.h"
#include "work/summary_text.h"

QString messageExportText(const MessageExportSummary &summary)
{
    return textFor("IDS_SUC_EXTRACTED_%1_MESSAGES").arg(summary.written) +
           listedProblems("IDS_REFUSED_MESSAGES_%1", summary.refused) +
           listedProblems("IDS_MISSING_ATTACHMENTS_%1", summary.missingAttachments) +
           listedProblems("IDS_LOCKED_FILES_%1", summary.lockedFiles);
}

ExportMessagesThread::ExportMessagesThread(std::vector<MessageRef> messages,
                                           std::shared_ptr<const void> owner, MessageFormat format,
                                           QString target, MessageFiles files)
    : m_messages(std::move(messages)),
      m_owner(std::move(owner)),
      m_format(format),
      m_target(std::move(target)),
      m_files(std::move(files))
{
}

QString ExportMessagesThread::work(Progress &progress)
{
    m_files.use(progress, [&](FileSource *source) {
        m_summary = exportMessages(m_messages, m_format, m_target, source, progress);
    });
    return messageExportText(m_summary);
}

#include "work/export_messages_thread.h"

#include "base/texts.h"
#include "work/summary_text.h"

QString messageExportText(const MessageExportSummary &summary)
{
    return textFor("IDS_SUC_EXTRACTED_%1_MESSAGES").arg(summary.written) +
           listedProblems("IDS_MISSING_ATTACHMENTS_%1", summary.missingAttachments) +
           listedProblems("IDS_LOCKED_FILES_%1", summary.lockedFiles);
}

ExportMessagesThread::ExportMessagesThread(std::vector<MessageRef> messages,
                                           std::shared_ptr<const void> owner, MessageFormat format,
                                           QString target, OpenBackupPtr backup)
    : m_messages(std::move(messages)),
      m_owner(std::move(owner)),
      m_format(format),
      m_target(std::move(target)),
      m_backup(std::move(backup))
{
}

QString ExportMessagesThread::work(Progress &progress)
{
    const BackupUse use(*m_backup, progress);
    m_summary = exportMessages(m_messages, m_format, m_target, &m_backup->manifest(), progress);
    return messageExportText(m_summary);
}

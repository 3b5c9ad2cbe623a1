#include "work/backup_mms_thread.h"

#include "base/texts.h"
#include "work/summary_text.h"

MessageSaveSummary backUpMessages(const std::vector<MessageRef> &messages, const MessageFiles &files,
                                  const QString &folder, Progress &progress)
{
    MessageSaveSummary summary;
    files.use(progress, [&](FileSource *source) {
        summary = saveMessages(messages, source, folder, textFor("IDS_BACKUPING_MESSAGES"), progress);
    });
    return summary;
}

QString messageSaveText(const MessageSaveSummary &summary)
{
    return textFor("IDS_SUC_BACKUP_%1_MESSAGES").arg(summary.handled()) +
           listedProblems("IDS_REFUSED_MESSAGES_%1", summary.refused) +
           listedProblems("IDS_MISSING_ATTACHMENTS_%1", summary.missingAttachments);
}

BackupMMSThread::BackupMMSThread(std::vector<MessageRef> messages, std::shared_ptr<const void> owner,
                                 MessageFiles files, QString folder)
    : m_messages(std::move(messages)),
      m_owner(std::move(owner)),
      m_files(std::move(files)),
      m_folder(std::move(folder))
{
}

QString BackupMMSThread::work(Progress &progress)
{
    m_summary = backUpMessages(m_messages, m_files, m_folder, progress);
    return messageSaveText(m_summary);
}

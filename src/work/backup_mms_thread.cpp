#include "work/backup_mms_thread.h"

#include "base/texts.h"
#include "work/summary_text.h"

SavedMessages backUpMessages(const std::vector<MessageRef> &messages, const MessageFiles &files,
                             const QString &folder, ChangedMessages changed, Progress &progress)
{
    SavedMessages saved;
    files.use(progress, [&](FileSource *source) {
        saved = saveMessages(messages, source, folder, textFor("IDS_BACKUPING_MESSAGES"), progress, changed);
    });
    return saved;
}

QString messageSaveText(const SaveReport &saved)
{
    return textFor("IDS_SUC_BACKUP_%1_MESSAGES").arg(saved.handled()) + reportText(saved.report);
}

BackupMMSThread::BackupMMSThread(std::vector<MessageRef> messages, std::shared_ptr<const void> owner,
                                 MessageFiles files, QString folder, ChangedMessages changed)
    : m_messages(std::move(messages)),
      m_owner(std::move(owner)),
      m_files(std::move(files)),
      m_folder(std::move(folder)),
      m_changed(changed)
{
}

QString BackupMMSThread::work(Progress &progress)
{
    m_saved = backUpMessages(m_messages, m_files, m_folder, m_changed, progress);
    noteFailures(m_saved.report);
    return messageSaveText(m_saved);
}

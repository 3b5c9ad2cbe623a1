#include "work/clear_cache_thread.h"

#include "backup/cache_folder.h"
#include "base/private_folder.h"
#include "base/texts.h"

void clearCacheFiles(const QString &uid, const std::vector<OpenBackupPtr> &open, Progress &progress)
{
    progress.report(textFor("IDS_CLEARING_CACHES"), -1, {});
    std::vector<std::unique_ptr<BackupUse>> uses;
    for (const OpenBackupPtr &backup : open)
        uses.push_back(std::make_unique<BackupUse>(*backup, progress));
    removeOpenedFiles(uid);
    if (uid.isEmpty())
        clearCaches();
    else
        clearCacheOf(uid);
}

ClearCacheThread::ClearCacheThread(QString uid, std::vector<OpenBackupPtr> open, QString doneText)
    : m_uid(std::move(uid)), m_open(std::move(open)), m_doneText(std::move(doneText))
{
}

QString ClearCacheThread::work(Progress &progress)
{
    clearCacheFiles(m_uid, m_open, progress);
    return m_doneText;
}

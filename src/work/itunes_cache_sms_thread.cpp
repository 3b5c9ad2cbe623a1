#include "work/itunes_cache_sms_thread.h"

#include "base/error.h"
#include "base/texts.h"

CachedFiles cacheMessages(OpenBackup &backup, Progress &progress)
{
    const BackupUse use(backup, progress);
    BackupManifest &manifest = backup.manifest();
    progress.report(textFor("IDS_LOADING_BACKUP"), -1, {});
    manifest.buildIndex(progress);
    if (manifest.wellKnown(WellKnown::MessageDatabase) == FileCatalogue::none)
        throw Error(textFor("IDS_NO_MESSAGE_DB_IN_BACKUP"));
    const FileTree::Node messages = manifest.tree().find(QStringLiteral("Library/SMS"));
    return cacheTree(manifest, messages, textFor("IDS_SAVING_%1"), progress);
}

ITunesCacheSMSThread::ITunesCacheSMSThread(OpenBackupPtr backup) : m_backup(std::move(backup)) {}

QString ITunesCacheSMSThread::work(Progress &progress)
{
    cacheMessages(*m_backup, progress);
    return {};
}

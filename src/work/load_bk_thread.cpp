#include "work/load_bk_thread.h"

#include "base/error.h"
#include "base/texts.h"
#include "messages/abs_message_db.h"
#include "personal/personal_source.h"

namespace {
void countMessages(BackupManifest &manifest, BackupCounts &counts)
{
    if (manifest.wellKnown(WellKnown::MessageDatabase) == FileCatalogue::none)
        return;
    try {
        counts.messages = openMessageDb(manifest)->countMessages();
    } catch (const Error &error) {
        counts.messagesProblem = error.sentence();
        qWarning("messages could not be counted: %s", error.what());
    }
}

void countRecords(BackupManifest &manifest, BackupCounts &counts)
{
    const auto records = openDeviceRecords(manifest, manifest.info().deviceId);
    for (const DataClass dataClass : allDataClasses) {
        try {
            if (records->has(dataClass))
                counts.records.insert(dataClass, records->count(dataClass));
        } catch (const Error &error) {
            qWarning("%s could not be counted: %s", qPrintable(dataClassName(dataClass)), error.what());
        }
    }
}
} // namespace

BackupCounts loadBackup(OpenBackup &backup, Progress &progress)
{
    const BackupUse use(backup, progress);
    progress.report(textFor("IDS_LOADING_BACKUP"), -1, {});
    backup.manifest().buildIndex(progress);
    progress.check();
    BackupCounts counts;
    countMessages(backup.manifest(), counts);
    progress.check();
    countRecords(backup.manifest(), counts);
    progress.check();
    return counts;
}

LoadBkThread::LoadBkThread(OpenBackupPtr backup) : m_backup(std::move(backup)) {}

QString LoadBkThread::work(Progress &progress)
{
    m_counts = loadBackup(*m_backup, progress);
    const BackupManifest &manifest = m_backup->manifest();
    if (manifest.skippedRows() == 0)
        return {};
    return textFor("IDS_SKIPPED_ROWS_%1_%2").arg(manifest.skippedRows()).arg(manifest.skippedReason());
}

#include "work/load_bk_thread.h"

#include "base/error.h"
#include "base/report.h"
#include "base/texts.h"
#include "messages/abs_message_db.h"
#include "personal/media_items.h"
#include "personal/personal_source.h"

#include <QFileInfo>

namespace {
constexpr WellKnown countedDatabases[] = {WellKnown::MessageDatabase,
                                          WellKnown::Contacts,
                                          WellKnown::VoicemailDatabase,
                                          WellKnown::Calendar,
                                          WellKnown::Notes,
                                          WellKnown::CallHistoryNewer,
                                          WellKnown::CallHistoryOlder,
                                          WellKnown::RecordingsDatabase,
                                          WellKnown::Bookmarks};

// Counting tells what is wrong with a database that cannot be fetched.
void fetchDatabases(BackupManifest &manifest, Progress &progress)
{
    const auto stopWhenAsked = [&progress](std::uint64_t, std::uint64_t) { progress.check(); };
    for (const WellKnown kind : countedDatabases) {
        const FileCatalogue::Index index = manifest.wellKnown(kind);
        progress.check();
        if (index == FileCatalogue::none || manifest.catalogue().isDirectory(index))
            continue;
        const QFileInfo name(QString::fromUtf8(manifest.catalogue().relativePath(index)));
        progress.report(textFor("IDS_SAVING_CACHE_FILES_%1").arg(name.fileName()), -1, {});
        try {
            manifest.fetchDatabase(index, stopWhenAsked);
        } catch (const Error &error) {
            qWarning("%s", error.what());
        }
    }
}

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
    Report report;
    for (const DataClass dataClass : allDataClasses) {
        try {
            if (dataClass == DataClass::Files)
                continue; // listed without a count
            if (isMediaClass(dataClass))
                counts.records.insert(dataClass, countMedia(manifest, dataClass, report));
            else if (const auto count = records->has(dataClass) ? records->count(dataClass, report) : 0)
                counts.records.insert(dataClass, *count);
        } catch (const Error &error) {
            qWarning("%s could not be counted: %s", qPrintable(dataClassName(dataClass)), error.what());
        }
    }
}
} // namespace

QHash<QString, qint64> countsByName(const BackupCounts &counts)
{
    QHash<QString, qint64> names;
    for (auto count = counts.records.cbegin(); count != counts.records.cend(); ++count)
        names.insert(dataClassName(count.key()), count.value());
    names.insert(dataClassName(DataClass::Messages), counts.messages);
    return names;
}

BackupCounts countsOfNames(const QHash<QString, qint64> &names)
{
    BackupCounts counts;
    for (const DataClass dataClass : allDataClasses)
        counts.records.insert(dataClass, names.value(dataClassName(dataClass)));
    counts.messages = counts.records.take(DataClass::Messages);
    return counts;
}

BackupCounts loadBackup(OpenBackup &backup, Progress &progress)
{
    const BackupUse use(backup, progress);
    progress.report(textFor("IDS_LOADING_BACKUP"), -1, {});
    backup.manifest().buildIndex(progress);
    fetchDatabases(backup.manifest(), progress);
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
    const QStringList problems = problemsOf(m_backup->manifest().report());
    return problems.isEmpty() ? QString()
                              : textFor("IDS_OPENED_WITH_DAMAGE_%1").arg(problems.join(QStringLiteral(". ")));
}

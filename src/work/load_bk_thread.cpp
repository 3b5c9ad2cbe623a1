#include "work/load_bk_thread.h"

#include "base/error.h"
#include "base/report.h"
#include "base/texts.h"
#include "personal/personal_source.h"
#include "work/class_count.h"

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

void countAll(BackupManifest &manifest, BackupCounts &counts, Progress &progress)
{
    const auto records = openDeviceRecords(manifest, manifest.info().deviceId);
    for (const DataClass dataClass : allDataClasses) {
        if (dataClass == DataClass::Files)
            continue; // listed without a count
        progress.check();
        try {
            if (const auto count = countClass(manifest, *records, dataClass, counts.report))
                counts.known.insert(dataClass, *count);
        } catch (const Error &error) {
            counts.report.add({.kind = IssueKind::Damaged,
                               .what = "IDS_ISSUE_NOT_COUNTED",
                               .where = dataClassName(dataClass),
                               .reason = error.sentence()});
        }
    }
}

/// What the user is told at once; what the rules leave out is said where it would stand.
Report failuresOf(const Report &report)
{
    Report failures;
    for (const Issue &issue : report.issues())
        if (isFailure(issue.kind))
            failures.add(issue);
    return failures;
}
} // namespace

QHash<QString, qint64> countsByName(const BackupCounts &counts)
{
    QHash<QString, qint64> names;
    for (auto count = counts.known.cbegin(); count != counts.known.cend(); ++count)
        names.insert(dataClassName(count.key()), count.value());
    return names;
}

BackupCounts countsOfNames(const QHash<QString, qint64> &names)
{
    BackupCounts counts;
    for (const DataClass dataClass : allDataClasses)
        if (names.contains(dataClassName(dataClass)))
            counts.known.insert(dataClass, names.value(dataClassName(dataClass)));
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
    countAll(backup.manifest(), counts, progress);
    counts.report.merge(backup.manifest().report());
    progress.check();
    return counts;
}

LoadBkThread::LoadBkThread(OpenBackupPtr backup) : m_backup(std::move(backup)) {}

QString LoadBkThread::work(Progress &progress)
{
    m_counts = loadBackup(*m_backup, progress);
    const Report failures = failuresOf(m_counts.report);
    return failures.isEmpty() ? QString() : endText(textFor("IDS_OPENED_WITH_DAMAGE"), failures);
}

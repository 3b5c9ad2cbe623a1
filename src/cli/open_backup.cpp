#include "cli/open_backup.h"

#include "base/error.h"
#include "base/report.h"
#include "base/secret.h"
#include "cli/command.h"
#include "cli/password.h"

#include <QDir>

namespace {
void requireBackupFolder(const QString &folder)
{
    const QFileInfo info(folder);
    if (folder.isEmpty() || !info.exists())
        throw Error(
            QStringLiteral("%1: no such folder").arg(folder.isEmpty() ? QStringLiteral("\"\"") : folder));
    if (!info.isDir())
        throw Error(QStringLiteral("%1: not a folder").arg(folder));
    if (!isBackupFolder(folder))
        throw Error(
            QStringLiteral("%1: no backup (Manifest.plist with Manifest.db or Manifest.mbdb is missing)")
                .arg(folder));
}

void unlock(BackupManifest &backup, const QString &folder, const PasswordOption &password, PasswordNeed need,
            Progress &progress)
{
    std::optional<QString> text =
        need == PasswordNeed::Always ? password.givenOrAsked(folder) : password.given();
    if (!text && need == PasswordNeed::IfGiven)
        return;
    if (!text) {
        throw PasswordError(
            QStringLiteral("%1: the backup is encrypted; give its password with --password-file, in "
                           "QUILLBARROW_PASSWORD or on a terminal")
                .arg(folder));
    }
    const WipedAtEnd wiped(*text);
    if (!backup.openEncrypted(*text, progress))
        throw PasswordError(QStringLiteral("%1: Invalid password.").arg(folder));
}
} // namespace

Report reportOf(const BackupManifest *backup)
{
    return backup ? backup->report() : Report();
}

void readOrReportAbsent(Report &report, const std::function<void()> &read)
{
    try {
        read();
    } catch (const Error &error) {
        if (error.kind() != ErrorKind::NotFound || error.access() != FileAccess::None)
            throw;
        report.add({.kind = IssueKind::Absent, .what = "IDS_ISSUE_CLASS_ABSENT", .reason = error.sentence()});
    }
}

std::unique_ptr<BackupManifest> openDescribed(const QString &folder, const PasswordOption &password,
                                              PasswordNeed need, Progress &progress)
{
    requireBackupFolder(folder);
    auto backup = std::make_unique<BackupManifest>(QDir(folder).absolutePath());
    backup->loadInfo();
    progress.check();
    if (backup->info().encrypted)
        unlock(*backup, folder, password, need, progress);
    return backup;
}

std::unique_ptr<BackupManifest> openBackup(const QString &folder, const PasswordOption &password,
                                           Progress &progress)
{
    auto backup = openDescribed(folder, password, PasswordNeed::Always, progress);
    progress.check();
    backup->buildIndex(progress);
    return backup;
}

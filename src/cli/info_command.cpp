#include "cli/commands.h"

#include "backup/keybag.h"
#include "base/error.h"
#include "base/report.h"
#include "cli/arguments.h"
#include "cli/backup_report.h"
#include "cli/item_counts.h"
#include "cli/line_text.h"
#include "cli/open_backup.h"
#include "cli/password.h"

#include <CLI/CLI.hpp>

namespace {
QByteArray asJson(const BackupInfo &info, const std::optional<ItemCounts> &counts, const Report &report)
{
    QByteArray text;
    JsonWriter json(text);
    json.beginObject();
    writeBackupFields(json, info);
    json.key("counts");
    if (counts)
        writeCounts(json, *counts);
    else
        json.null();
    writeProblems(json, report);
    json.endObject();
    return text + '\n';
}

QByteArray asText(const BackupInfo &info, const std::optional<ItemCounts> &counts)
{
    QList<QStringList> rows{
        {QStringLiteral("Device:"), info.productType},
        {QStringLiteral("IOS Version:"), info.productVersion},
        {QStringLiteral("Serial:"), info.serialNumber},
        {QStringLiteral("Device ID:"), info.deviceId},
        {QStringLiteral("Backup Date:"), dateForPeople(info.backupDate)},
        {QStringLiteral("Status:"), statusForPeople(info)},
        {QStringLiteral("Path:"), info.folder},
    };
    for (const auto &[dataClass, count] : counts.value_or(ItemCounts())) {
        QString name = dataClassName(dataClass);
        name[0] = name[0].toUpper();
        rows << QStringList{name + QLatin1Char(':'),
                            count ? QString::number(*count) : QStringLiteral("unknown")};
    }
    return (oneLine(info.displayName) + QLatin1Char('\n') + plainTable({}, rows)).toUtf8();
}

/// Builds the index when the backup is unlocked, and counts. Nothing when it stays locked or cannot be read.
std::optional<ItemCounts> countsOf(BackupManifest &backup, Report &report, Progress &progress)
{
    try {
        if (!backup.isUnlocked()) {
            Keybag::parse(backup.info().keybag).requireWhole();
            return std::nullopt;
        }
        backup.buildIndex(progress);
    } catch (const Error &error) {
        report.add({.kind = IssueKind::Damaged, .what = "IDS_ISSUE_FAILURE", .count = 0, .reason = error.sentence()});
        return std::nullopt;
    }
    ItemCounts counts = countItems(backup, report);
    report.merge(reportOf(&backup));
    return counts;
}

ExitStatus info(const QString &folder, bool json, const PasswordOption &password, CommandContext &context)
{
    Report report;
    const auto backup = openDescribed(folder, password, PasswordNeed::IfGiven, context.progress);
    const std::optional<ItemCounts> counts = countsOf(*backup, report, context.progress);
    context.progress.check();
    context.out.write(json ? asJson(backup->info(), counts, report) : asText(backup->info(), counts));
    return context.reportProblems(report);
}
} // namespace

void addInfoCommand(CLI::App &app, Job &job)
{
    CLI::App &command = *app.add_subcommand("info", "Describe a backup and count what it holds");
    const CLI::Option *backup = addPositional(command, "BACKUP", "the backup's folder");
    const CLI::Option *json = addSwitch(command, "--json", "print a JSON object");
    const PasswordOption password(command);
    command.callback([&job, backup, json, password] {
        job.run = [folder = *valueOf(backup), asJson = isGiven(json), password](CommandContext &context) {
            return info(folder, asJson, password, context);
        };
    });
}

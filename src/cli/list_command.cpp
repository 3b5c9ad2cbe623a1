#include "cli/commands.h"

#include "base/error.h"
#include "cli/arguments.h"
#include "cli/backup_report.h"
#include "cli/line_text.h"

#include <CLI/CLI.hpp>
#include <QFileInfo>

#include <algorithm>

namespace {
/// A backup that cannot be read is an object with its path and the reason alone.
QByteArray asJson(const QList<BackupInfo> &backups, const Report &unreadable)
{
    QByteArray text;
    JsonWriter json(text);
    json.beginArray();
    for (const BackupInfo &info : backups) {
        json.beginObject();
        writeBackupFields(json, info);
        writeProblems(json, info.report);
        json.endObject();
    }
    for (const Issue &issue : unreadable.issues()) {
        Report own;
        own.add(issue);
        json.beginObject();
        json.field("path", issue.where);
        writeProblems(json, own);
        json.endObject();
    }
    json.endArray();
    return text + '\n';
}

QByteArray asTable(const QList<BackupInfo> &backups, const Report &unreadable)
{
    if (backups.isEmpty())
        return unreadable.isEmpty() ? "No backups found.\n" : "No backups found that can be read.\n";
    QList<QStringList> rows;
    for (const BackupInfo &info : backups) {
        rows << QStringList{info.displayName,      info.productType,
                            info.productVersion,   dateForPeople(info.backupDate),
                            statusForPeople(info), info.folder};
    }
    const QStringList headings{QStringLiteral("Name"),   QStringLiteral("Device"),
                               QStringLiteral("iOS"),    QStringLiteral("Backup date"),
                               QStringLiteral("Status"), QStringLiteral("Path")};
    return plainTable(headings, rows).toUtf8();
}

ExitStatus list(const QStringList &namedRoots, bool json, CommandContext &context)
{
    QStringList roots = namedRoots.isEmpty() ? backupRoots() : namedRoots;
    ExitStatus status = ExitStatus::Done;
    for (const QString &root : namedRoots) {
        if (QFileInfo(root).isDir())
            continue;
        roots.removeAll(root);
        if (roots.isEmpty())
            throw Error(QStringLiteral("%1: no such folder").arg(root));
        context.tell(QStringLiteral("%1: no such folder").arg(root));
        status = ExitStatus::Failed;
    }
    Report unreadable;
    const QList<BackupInfo> backups = listBackups(roots, unreadable);
    context.out.write(json ? asJson(backups, unreadable) : asTable(backups, unreadable));
    for (const BackupInfo &info : backups) {
        for (const QString &problem : problemsOf(info.report))
            context.tell(QStringLiteral("%1: %2").arg(info.folder, problem));
        if (info.report.isFailure())
            status = ExitStatus::Failed;
    }
    return std::max(status, context.reportProblems(unreadable));
}
} // namespace

void addListCommand(CLI::App &app, Job &job)
{
    CLI::App &command = *app.add_subcommand("list", "List the backups found");
    const CLI::Option *roots =
        addValues(command, "--root", "look in this folder instead of the usual places");
    const CLI::Option *json = addSwitch(command, "--json", "print a JSON array");
    command.callback([&job, roots, json] {
        job.run = [named = valuesOf(roots), asJson = isGiven(json)](CommandContext &context) {
            return list(named, asJson, context);
        };
    });
}

#include "cli/commands.h"

#include "base/error.h"
#include "cli/arguments.h"
#include "cli/backup_report.h"
#include "cli/line_text.h"

#include <CLI/CLI.hpp>
#include <QFileInfo>

namespace {
QByteArray asJson(const QList<BackupInfo> &backups)
{
    QByteArray text;
    JsonWriter json(text);
    json.beginArray();
    for (const BackupInfo &info : backups) {
        json.beginObject();
        writeBackupFields(json, info);
        json.endObject();
    }
    json.endArray();
    return text + '\n';
}

QByteArray asTable(const QList<BackupInfo> &backups)
{
    if (backups.isEmpty())
        return "No backups found.\n";
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
    const QList<BackupInfo> backups = listBackups(roots);
    context.out.write(json ? asJson(backups) : asTable(backups));
    return status;
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

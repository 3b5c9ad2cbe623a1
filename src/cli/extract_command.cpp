#include "cli/commands.h"

#include "backup/extract.h"
#include "cli/arguments.h"
#include "cli/extract_report.h"
#include "cli/open_backup.h"
#include "cli/password.h"

#include <CLI/CLI.hpp>
#include <QDir>

#include <algorithm>

namespace {
struct ExtractArguments
{
    const CLI::Option *backup;
    const CLI::Option *domain;
    const CLI::Option *paths;
    const CLI::Option *target;
};

struct ExtractJob
{
    QString backup;
    QList<ExtractRequest> requests;
    QString target;
};

ExitStatus extract(const ExtractJob &job, const PasswordOption &password, CommandContext &context)
{
    const auto backup = openBackup(job.backup, password, context.progress);
    const Report report =
        extractFiles(*backup, job.requests, QDir(job.target).absolutePath(), context.progress);
    const ExitStatus ofCatalogue = context.report(reportOf(backup.get()));
    return std::max(ofCatalogue, tellExtraction(report, context));
}

ExtractJob jobOf(const ExtractArguments &arguments)
{
    ExtractJob job{
        .backup = *valueOf(arguments.backup), .requests = {}, .target = *valueOf(arguments.target)};
    if (job.target.isEmpty())
        wrongUsage(QStringLiteral("-o: DIR is empty"));
    const QByteArray domain = valueOf(arguments.domain)->toUtf8();
    for (const QString &path : valuesOf(arguments.paths))
        job.requests.append({domain, pathOf(path)});
    return job;
}
} // namespace

void addExtractCommand(CLI::App &app, Job &job)
{
    CLI::App &command = *app.add_subcommand("extract", "Copy files and folders out of a backup, decrypted");
    const ExtractArguments arguments{
        .backup = addPositional(command, "BACKUP", "the backup's folder"),
        .domain = addPositional(command, "DOMAIN", "the domain of the files"),
        .paths = addPositionals(command, "PATH", "a file or folder of the domain; \"\" is all of it"),
        .target = addValue(command, "-o,--output", "the folder to extract into")->required(),
    };
    const PasswordOption password(command);
    command.callback([&job, arguments, password] {
        job.run = [request = jobOf(arguments), password](CommandContext &context) {
            return extract(request, password, context);
        };
    });
}

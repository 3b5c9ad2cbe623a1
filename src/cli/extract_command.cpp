#include "cli/commands.h"

#include "backup/extract.h"
#include "cli/arguments.h"
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

// An application may hold thousands of links, none of which anybody misses.
constexpr qsizetype mostSkippedLines = 20;

void tellNotes(const QList<ExtractNote> &notes, const QString &what, CommandContext &context)
{
    for (const ExtractNote &note : notes)
        context.tell(QStringLiteral("%1 %2: %3: %4").arg(note.domain, note.relativePath, what, note.reason));
}

void tellSkipped(const QList<ExtractNote> &notes, CommandContext &context)
{
    tellNotes(notes.first(std::min(mostSkippedLines, notes.size())), QStringLiteral("skipped"), context);
    if (notes.size() > mostSkippedLines)
        context.tell(QStringLiteral("and %1 more were skipped").arg(notes.size() - mostSkippedLines));
}

ExitStatus extract(const ExtractJob &job, const PasswordOption &password, CommandContext &context)
{
    const auto backup = openBackup(job.backup, password, PasswordNeed::Always, context.progress);
    const ExtractSummary summary =
        extractFiles(*backup, job.requests, QDir(job.target).absolutePath(), context.progress);
    tellNotes(summary.failed, QStringLiteral("failed"), context);
    tellSkipped(summary.skipped, context);
    tellNotes(summary.locked, QStringLiteral("copied as stored"), context);
    if (!summary.failed.isEmpty())
        return ExitStatus::Failed;
    context.tell(QStringLiteral("%1 files extracted, %2 were there already")
                     .arg(summary.copied)
                     .arg(summary.alreadyThere));
    return ExitStatus::Done;
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

#include "cli/extract_report.h"

#include "base/texts.h"

namespace {
// An application may hold thousands of links, none of which anybody misses.
constexpr qsizetype mostHarmlessLines = 20;

QString lineOf(const Issue &issue, const QString &verb)
{
    const QString line = QStringLiteral("%1: %2").arg(issue.where, verb);
    return issue.reason.isEmpty() ? line : QStringLiteral("%1: %2").arg(line, issue.reason);
}

QStringList linesOf(const Report &report, const char *what, const QString &verb)
{
    QStringList lines;
    for (const Issue &issue : report.issues())
        if (qstrcmp(issue.what, what) == 0)
            lines.append(lineOf(issue, verb));
    return lines;
}

void tellSome(const QStringList &lines, const QString &done, CommandContext &context)
{
    for (const QString &line : lines.first(std::min(mostHarmlessLines, lines.size())))
        context.tell(line);
    if (lines.size() > mostHarmlessLines)
        context.tell(QStringLiteral("and %1 more were %2").arg(lines.size() - mostHarmlessLines).arg(done));
}
} // namespace

ExitStatus tellExtraction(const Report &report, CommandContext &context)
{
    context.progress.clear();
    for (const QString &line : linesOf(report, fileFailed, QStringLiteral("failed")))
        context.tell(line);
    for (const QString &line : linesOf(report, fileLocked, QStringLiteral("copied as stored: the password does not unlock its class")))
        context.tell(line);
    for (const QString &line : linesOf(report, fileCutOff, QStringLiteral("incomplete in the backup")))
        context.tell(line);
    tellSome(linesOf(report, linkLeftOut, QStringLiteral("skipped: symbolic links are not made")),
             QStringLiteral("skipped"), context);
    tellSome(linesOf(report, fileRenamed, QStringLiteral("written as")), QStringLiteral("renamed"), context);
    tellSome(linesOf(report, fileReplaced, QStringLiteral("replaced a file that was there with other content")),
             QStringLiteral("replaced"), context);
    QString counts = textFor("IDS_FILES_EXTRACTED", report.done) + QStringLiteral(", ") +
                     textFor("IDS_WERE_THERE", report.count(filesThere));
    if (const qint64 failed = report.count(fileFailed); failed > 0)
        counts += QStringLiteral(", %1 failed").arg(failed);
    if (const qint64 locked = report.count(fileLocked); locked > 0)
        counts += QStringLiteral(", %1 still encrypted").arg(locked);
    if (const qint64 incomplete = report.count(fileCutOff); incomplete > 0)
        counts += QStringLiteral(", %1 incomplete").arg(incomplete);
    if (const qint64 replaced = report.count(fileReplaced); replaced > 0)
        counts += QStringLiteral(", %1 replaced").arg(replaced);
    context.tell(counts);
    return report.isFailure() ? ExitStatus::Failed : ExitStatus::Done;
}

#include "cli/extract_report.h"

#include <algorithm>

namespace {
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
} // namespace

ExitStatus tellExtraction(const ExtractSummary &summary, CommandContext &context)
{
    context.progress.clear();
    tellNotes(summary.failed, QStringLiteral("failed"), context);
    tellSkipped(summary.skipped, context);
    tellNotes(summary.locked, QStringLiteral("copied as stored"), context);
    QString counts = QStringLiteral("%1 files extracted, %2 were there already")
                         .arg(summary.copied)
                         .arg(summary.alreadyThere);
    if (!summary.failed.isEmpty())
        counts += QStringLiteral(", %1 failed").arg(summary.failed.size());
    context.tell(counts);
    return summary.failed.isEmpty() ? ExitStatus::Done : ExitStatus::Failed;
}

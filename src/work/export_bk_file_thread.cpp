#include "work/export_bk_file_thread.h"

#include "base/texts.h"
#include "work/summary_text.h"

namespace {
QStringList linesOf(const QList<ExtractNote> &notes)
{
    QStringList lines;
    for (const ExtractNote &note : notes)
        lines << (note.reason.isEmpty() ? note.relativePath
                                        : QStringLiteral("%1: %2").arg(note.relativePath, note.reason));
    return lines;
}
} // namespace

QString fileExportText(const ExtractSummary &summary)
{
    QString text = textFor("IDS_SUC_COPIED_%1_FILES").arg(summary.copied);
    if (summary.alreadyThere > 0)
        text += QStringLiteral("\n\n") + textFor("IDS_%1_FILES_ALREADY_THERE").arg(summary.alreadyThere);
    return text + listedProblems("IDS_FAILED_FILES_%1", linesOf(summary.failed)) +
           listedProblems("IDS_SKIPPED_FILES_%1", linesOf(summary.skipped)) +
           listedProblems("IDS_LOCKED_FILES_%1", linesOf(summary.locked));
}

ExportBKFileThread::ExportBKFileThread(OpenBackupPtr backup, std::vector<FileTree::Node> nodes,
                                       QString folder)
    : m_backup(std::move(backup)), m_nodes(std::move(nodes)), m_folder(std::move(folder))
{
}

QString ExportBKFileThread::work(Progress &progress)
{
    const BackupUse use(*m_backup, progress);
    return fileExportText(extractNodes(m_backup->manifest(), m_nodes, m_folder, progress));
}

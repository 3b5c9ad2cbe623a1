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

QString fileExportText(const ExtractSummary &summary, const char *successKey)
{
    QString text = textFor(successKey).arg(summary.copied);
    if (summary.alreadyThere > 0)
        text += QStringLiteral("\n\n") + textFor("IDS_%1_FILES_ALREADY_THERE").arg(summary.alreadyThere);
    return text + listedProblems("IDS_FAILED_FILES_%1", linesOf(summary.failed)) +
           listedProblems("IDS_SKIPPED_FILES_%1", linesOf(summary.skipped)) +
           listedProblems("IDS_LOCKED_FILES_%1", linesOf(summary.locked));
}

ExportBKFileThread::ExportBKFileThread(OpenBackupPtr backup, FileExport files, QString folder,
                                       const char *successKey)
    : m_backup(std::move(backup)),
      m_files(std::move(files)),
      m_folder(std::move(folder)),
      m_successKey(successKey)
{
}

QString ExportBKFileThread::work(Progress &progress)
{
    const BackupUse use(*m_backup, progress);
    BackupManifest &manifest = m_backup->manifest();
    const auto *nodes = std::get_if<std::vector<FileTree::Node>>(&m_files);
    const ExtractSummary summary =
        nodes ? extractNodes(manifest, *nodes, m_folder, progress)
              : extractNamed(manifest, std::get<QList<NamedExtract>>(m_files), m_folder, progress);
    return fileExportText(summary, m_successKey) + listedProblems("IDS_WITHOUT_FILE_%1", m_withoutFile);
}

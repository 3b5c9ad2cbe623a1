#include "work/export_bk_file_thread.h"

#include "base/texts.h"
#include "work/summary_text.h"

namespace {
QStringList linesOf(const Report &report, const char *what, const QString &separator = QStringLiteral(": "))
{
    QStringList lines;
    for (const Issue &issue : report.issues())
        if (qstrcmp(issue.what, what) == 0)
            lines << (issue.reason.isEmpty() ? issue.where : issue.where + separator + issue.reason);
    return lines;
}
} // namespace

QString fileExportText(const Report &report, const char *successKey)
{
    QString text = textFor(successKey).arg(report.done);
    if (const qint64 there = report.count(filesThere); there > 0)
        text += QStringLiteral("\n\n") + textFor(filesThere, there);
    return text + listedProblems("IDS_FAILED_FILES", linesOf(report, fileFailed)) +
           listedProblems("IDS_LOCKED_FILES", linesOf(report, fileLocked)) +
           listedProblems("IDS_INCOMPLETE_FILES", linesOf(report, fileCutOff)) +
           listedProblems("IDS_RENAMED_FILES", linesOf(report, fileRenamed, QStringLiteral(" → "))) +
           listedProblems("IDS_SKIPPED_FILES", linesOf(report, linkLeftOut));
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
    const ::Report report =
        nodes ? extractNodes(manifest, *nodes, m_folder, progress)
              : extractNamed(manifest, std::get<QList<NamedExtract>>(m_files), m_folder, progress);
    noteFailures(report);
    return fileExportText(report, m_successKey) + listedProblems("IDS_WITHOUT_FILE", m_withoutFile);
}

#pragma once

#include "backup/extract.h"
#include "work/open_backup.h"
#include "work/worker_thread.h"

#include <variant>

/// What is copied: places of the tree with all that lies below them, or single files under names of the
/// caller's.
using FileExport = std::variant<std::vector<FileTree::Node>, QList<NamedExtract>>;

/// How many files were copied (the text of `successKey`), followed by what was left out and why.
QString fileExportText(const Report &report, const char *successKey);

/// Copies files out of a backup.
class ExportBKFileThread : public WorkerThread
{
    Q_OBJECT

public:
    ExportBKFileThread(OpenBackupPtr backup, FileExport files, QString folder,
                       const char *successKey = "IDS_SUC_EXTRACTED_%1_FILES");
    /// A sentence for each thing that was chosen and has no file, told at the end.
    void setWithoutFile(QStringList sentences) { m_withoutFile = std::move(sentences); }

protected:
    QString work(Progress &progress) override;

private:
    OpenBackupPtr m_backup;
    FileExport m_files;
    QString m_folder;
    const char *m_successKey;
    QStringList m_withoutFile;
};

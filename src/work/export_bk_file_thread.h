#pragma once

#include "backup/extract.h"
#include "work/open_backup.h"
#include "work/worker_thread.h"

/// How many files were copied, followed by what was left out and why.
QString fileExportText(const ExtractSummary &summary);

/// Copies files and whole folders out of a backup.
class ExportBKFileThread : public WorkerThread
{
    Q_OBJECT

public:
    ExportBKFileThread(OpenBackupPtr backup, std::vector<FileTree::Node> nodes, QString folder);

protected:
    QString work(Progress &progress) override;

private:
    OpenBackupPtr m_backup;
    std::vector<FileTree::Node> m_nodes;
    QString m_folder;
};

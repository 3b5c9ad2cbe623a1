#pragma once

#include "work/file_order.h"
#include "work/worker_thread.h"

/// Finds the files and folders of a backup whose name holds a text, whatever the case.
class FindFilesThread : public WorkerThread
{
    Q_OBJECT

public:
    FindFilesThread(OpenBackupPtr backup, QString text, FileOrder order);

    /// To be read after success.
    const std::vector<FileTree::Node> &found() const { return m_found; }

protected:
    QString work(Progress &progress) override;

private:
    OpenBackupPtr m_backup;
    QString m_text;
    FileOrder m_order;
    std::vector<FileTree::Node> m_found;
};

#pragma once

#include "work/worker_thread.h"

/// Where sample backups made from the window lie; it need not exist.
QString sampleBackupsFolder();

/// Makes a sample backup to try the program with.
class MakeSampleThread : public WorkerThread
{
    Q_OBJECT

public:
    /// `folder` becomes the backup folder; it must not exist yet.
    explicit MakeSampleThread(QString folder);

protected:
    QString work(Progress &progress) override;

private:
    QString m_folder;
};

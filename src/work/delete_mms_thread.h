#pragma once

#include "work/worker_thread.h"

#include <vector>

/// Deletes messages of a local database. They go to its recycle store, from where undeleteMessages() brings
/// them back.
class DeleteMMSThread : public WorkerThread
{
    Q_OBJECT

public:
    /// `folder` is the local database's, `rowids` those of the messages in its store.
    DeleteMMSThread(QString folder, std::vector<qint64> rowids);

protected:
    QString work(Progress &progress) override;

private:
    QString m_folder;
    std::vector<qint64> m_rowids;
};

#pragma once

#include "work/worker_thread.h"

/// Makes sure that a file is a message database that can be read, and counts its messages.
class CountMessagesThread : public WorkerThread
{
    Q_OBJECT

public:
    /// What openMessageFile() takes.
    explicit CountMessagesThread(QString path);

    /// To be read after success.
    qint64 count() const { return m_count; }

protected:
    QString work(Progress &progress) override;

private:
    QString m_path;
    qint64 m_count = 0;
};

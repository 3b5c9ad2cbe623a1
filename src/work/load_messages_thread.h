#pragma once

#include "messages/abs_message_db.h"
#include "work/open_backup.h"
#include "work/worker_thread.h"

/// Reads all conversations and messages of a backup.
class LoadMessagesThread : public WorkerThread
{
    Q_OBJECT

public:
    explicit LoadMessagesThread(OpenBackupPtr backup);

    /// The loaded messages; to be taken once, after success. Null when the backup lists no message database.
    std::unique_ptr<AbsMessageDb> takeMessages() { return std::move(m_messages); }

protected:
    QString work(Progress &progress) override;

private:
    OpenBackupPtr m_backup;
    std::unique_ptr<AbsMessageDb> m_messages;
};

#pragma once

#include "work/open_backup.h"
#include "work/worker_thread.h"

/// Tries a password on an encrypted backup. Deriving the key takes seconds, or minutes.
class UnlockThread : public WorkerThread
{
    Q_OBJECT

public:
    UnlockThread(OpenBackupPtr backup, QString password);

    /// Whether the password was right; to be read after the end.
    bool isUnlocked() const { return m_unlocked; }

protected:
    QString work(Progress &progress) override;

private:
    OpenBackupPtr m_backup;
    QString m_password;
    bool m_unlocked = false;
};

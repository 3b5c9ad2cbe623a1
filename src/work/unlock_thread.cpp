#include "work/unlock_thread.h"

#include "base/secret.h"

UnlockThread::UnlockThread(OpenBackupPtr backup, QString password)
    : m_backup(std::move(backup)), m_password(std::move(password))
{
    m_password.detach(); // what shares it cannot be wiped
}

QString UnlockThread::work(Progress &progress)
{
    const BackupUse use(*m_backup, progress);
    m_unlocked = m_backup->manifest().openEncrypted(m_password, progress);
    wipe(m_password);
    return {};
}

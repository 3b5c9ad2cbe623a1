#include "work/unlock_thread.h"

UnlockThread::UnlockThread(OpenBackupPtr backup, QString password)
    : m_backup(std::move(backup)), m_password(std::move(password))
{
}

QString UnlockThread::work(Progress &progress)
{
    const BackupUse use(*m_backup, progress);
    m_unlocked = m_backup->manifest().openEncrypted(m_password, progress);
    m_password.fill(QChar(0));
    return {};
}

#include "work/open_backup.h"

namespace {
constexpr int turnPollMs = 50;
}

BackupUse::BackupUse(OpenBackup &backup, Progress &progress) : m_backup(backup)
{
    while (!backup.m_inUse.tryLock(turnPollMs))
        progress.check();
}

BackupUse::~BackupUse()
{
    m_backup.m_inUse.unlock();
}

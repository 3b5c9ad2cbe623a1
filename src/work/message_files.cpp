#include "work/message_files.h"

QString MessageFiles::owner() const
{
    return m_backup ? backupUid(m_backup->info().folder) : QStringLiteral("loose");
}

void MessageFiles::use(Progress &progress, const std::function<void(FileSource *)> &job) const
{
    if (!m_backup)
        return job(m_source.get());
    const BackupUse turn(*m_backup, progress);
    job(&m_backup->manifest());
}

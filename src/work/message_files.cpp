#include "work/message_files.h"

void MessageFiles::use(Progress &progress, const std::function<void(FileSource *)> &job) const
{
    if (!m_backup)
        return job(m_source.get());
    const BackupUse turn(*m_backup, progress);
    job(&m_backup->manifest());
}

#pragma once

#include "base/report.h"
#include "work/open_backup.h"
#include "work/worker_thread.h"

#include <QList>

/// Reads a list out of a backup.
template <typename Item>
class LoadItemsThread : public WorkerThread
{
public:
    using Reader = QList<Item> (*)(BackupManifest &backup, Report &report);

    LoadItemsThread(OpenBackupPtr backup, Reader reader) : m_backup(std::move(backup)), m_reader(reader) {}

    /// To be read after success.
    const QList<Item> &items() const { return m_items; }
    /// What could not be read, of the backup's catalogue too.
    const Report &report() const { return m_report; }

protected:
    QString work(Progress &progress) override
    {
        const BackupUse use(*m_backup, progress);
        m_items = m_reader(m_backup->manifest(), m_report);
        m_report.merge(m_backup->manifest().report());
        return {};
    }

private:
    OpenBackupPtr m_backup;
    Reader m_reader;
    QList<Item> m_items;
    Report m_report;
};

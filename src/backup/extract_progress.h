#pragma once

#include "base/progress.h"

#include <QElapsedTimer>

/// Tells a watcher which file is being copied and how far, about 20 times a second.
class ExtractProgress
{
public:
    ExtractProgress(Progress &progress, qint64 totalFiles);

    /// Call before a file; throws Cancelled when the user has asked to stop.
    void file(const QString &name);
    /// Call within a file; throws as file() does.
    void bytes(std::uint64_t total, std::uint64_t done);

private:
    Progress &m_progress;
    qint64 m_total;
    qint64 m_done = 0;
    QElapsedTimer m_sinceReport;

    bool isDue();
};

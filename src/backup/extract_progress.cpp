#include "backup/extract_progress.h"

#include "base/texts.h"

namespace {
constexpr qint64 reportIntervalMs = 50;
constexpr std::uint64_t bytesPerKilobyte = 1024;
} // namespace

ExtractProgress::ExtractProgress(Progress &progress, qint64 totalFiles)
    : m_progress(progress), m_total(totalFiles)
{
}

bool ExtractProgress::isDue()
{
    m_progress.check();
    if (m_sinceReport.isValid() && m_sinceReport.elapsed() < reportIntervalMs)
        return false;
    m_sinceReport.start();
    return true;
}

void ExtractProgress::file(const QString &name)
{
    ++m_done;
    if (!isDue() && m_done != m_total)
        return;
    m_progress.report(textFor("IDS_COPYING_FILE_%1").arg(name), static_cast<int>(m_done * 100 / m_total),
                      QStringLiteral("Files:%1/%2").arg(m_done).arg(m_total));
}

void ExtractProgress::bytes(std::uint64_t total, std::uint64_t done)
{
    if (isDue())
        m_progress.report(
            {}, -1,
            QStringLiteral("%L1KB / %L2KB").arg(done / bytesPerKilobyte).arg(total / bytesPerKilobyte));
}

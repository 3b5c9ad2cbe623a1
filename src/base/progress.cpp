#include "base/progress.h"

#include "base/error.h"

namespace {
constexpr qint64 reportIntervalMs = 50;
}

void Progress::check() const
{
    if (isCancelled())
        throw Cancelled();
}

CountedProgress::CountedProgress(Progress &progress, QString status, QString counter, qint64 total)
    : m_progress(progress), m_status(std::move(status)), m_counter(std::move(counter)), m_total(total)
{
}

void CountedProgress::item()
{
    m_progress.check();
    ++m_done;
    if (m_done != m_total && m_sinceReport.isValid() && m_sinceReport.elapsed() < reportIntervalMs)
        return;
    m_sinceReport.start();
    const int percent =
        m_total > 0 ? static_cast<int>(static_cast<double>(m_done) / static_cast<double>(m_total) * 100)
                    : 100;
    m_progress.report(m_status, percent,
                      m_counter.isEmpty() ? QString() : m_counter.arg(m_done).arg(m_total));
}

#include "cli/progress_bar.h"

#include "cli/line_text.h"
#include "cli/stop_signal.h"
#include "cli/terminal.h"

#include <algorithm>
#include <cstdio>

namespace {
constexpr int barCells = 24;
constexpr int textCells = 50; // a line of the usual 80 columns is never wrapped
} // namespace

ProgressBar::ProgressBar() : m_visible(errorStreamIsTerminal()) {}

ProgressBar::~ProgressBar()
{
    clear();
}

void ProgressBar::report(const QString &status, int percent, const QString &detail)
{
    if (!m_visible)
        return;
    if (!status.isEmpty())
        m_status = status;
    if (percent >= 0)
        m_percent = std::min(percent, 100);
    const int full = m_percent * barCells / 100;
    const QString text = oneLine(detail.isEmpty() ? m_status : detail).left(textCells);
    const QString bar = QString(full, QLatin1Char('#')) + QString(barCells - full, QLatin1Char('.'));
    std::fprintf(stderr, "\r\033[K%s",
                 qUtf8Printable(QStringLiteral("%1 %2% %3").arg(bar).arg(m_percent, 3).arg(text)));
    std::fflush(stderr);
    m_drawn = true;
}

bool ProgressBar::isCancelled() const
{
    return stopRequested();
}

void ProgressBar::clear()
{
    if (!m_drawn)
        return;
    std::fputs("\r\033[K", stderr);
    std::fflush(stderr);
    m_drawn = false;
}

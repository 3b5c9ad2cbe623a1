#pragma once

#include "base/progress.h"

/// A bar on standard error when that is a terminal, and nothing elsewhere. A stop signal is the user's
/// cancel.
class ProgressBar : public Progress
{
public:
    ProgressBar();
    ~ProgressBar() override;
    ProgressBar(const ProgressBar &) = delete;
    ProgressBar &operator=(const ProgressBar &) = delete;

    void report(const QString &status, int percent, const QString &detail) override;
    bool isCancelled() const override;
    /// Wipes the bar, so that other lines can be written.
    void clear();

private:
    bool m_visible;
    bool m_drawn = false;
    QString m_status;
    int m_percent = 0;
};

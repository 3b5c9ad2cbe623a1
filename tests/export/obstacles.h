#pragma once

#include "base/error.h"
#include "base/progress.h"

#include <QStringList>

#include <functional>

/// Stops after some questions whether to stop.
class StopAfter : public Progress
{
public:
    explicit StopAfter(int questions) : m_left(questions) {}
    void report(const QString &status, int percent, const QString &detail) override
    {
        reports += QStringLiteral("%1|%2|%3").arg(status).arg(percent).arg(detail);
    }
    bool isCancelled() const override { return m_left-- <= 0; }
    QStringList reports;

private:
    mutable int m_left;
};

inline QString failureOf(const std::function<void()> &work)
{
    try {
        work();
    } catch (const Error &error) {
        return error.sentence();
    }
    return {};
}

#pragma once

#include <QElapsedTimer>
#include <QString>

/// What a long job knows of whoever watches it. Jobs call report as often as they like and check() before
/// each item; the watcher decides what it shows.
class Progress
{
public:
    virtual ~Progress() = default;

    /// `percent` -1 leaves the bar as it is; an empty `status` leaves the title; an empty `detail` shows the
    /// percent.
    virtual void report(const QString &status, int percent, const QString &detail) = 0;
    /// True once the user has asked to stop. May be called from any thread.
    virtual bool isCancelled() const = 0;

    /// Throws Cancelled once the user has asked to stop.
    void check() const;
};

/// Nobody watches and nobody stops.
class NoProgress : public Progress
{
public:
    void report(const QString &, int, const QString &) override {}
    bool isCancelled() const override { return false; }
};

/// The progress of one counted job: builds the texts only about 20 times a second, so that a loop over
/// 500,000 items may call item() for each.
class CountedProgress
{
public:
    /// `counter` is a text with %1 for the number done and %2 for the total, such as "Messages: %1/%2"; empty
    /// for jobs that show a percent instead.
    CountedProgress(Progress &progress, QString status, QString counter, qint64 total);

    /// Call before the item is worked on; throws Cancelled when the user has asked to stop.
    void item();
    qint64 done() const { return m_done; }

private:
    Progress &m_progress;
    QString m_status;
    QString m_counter;
    qint64 m_total;
    qint64 m_done = 0;
    QElapsedTimer m_sinceReport;
};

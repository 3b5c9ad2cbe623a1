#pragma once

#include "base/progress.h"
#include "work/progress_link.h"

#include <QElapsedTimer>
#include <QMutex>
#include <QThread>

#include <memory>
#include <optional>

class Report;

/// A long job on a thread of its own. Sub-classes keep the inputs and bring work(), which calls a plain
/// function that can be used without a thread; run() is written once, here. The object lives in the thread
/// that made it, usually that of the window, and hands on to the watcher from there, at most about 20 reports
/// a second and always the newest. Runs once. Must not be destroyed while it runs: see letGo().
class WorkerThread : public QThread
{
    Q_OBJECT

public:
    explicit WorkerThread(QObject *parent = nullptr);
    ~WorkerThread() override;

    /// Who watches. Call before start().
    void setLink(const ProgressLink &link);

    /// Parts with a worker that nobody waits for any more: it is told to stop, nobody hears of it again, and
    /// it is destroyed once it has ended. Null is fine.
    static void letGo(std::unique_ptr<WorkerThread> worker);
    /// Waits until the workers that were let go have ended. False when some still run after `timeoutMs`.
    static bool waitForLetGo(int timeoutMs);

    /// While one of these lives, QThread::terminate() takes effect. Elsewhere it does not: a thread killed in
    /// the middle of a file or a database leaves locks behind that stop the whole program. For foreign calls
    /// that may never return.
    class Killable
    {
    public:
        Killable() { setTerminationEnabled(true); }
        ~Killable() { setTerminationEnabled(false); }
        Killable(const Killable &) = delete;
        Killable &operator=(const Killable &) = delete;
    };

protected:
    /// The job, on the worker's own thread. Gives the text for succeed(), which may be empty. What it has
    /// begun and not finished it takes back itself when an exception passes.
    virtual QString work(Progress &progress) = 0;

    /// The text for succeed(): what was done, and below it the sentences of the report. One with failures is
    /// shown as a warning.
    QString endText(const QString &done, const Report &report);

    /// For a job that makes its text elsewhere: with failures in the report its success is shown as a
    /// warning.
    void noteFailures(const Report &report);

    /// Shows `info` and returns once the user has closed it. Throws Cancelled.
    void tipsWait(const QString &info);

private:
    class Reporter;
    struct Shown
    {
        QString status;
        int percent = -1;
        QString detail;
    };

    void run() final;
    void send(const char *slot, const QString &text);
    void runJobBody();
    void onEnded();
    void post(const QString &status, int percent, const QString &detail);
    void deliver();
    void flush();
    void call(const char *slot, const QString &text);

    ProgressLink m_link;
    QMutex m_mutex; // guards the two below
    std::optional<Shown> m_latest;
    bool m_deliveryDue = false;
    QElapsedTimer m_sinceDelivery;
    bool m_ended = false; // known to the window's thread
};

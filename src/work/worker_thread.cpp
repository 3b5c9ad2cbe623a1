#include "work/worker_thread.h"

#include "base/error.h"
#include "base/report.h"
#include "base/texts.h"
#include "sqlite/foreign_guard.h"
#include "work/summary_text.h"

#include <QDeadlineTimer>
#include <QTimer>

#include <vector>

namespace {
constexpr int deliveryIntervalMs = 50;
constexpr int tipPollMs = 20;

// Used by the window's thread alone.
std::vector<WorkerThread *> &goneWorkers()
{
    static std::vector<WorkerThread *> workers;
    return workers;
}
} // namespace

class WorkerThread::Reporter : public Progress
{
public:
    explicit Reporter(WorkerThread &worker) : m_worker(worker) {}

    void report(const QString &status, int percent, const QString &detail) override
    {
        m_worker.post(status, percent, detail);
    }
    bool isCancelled() const override { return m_worker.m_link.cancelled->load(std::memory_order_relaxed); }

private:
    WorkerThread &m_worker;
};

WorkerThread::WorkerThread(QObject *parent) : QThread(parent) {}

WorkerThread::~WorkerThread() = default;

void WorkerThread::setLink(const ProgressLink &link)
{
    m_link = link;
}

void WorkerThread::letGo(std::unique_ptr<WorkerThread> worker)
{
    if (!worker)
        return;
    *worker->m_link.cancelled = true;
    worker->m_link.receiver = nullptr;
    worker->setParent(nullptr);
    if (worker->m_ended || !worker->isRunning())
        worker->wait();
    else
        goneWorkers().push_back(worker.release());
}

bool WorkerThread::waitForLetGo(int timeoutMs)
{
    const QDeadlineTimer deadline(timeoutMs);
    while (!goneWorkers().empty()) {
        WorkerThread *worker = goneWorkers().back();
        if (!worker->wait(deadline))
            return false;
        goneWorkers().pop_back();
        delete worker;
    }
    return true;
}

void WorkerThread::run()
{
    setTerminationEnabled(false);
    runJobBody();
    QMetaObject::invokeMethod(this, &WorkerThread::onEnded, Qt::QueuedConnection);
}

void WorkerThread::onEnded()
{
    m_ended = true;
    if (std::erase(goneWorkers(), this) > 0) {
        wait();
        deleteLater();
    }
}

void WorkerThread::runJobBody()
{
    Reporter reporter(*this);
    const StatementStop stop(reporter);
    try {
        const QString text = work(reporter);
        send("succeed", text);
    } catch (const Cancelled &) {
        // The user knows; nothing to say.
    } catch (const Error &error) {
        send("errorOccurred", error.sentence());
    } catch (const std::bad_alloc &) {
        send("errorOccurred", textFor("IDS_OUT_OF_MEMORY"));
    } catch (const std::exception &error) {
        send("errorOccurred", QString::fromUtf8(error.what()));
    }
}

void WorkerThread::send(const char *slot, const QString &text)
{
    QMetaObject::invokeMethod(
        this,
        [this, slot, text] {
            flush();
            call(slot, text);
        },
        Qt::QueuedConnection);
}

// One delivery at a time is under way, however often the job reports: a queued call for each report would
// keep the window busy long after the job has ended.
void WorkerThread::post(const QString &status, int percent, const QString &detail)
{
    const QMutexLocker lock(&m_mutex);
    Shown step{status, percent, detail};
    if (m_latest) {
        if (status.isEmpty())
            step.status = m_latest->status;
        if (percent < 0)
            step.percent = m_latest->percent;
    }
    m_latest = step;
    if (m_deliveryDue)
        return;
    m_deliveryDue = true;
    QMetaObject::invokeMethod(this, &WorkerThread::deliver, Qt::QueuedConnection);
}

void WorkerThread::deliver()
{
    const qint64 elapsed = m_sinceDelivery.isValid() ? m_sinceDelivery.elapsed() : deliveryIntervalMs;
    if (elapsed < deliveryIntervalMs)
        QTimer::singleShot(deliveryIntervalMs - static_cast<int>(elapsed), this, &WorkerThread::flush);
    else
        flush();
}

void WorkerThread::flush()
{
    std::optional<Shown> step;
    {
        const QMutexLocker lock(&m_mutex);
        step.swap(m_latest);
        m_deliveryDue = false;
    }
    if (!step || !m_link.receiver)
        return;
    m_sinceDelivery.start();
    QMetaObject::invokeMethod(m_link.receiver, "updateProgress", Q_ARG(QString, step->status),
                              Q_ARG(int, step->percent), Q_ARG(QString, step->detail));
}

void WorkerThread::call(const char *slot, const QString &text)
{
    if (m_link.receiver)
        QMetaObject::invokeMethod(m_link.receiver, slot, Q_ARG(QString, text));
}

void WorkerThread::noteFailures(const Report &report)
{
    if (report.isFailure())
        *m_link.withFailures = true;
}

QString WorkerThread::endText(const QString &done, const Report &report)
{
    noteFailures(report);
    return done + reportText(report);
}

void WorkerThread::tipsWait(const QString &info)
{
    *m_link.tipPending = true;
    send("tipsWait", info);
    while (*m_link.tipPending) {
        if (*m_link.cancelled)
            throw Cancelled();
        msleep(tipPollMs);
    }
}

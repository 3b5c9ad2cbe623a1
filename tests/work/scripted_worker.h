#pragma once

#include "work/worker_thread.h"

#include <QSemaphore>

#include <functional>

/// A worker whose job is a function of the test.
class ScriptedWorker : public WorkerThread
{
    Q_OBJECT

public:
    using Job = std::function<QString(Progress &, ScriptedWorker &)>;
    explicit ScriptedWorker(Job job) : m_job(std::move(job)) {}

    using WorkerThread::endText;
    using WorkerThread::tipsWait;

protected:
    QString work(Progress &progress) override { return m_job(progress, *this); }

private:
    Job m_job;
};

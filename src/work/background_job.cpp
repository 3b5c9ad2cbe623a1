#include "work/background_job.h"

BackgroundJob::BackgroundJob(std::unique_ptr<WorkerThread> worker, QObject *parent)
    : QObject(parent), m_worker(std::move(worker))
{
    m_link.receiver = this;
    m_worker->setLink(m_link);
}

BackgroundJob::~BackgroundJob()
{
    WorkerThread::letGo(std::move(m_worker));
}

void BackgroundJob::start()
{
    m_running = true;
    m_worker->start(QThread::InheritPriority);
}

void BackgroundJob::updateProgress(QString status, int percent, QString detail)
{
    emit progressed(status, percent, detail);
}

void BackgroundJob::errorOccurred(QString text)
{
    m_running = false;
    emit failed(text);
}

void BackgroundJob::succeed(QString text)
{
    m_running = false;
    m_worker->wait();
    emit succeeded(text);
}

// Nobody looks at a background job, so there is nobody whose reading could be waited for.
void BackgroundJob::tipsWait(QString text)
{
    emit progressed(text, -1, {});
    *m_link.tipPending = false;
}

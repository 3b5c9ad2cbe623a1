#include "work/run_job.h"

#include "work/progress_form.h"

bool awaitWorker(QThread &worker, const std::atomic<bool> &cancelled, int stepMs)
{
    const auto step = static_cast<unsigned long>(stepMs);
    while (!worker.wait(step)) {
        if (!cancelled)
            continue;
        worker.terminate();
        return worker.wait(step);
    }
    return true;
}

bool runJob(const QString &title, std::unique_ptr<WorkerThread> &worker, QWidget *parent,
            const QString &resultToOpen)
{
    ProgressForm form(title, parent);
    form.setResultToOpen(resultToOpen);
    worker->setLink(form.link());
    worker->start(QThread::InheritPriority);
    const bool succeeded = form.exec() == 1;
    if (!awaitWorker(*worker, *form.link().cancelled))
        WorkerThread::letGo(std::move(worker));
    return succeeded;
}

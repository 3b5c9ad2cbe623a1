#pragma once

#include "work/worker_thread.h"

#include <QString>

class QWidget;

/// Runs a worker under a modal ProgressForm titled `title`, which may be empty. `resultToOpen` is what the
/// box at the end offers to open. True when the job succeeded. Otherwise `worker` may be empty: one that was
/// cancelled and goes on all the same is let go. Window thread only.
bool runJob(const QString &title, std::unique_ptr<WorkerThread> &worker, QWidget *parent,
            const QString &resultToOpen = {});

/// The same for a worker whose results are read afterwards.
template <typename Worker>
bool runJob(const QString &title, std::unique_ptr<Worker> &worker, QWidget *parent,
            const QString &resultToOpen = {})
{
    Worker *typed = worker.get();
    std::unique_ptr<WorkerThread> base = std::move(worker);
    const bool done = runJob(title, base, parent, resultToOpen);
    if (base) {
        static_cast<void>(base.release());
        worker.reset(typed);
    }
    return done;
}

/// Waits for a started worker: `stepMs` at first, then without limit unless `cancelled` is set; a cancelled
/// one is terminated, as far as it allows that, and given another `stepMs`. False when it still runs.
bool awaitWorker(QThread &worker, const std::atomic<bool> &cancelled, int stepMs = 1000);

#pragma once

#include "work/thumbnail_maker.h"
#include "work/thumbnail_queue.h"
#include "work/worker_thread.h"

/// Makes the thumbnails that a queue wants and ends when it wants no more. Each report means that there are
/// new ones to take.
class LoadThumbnailThread : public WorkerThread
{
    Q_OBJECT

public:
    LoadThumbnailThread(std::shared_ptr<ThumbnailMaker> maker, std::shared_ptr<ThumbnailQueue> queue);

protected:
    QString work(Progress &progress) override;

private:
    std::shared_ptr<ThumbnailMaker> m_maker;
    std::shared_ptr<ThumbnailQueue> m_queue;
};

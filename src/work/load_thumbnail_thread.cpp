#include "work/load_thumbnail_thread.h"

LoadThumbnailThread::LoadThumbnailThread(std::shared_ptr<ThumbnailMaker> maker,
                                         std::shared_ptr<ThumbnailQueue> queue)
    : m_maker(std::move(maker)), m_queue(std::move(queue))
{
}

QString LoadThumbnailThread::work(Progress &progress)
{
    while (const auto wanted = m_queue->next()) {
        progress.check();
        m_queue->put({wanted->item, wanted->side, m_maker->make(wanted->item, wanted->side, progress)});
        progress.report({}, -1, {});
    }
    return {};
}

#include "work/thumbnail_queue.h"

#include <algorithm>

void ThumbnailQueue::want(std::vector<Wanted> items)
{
    std::reverse(items.begin(), items.end());
    const QMutexLocker lock(&m_mutex);
    m_wanted.swap(items);
}

bool ThumbnailQueue::isEmpty() const
{
    const QMutexLocker lock(&m_mutex);
    return m_wanted.empty();
}

std::optional<ThumbnailQueue::Wanted> ThumbnailQueue::next()
{
    const QMutexLocker lock(&m_mutex);
    if (m_wanted.empty())
        return std::nullopt;
    const Wanted first = m_wanted.back();
    m_wanted.pop_back();
    return first;
}

void ThumbnailQueue::put(Made made)
{
    const QMutexLocker lock(&m_mutex);
    m_made.push_back(std::move(made));
}

std::vector<ThumbnailQueue::Made> ThumbnailQueue::takeMade()
{
    const QMutexLocker lock(&m_mutex);
    return std::exchange(m_made, {});
}

#include "backup/background_writer.h"

namespace {
constexpr std::size_t slotCount = 4;
}

BackgroundWriter::BackgroundWriter(Write write, std::uint64_t blockSize, Threads threads)
    : m_write(std::move(write)), m_slots(threads == Threads::Two ? slotCount : 1)
{
    for (Slot &slot : m_slots)
        slot.block.resize(blockSize);
    if (threads == Threads::Two)
        m_thread = std::thread([this] { run(); });
}

BackgroundWriter::~BackgroundWriter()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_changed.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

/// Waits for the writer; throws what stopped it.
void BackgroundWriter::waitUntil(const std::function<bool()> &ready)
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_failure || ready(); });
    if (m_failure)
        std::rethrow_exception(m_failure);
}

BackgroundWriter::Block &BackgroundWriter::nextBlock()
{
    waitUntil([this] { return m_submitted - m_written < m_slots.size(); });
    return slot(m_submitted).block;
}

void BackgroundWriter::submit(std::uint64_t size)
{
    if (!m_thread.joinable()) {
        m_write(slot(0).block.data(), size);
        return;
    }
    {
        const std::lock_guard lock(m_mutex);
        slot(m_submitted).size = size;
        ++m_submitted;
    }
    m_changed.notify_all();
}

void BackgroundWriter::finish()
{
    waitUntil([this] { return m_submitted == m_written; });
}

void BackgroundWriter::run()
{
    for (;;) {
        {
            std::unique_lock lock(m_mutex);
            m_changed.wait(lock, [this] { return m_stop || m_written < m_submitted; });
            if (m_stop)
                return;
        }
        Slot &next = slot(m_written);
        std::exception_ptr failure;
        try {
            m_write(next.block.data(), next.size);
        } catch (...) {
            failure = std::current_exception();
        }
        {
            const std::lock_guard lock(m_mutex);
            m_failure = failure;
            ++m_written;
        }
        m_changed.notify_all();
        if (failure)
            return;
    }
}

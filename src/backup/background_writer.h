#pragma once

#include <condition_variable>
#include <cstdint>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

/// Writes blocks in order while the caller prepares the next one: deciphering and writing cost about the
/// same, so two cores halve the time of a large file. Memory is a few blocks. With Threads::One the caller's
/// own thread writes, which is quicker for what fits a block or two.
///
/// Used by one thread: fill nextBlock(), hand it over with submit(), end with finish(). What `write` throws
/// comes out of one of these. The destructor drops what has not been written.
class BackgroundWriter
{
public:
    using Block = std::vector<std::uint8_t>;
    using Write = std::function<void(const std::uint8_t *bytes, std::uint64_t size)>;
    enum class Threads { One, Two };

    BackgroundWriter(Write write, std::uint64_t blockSize, Threads threads);
    ~BackgroundWriter();
    BackgroundWriter(const BackgroundWriter &) = delete;
    BackgroundWriter &operator=(const BackgroundWriter &) = delete;

    /// A block of the full size that nobody else uses; waits for one.
    Block &nextBlock();
    /// Hands over the first `size` bytes of that block.
    void submit(std::uint64_t size);
    /// Waits until everything is written.
    void finish();

private:
    struct Slot
    {
        Block block;
        std::uint64_t size = 0;
    };

    Write m_write;
    std::vector<Slot> m_slots; // a ring: [m_written, m_submitted) wait for the writer
    std::uint64_t m_submitted = 0;
    std::uint64_t m_written = 0;
    bool m_stop = false;
    std::exception_ptr m_failure;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::thread m_thread;

    Slot &slot(std::uint64_t number) { return m_slots[number % m_slots.size()]; }
    void run();
    void waitUntil(const std::function<bool()> &ready);
};

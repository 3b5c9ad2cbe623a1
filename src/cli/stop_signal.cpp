#include "cli/stop_signal.h"

#include "cli/terminal.h"

#include <atomic>
#include <csignal>

namespace {
std::atomic<bool> stopFlag = false;
static_assert(std::atomic<bool>::is_always_lock_free, "the handler of a signal must not wait");
} // namespace

void installStopSignals()
{
    prepareStandardStreams();
    onStopSignals([](int signalNumber) {
        stopFlag = true;
        std::signal(signalNumber, SIG_DFL);
    });
}

bool stopRequested()
{
    return stopFlag;
}

void endAtOnceOnStop()
{
    onStopSignals(SIG_DFL);
}

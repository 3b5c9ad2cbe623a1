#include "app/end_signals.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <array>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace {
constexpr int endNumbers[] = {SIGINT, SIGTERM, SIGHUP};
constexpr int firstEndStatus = 128; // what a shell says of a process that a signal ended

// A handler may do next to nothing: it writes the signal's number, and the event loop reads it.
std::array<int, 2> pipeEnds = {-1, -1};

void passOn(int number)
{
    std::signal(number, SIG_DFL);
    const char byte = static_cast<char>(number);
    [[maybe_unused]] const ssize_t written = write(pipeEnds[1], &byte, 1);
}

void handleWith(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int number : endNumbers)
        sigaction(number, &action, nullptr);
}
} // namespace

EndSignals::EndSignals()
{
    if (pipe2(pipeEnds.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &EndSignals::end);
    handleWith(passOn);
}

EndSignals::~EndSignals()
{
    if (!m_notifier)
        return;
    handleWith(SIG_DFL);
    m_notifier.reset();
    for (int &end : pipeEnds)
        close(std::exchange(end, -1));
}

void EndSignals::end()
{
    char number = 0;
    if (read(pipeEnds[0], &number, 1) != 1)
        return;
    m_isEnding = true;
    QCoreApplication::exit(firstEndStatus + number);
}

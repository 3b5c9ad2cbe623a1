#include "cli/terminal.h"

#include "base/error.h"
#include "base/secret.h"
#include "cli/stop_signal.h"

#include <QByteArray>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

namespace {
constexpr int stopNumbers[] = {SIGINT, SIGTERM, SIGHUP};

/// Typed characters stay invisible while this lives.
class EchoOff
{
public:
    EchoOff()
    {
        m_changed = tcgetattr(STDIN_FILENO, &m_before) == 0;
        if (!m_changed)
            return;
        termios quiet = m_before;
        quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        quiet.c_lflag |= ECHONL;
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &quiet);
    }
    ~EchoOff()
    {
        if (m_changed)
            tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_before);
    }
    EchoOff(const EchoOff &) = delete;
    EchoOff &operator=(const EchoOff &) = delete;

private:
    termios m_before{};
    bool m_changed = false;
};

sigset_t stopSignals()
{
    sigset_t stops;
    sigemptyset(&stops);
    for (const int number : stopNumbers)
        sigaddset(&stops, number);
    return stops;
}

/// Waits until a stream can be used, or a stop comes. A stop just before a blocking call would go unnoticed,
/// so the signals are let in only while this waits.
void waitFor(int stream, short events)
{
    const sigset_t held = stopSignals();
    sigset_t before;
    pthread_sigmask(SIG_BLOCK, &held, &before);
    pollfd waited{.fd = stream, .events = events, .revents = 0};
    while (!stopRequested() && ppoll(&waited, 1, nullptr, &before) < 0 && errno == EINTR) {
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

/// What a write takes without blocking once the stream has room.
qsizetype bytesAtOnce(qsizetype size)
{
    static const bool isFile = [] {
        struct stat status = {};
        return fstat(STDOUT_FILENO, &status) == 0 && S_ISREG(status.st_mode);
    }();
    return isFile ? size : std::min<qsizetype>(size, PIPE_BUF);
}
} // namespace

std::optional<QStringList> commandLineArguments(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        arguments << QString::fromLocal8Bit(argv[i]);
        if (arguments.last().toLocal8Bit() != argv[i])
            return std::nullopt;
    }
    return arguments;
}

void prepareStandardStreams()
{
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        if (fcntl(stream, F_GETFD) != -1)
            continue;
        // The lowest free number is given out: a closed output becomes one that cannot be written.
        const int flags = stream == STDERR_FILENO ? O_WRONLY : O_RDONLY;
        if (open("/dev/null", flags) != stream)
            return;
    }
}

void onStopSignals(void (*handler)(int))
{
    struct sigaction stop = {};
    stop.sa_handler = handler;
    sigemptyset(&stop.sa_mask);
    for (const int number : stopNumbers)
        sigaction(number, &stop, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
}

bool errorStreamIsTerminal()
{
    return isatty(STDERR_FILENO) == 1;
}

qint64 writeSome(QByteArrayView bytes)
{
    waitFor(STDOUT_FILENO, POLLOUT);
    if (stopRequested())
        return 0;
    return write(STDOUT_FILENO, bytes.data(), static_cast<std::size_t>(bytesAtOnce(bytes.size())));
}

std::optional<QString> askHidden(const QString &prompt)
{
    if (isatty(STDIN_FILENO) != 1)
        return std::nullopt;
    const EchoOff hidden;
    std::fprintf(stderr, "%s ", qUtf8Printable(prompt));
    std::fflush(stderr);
    QByteArray line;
    const WipedAtEnd wiped(line);
    char letter = 0;
    while (true) {
        waitFor(STDIN_FILENO, POLLIN);
        if (stopRequested())
            throw Cancelled();
        const ssize_t got = read(STDIN_FILENO, &letter, 1);
        if (got <= 0)
            return line.isEmpty() ? std::nullopt : std::optional(QString::fromUtf8(line));
        if (letter == '\n')
            return QString::fromUtf8(line);
        line.append(letter);
    }
}

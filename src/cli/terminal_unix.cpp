#include "cli/terminal.h"

#include "base/error.h"
#include "cli/stop_signal.h"

#include <QByteArray>

#include <csignal>
#include <cstdio>

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

namespace {
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
} // namespace

QStringList commandLineArguments(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
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
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        sigaction(number, &stop, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
}

bool errorStreamIsTerminal()
{
    return isatty(STDERR_FILENO) == 1;
}

qint64 writeSome(QByteArrayView bytes)
{
    return write(STDOUT_FILENO, bytes.data(), static_cast<std::size_t>(bytes.size()));
}

std::optional<QString> askHidden(const QString &prompt)
{
    if (isatty(STDIN_FILENO) != 1)
        return std::nullopt;
    const EchoOff hidden;
    std::fprintf(stderr, "%s ", qUtf8Printable(prompt));
    std::fflush(stderr);
    QByteArray line;
    char letter = 0;
    while (true) {
        const ssize_t got = read(STDIN_FILENO, &letter, 1);
        if (stopRequested())
            throw Cancelled();
        if (got <= 0)
            return line.isEmpty() ? std::nullopt : std::optional(QString::fromUtf8(line));
        if (letter == '\n')
            return QString::fromUtf8(line);
        line.append(letter);
    }
}

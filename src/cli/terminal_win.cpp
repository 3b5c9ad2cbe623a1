#include "cli/terminal.h"

#include "base/error.h"
#include "cli/stop_signal.h"

#include <csignal>
#include <cstdio>

#include <fcntl.h>
#include <io.h>

// shellapi.h needs what windows.h declares.
#include <windows.h>

#include <shellapi.h>

std::optional<QStringList> commandLineArguments(int, char **)
{
    QStringList arguments;
    int count = 0;
    wchar_t **wide = CommandLineToArgvW(GetCommandLineW(), &count);
    for (int i = 1; i < count; ++i)
        arguments << QString::fromWCharArray(wide[i]);
    LocalFree(wide);
    return arguments;
}

void prepareStandardStreams()
{
    _setmode(_fileno(stdout), _O_BINARY);
}

void onStopSignals(void (*handler)(int))
{
    std::signal(SIGINT, handler);
    std::signal(SIGTERM, handler);
}

bool errorStreamIsTerminal()
{
    return _isatty(_fileno(stderr)) != 0;
}

qint64 writeSome(QByteArrayView bytes)
{
    return _write(_fileno(stdout), bytes.data(), static_cast<unsigned>(bytes.size()));
}

std::optional<QString> askHidden(const QString &prompt)
{
    const HANDLE console = GetStdHandle(STD_INPUT_HANDLE);
    DWORD before = 0;
    if (GetConsoleMode(console, &before) == 0)
        return std::nullopt;
    SetConsoleMode(console,
                   (before | ENABLE_LINE_INPUT | ENABLE_PROCESSED_INPUT) & ~DWORD(ENABLE_ECHO_INPUT));
    std::fprintf(stderr, "%s ", qUtf8Printable(prompt));
    wchar_t line[1024];
    DWORD length = 0;
    const BOOL read = ReadConsoleW(console, line, 1024, &length, nullptr);
    SetConsoleMode(console, before);
    std::fprintf(stderr, "\n");
    if (stopRequested())
        throw Cancelled();
    if (read == 0 || length == 0)
        return std::nullopt;
    QString password = QString::fromWCharArray(line, static_cast<int>(length));
    while (password.endsWith(QLatin1Char('\n')) || password.endsWith(QLatin1Char('\r')))
        password.chop(1);
    return password;
}

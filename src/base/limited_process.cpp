#include "base/limited_process.h"

#include <QElapsedTimer>
#include <QProcess>

#ifdef Q_OS_UNIX
#include <sys/resource.h>
#endif

namespace {
constexpr int pollMs = 50;
constexpr int msPerSecond = 1000;

#ifdef Q_OS_UNIX
/// The sanitizer keeps its notes in an address space of terabytes.
constexpr bool canLimitMemory()
{
#if defined(__SANITIZE_ADDRESS__)
    return false;
#elif defined(__has_feature)
    return !__has_feature(address_sanitizer);
#else
    return true;
#endif
}

/// Runs in the new process before the program does.
void limitThisProcess(quint64 memoryBytes, rlim_t cpuSeconds)
{
    const auto limit = [](auto what, rlim_t value) {
        const rlimit both{value, value};
        setrlimit(what, &both);
    };
    if (canLimitMemory())
        limit(RLIMIT_AS, memoryBytes);
    limit(RLIMIT_CPU, cpuSeconds);
    limit(RLIMIT_CORE, 0); // it would hold the picture
}
#endif

/// Kills the program when it is still running at the end.
class Killed : public QProcess
{
public:
    ~Killed() override
    {
        if (state() != NotRunning) {
            kill();
            waitForFinished(-1);
        }
    }
};
} // namespace

std::optional<QByteArray> outputOf(const LimitedProcess &limited, const Progress *progress)
{
    Killed process;
#ifdef Q_OS_UNIX
    const auto cpuSeconds = static_cast<rlim_t>(limited.longestMs / msPerSecond + 1);
    process.setChildProcessModifier(
        [bytes = limited.mostMemoryBytes, cpuSeconds] { limitThisProcess(bytes, cpuSeconds); });
#endif
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(limited.program, limited.arguments);
    process.write(limited.input);
    process.closeWriteChannel();
    QElapsedTimer elapsed;
    elapsed.start();
    while (!process.waitForFinished(pollMs)) {
        if (progress)
            progress->check();
        if (process.state() == QProcess::NotRunning || elapsed.elapsed() > limited.longestMs ||
            process.bytesAvailable() > limited.mostOutputBytes)
            return std::nullopt;
    }
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return std::nullopt;
    return process.readAllStandardOutput();
}

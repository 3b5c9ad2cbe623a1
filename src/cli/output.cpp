#include "cli/output.h"

#include "base/error.h"
#include "cli/stop_signal.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {
constexpr qsizetype bufferBytes = 128 * 1024;

[[noreturn]] void throwWriteError(int code)
{
    if (code == EINTR && stopRequested())
        throw Cancelled();
    throw Error(
        QStringLiteral("can not write standard output. %1").arg(QString::fromLocal8Bit(std::strerror(code))));
}
} // namespace

Output::Output()
{
    m_pending.reserve(bufferBytes + 4096);
}

void Output::write(QByteArrayView bytes)
{
    m_pending.append(bytes);
    if (m_pending.size() >= bufferBytes)
        flushPending();
}

void Output::finish()
{
    flushPending();
    errno = 0;
    if (std::fflush(stdout) != 0)
        throwWriteError(errno);
}

void Output::flushPending()
{
    errno = 0;
    const std::size_t size = static_cast<std::size_t>(m_pending.size());
    if (std::fwrite(m_pending.constData(), 1, size, stdout) != size)
        throwWriteError(errno);
    m_pending.resize(0);
}

#include "cli/output.h"

#include "base/error.h"
#include "cli/stop_signal.h"
#include "cli/terminal.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace {
constexpr qsizetype bufferBytes = 128 * 1024;

[[noreturn]] void throwWriteError(int code)
{
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
        finish();
}

void Output::finish()
{
    QByteArrayView rest = m_pending;
    while (!rest.isEmpty()) {
        const qint64 written = writeSome(rest);
        if (stopRequested())
            throw Cancelled();
        if (written < 0 && errno != EINTR)
            throwWriteError(errno);
        rest = rest.sliced(std::max<qint64>(written, 0));
    }
    m_pending.resize(0);
}

#include "export/output_file.h"

#include "backup/target_file.h"
#include "base/error.h"

#include <QFileInfo>

namespace {
constexpr qsizetype blockBytes = 256 * 1024;

Error cannot(const char *what, const QString &path, const QString &reason)
{
    return Error(QStringLiteral("can not %1 %2. %3").arg(QLatin1String(what), path, reason));
}
} // namespace

OutputFile::OutputFile(const QString &path) : m_path(path) {}

OutputFile::~OutputFile() = default;

void OutputFile::open()
{
    const QFileInfo info(m_path);
    if (info.exists() && !info.isFile()) {
        m_device.setFileName(m_path);
        if (!m_device.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            throw cannot("open", m_path, m_device.errorString());
    } else {
        // Whoever put a link there wants the file that it points to to change.
        m_target = std::make_unique<TargetFile>(info.exists() ? info.canonicalFilePath() : m_path);
    }
    m_buffer.reserve(blockBytes + blockBytes / 4);
}

void OutputFile::flush()
{
    if (m_target)
        m_target->write(m_buffer.constData(), m_buffer.size());
    else if (m_device.write(m_buffer) != m_buffer.size())
        throw cannot("write", m_path, m_device.errorString());
    // resize keeps the memory, clear would give it back.
    m_buffer.resize(0);
}

void OutputFile::flushIfFull()
{
    if (m_buffer.size() >= blockBytes)
        flush();
}

void OutputFile::commit()
{
    flush();
    if (m_target)
        m_target->commit();
    else
        m_device.close();
}

void writeWholeFile(const QString &path, const QByteArray &bytes)
{
    TargetFile file(path);
    file.write(bytes.constData(), bytes.size());
    file.commit();
}

#include "backup/target_file.h"

#include "base/error.h"
#include "base/source_guard.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <filesystem>
#include <system_error>

namespace {
Error cannotCreate(const QString &path, const QString &reason, ErrorKind kind)
{
    return Error(QStringLiteral("can not create %1. %2").arg(path, reason), kind, FileAccess::Writing);
}

ErrorKind kindOf(const QFile &file)
{
    return Error::ofFile(QStringLiteral("%1 %2"), file, FileAccess::Writing).kind();
}

ErrorKind kindOf(const std::error_code &error)
{
    if (error == std::errc::no_space_on_device)
        return ErrorKind::NoSpace;
    return error == std::errc::permission_denied ? ErrorKind::Denied : ErrorKind::Other;
}

std::filesystem::path nativePath(const QString &path)
{
    return std::filesystem::path(path.toStdU16String());
}
} // namespace

bool setTimes(QFile &file, std::uint32_t unixSeconds)
{
    const QDateTime time = QDateTime::fromSecsSinceEpoch(unixSeconds, Qt::UTC);
    return file.setFileTime(time, QFileDevice::FileAccessTime) &&
           file.setFileTime(time, QFileDevice::FileModificationTime);
}

TargetFile::TargetFile(const QString &path, Placing placing) : m_path(path), m_placing(placing)
{
    requirePlace();
    const QString folder = QFileInfo(path).path();
    if (!QDir().mkpath(folder))
        throw cannotCreate(path, QStringLiteral("The folder %1 cannot be made.").arg(folder),
                           ErrorKind::Other);
    if (placing == Placing::InPlace) {
        m_file.setFileName(path);
        m_file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered,
                    QFile::ReadOwner | QFile::WriteOwner);
    } else {
        openBeside();
    }
    if (!m_file.isOpen())
        throw cannotCreate(path, m_file.errorString(), kindOf(m_file));
}

/// What is written in place is the plain catalogue, which may lie in the backup itself.
void TargetFile::requirePlace() const
{
    if (m_placing != Placing::InPlace)
        SourceGuard::requireOutside(m_path);
}

bool TargetFile::open(const QString &path)
{
    m_file.setFileName(path);
    return m_file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered,
                       QFile::ReadOwner | QFile::WriteOwner);
}

void TargetFile::openBeside()
{
    // A name taken by somebody else is drawn again.
    constexpr int attempts = 16;
    const QString folder = QFileInfo(m_path).path();
    sweepParts(folder);
    for (int i = 0; i < attempts; ++i) {
        const QString beside = partPath(folder);
        if (!open(beside) && !QFileInfo::exists(beside))
            return;
        if (m_file.isOpen() && m_lock.take(m_file))
            return;
        m_file.close();
        m_lock.release();
    }
}

TargetFile::~TargetFile()
{
    if (!m_committed) {
        m_file.close();
        m_file.remove();
    }
}

void TargetFile::failWriting() const
{
    throw Error(QStringLiteral("can not write %1. %2").arg(m_path, m_file.errorString()), kindOf(m_file),
                FileAccess::Writing);
}

void TargetFile::write(const char *bytes, qint64 size)
{
    // A disk that fills up takes a part first, without an error; only the next attempt says why.
    while (size > 0) {
        const qint64 written = m_file.write(bytes, size);
        if (written <= 0)
            failWriting();
        bytes += written;
        size -= written;
    }
}

void TargetFile::commit(std::uint32_t unixSeconds)
{
    if (unixSeconds != 0 && !setTimes(m_file, unixSeconds)) {
        qWarning("The time of %s cannot be set: %s", qUtf8Printable(m_path),
                 qUtf8Printable(m_file.errorString()));
        m_file.unsetError();
    }
    m_file.close();
    if (m_file.error() != QFileDevice::NoError)
        failWriting();
    requirePlace();
    if (m_file.fileName() != m_path) {
        std::error_code error;
        std::filesystem::rename(nativePath(m_file.fileName()), nativePath(m_path), error);
        if (error)
            throw cannotCreate(m_path, QString::fromStdString(error.message()), kindOf(error));
    }
    m_committed = true;
    m_lock.release();
}

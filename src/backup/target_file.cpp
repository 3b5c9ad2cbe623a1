#include "backup/target_file.h"

#include "base/error.h"

#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>

#include <filesystem>
#include <system_error>

namespace {
Error cannotCreate(const QString &path, const QString &reason)
{
    return Error(QStringLiteral("can not create %1. %2").arg(path, reason));
}

std::filesystem::path nativePath(const QString &path)
{
    return std::filesystem::path(path.toStdU16String());
}
} // namespace

TargetFile::TargetFile(const QString &path) : m_path(path)
{
    const QFileInfo info(path);
    if (!QDir().mkpath(info.path()))
        throw cannotCreate(path, QStringLiteral("The folder %1 cannot be made.").arg(info.path()));
    // A name taken by somebody else is drawn again; the name is short, so that a long final name still fits.
    constexpr int attempts = 16;
    for (int i = 0; i < attempts && !m_file.isOpen(); ++i) {
        const quint64 number = QRandomGenerator::global()->generate64();
        m_file.setFileName(QStringLiteral("%1/.%2.part").arg(info.path(), QString::number(number, 36)));
        if (!m_file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered) &&
            !QFileInfo::exists(m_file.fileName()))
            break;
    }
    if (!m_file.isOpen())
        throw cannotCreate(path, m_file.errorString());
}

TargetFile::~TargetFile()
{
    if (!m_committed) {
        m_file.close();
        m_file.remove();
    }
}

void TargetFile::failWriting(const QString &reason) const
{
    throw Error(QStringLiteral("can not write %1. %2").arg(m_path, reason));
}

void TargetFile::write(const char *bytes, qint64 size)
{
    if (m_file.write(bytes, size) != size)
        failWriting(m_file.errorString());
}

void TargetFile::commit()
{
    m_file.close();
    if (m_file.error() != QFileDevice::NoError)
        failWriting(m_file.errorString());
    std::error_code error;
    std::filesystem::rename(nativePath(m_file.fileName()), nativePath(m_path), error);
    if (error)
        throw cannotCreate(m_path, QString::fromStdString(error.message()));
    m_committed = true;
}

#include "base/file_identity.h"

#include <QFile>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <sys/stat.h>
#endif

#ifdef Q_OS_WIN
std::optional<FileIdentity> identityOf(const QString &path)
{
    // Only with this flag a folder can be opened at all.
    const HANDLE file = CreateFileW(reinterpret_cast<const wchar_t *>(path.utf16()), 0,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return std::nullopt;
    BY_HANDLE_FILE_INFORMATION information;
    const bool isTold = GetFileInformationByHandle(file, &information) != 0;
    CloseHandle(file);
    if (!isTold)
        return std::nullopt;
    return FileIdentity{information.dwVolumeSerialNumber,
                        quint64{information.nFileIndexHigh} << 32 | information.nFileIndexLow};
}
#else
std::optional<FileIdentity> identityOf(const QString &path)
{
    struct stat status;
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return std::nullopt;
    return FileIdentity{static_cast<quint64>(status.st_dev), static_cast<quint64>(status.st_ino)};
}
#endif

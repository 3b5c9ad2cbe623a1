#include "backup/extract_target.h"

#include "base/contained_path.h"
#include "base/error.h"
#include "base/source_guard.h"

#include <QDir>
#include <QTemporaryFile>

#include <chrono>
#include <filesystem>

namespace {
std::filesystem::path nativePath(const QString &path)
{
    return std::filesystem::path(path.toStdU16String());
}
} // namespace

bool hasRoom(const QString &folder, std::uint64_t bytes)
{
    std::error_code error;
    const auto space = std::filesystem::space(nativePath(folder), error);
    return error || space.available >= bytes;
}

void requireTarget(const QString &target, const QString &backupFolder)
{
    if (staysBelow(backupFolder, target))
        throw Error(QStringLiteral("can not extract to %1. It lies inside the backup.").arg(target));
    SourceGuard::requireOutside(target);
    if (!QDir().mkpath(target))
        throw Error(QStringLiteral("can not create %1. The folder cannot be made.").arg(target));
    QTemporaryFile probe(QDir(target).filePath(QStringLiteral(".quillbarrow-XXXXXX.part")));
    if (!probe.open())
        throw Error(QStringLiteral("can not write %1. %2").arg(target, probe.errorString()));
}

void setFolderTime(const QString &folder, std::uint32_t unixSeconds)
{
    const std::chrono::sys_seconds time{std::chrono::seconds(unixSeconds)};
    std::error_code ignored;
    std::filesystem::last_write_time(nativePath(folder), std::chrono::file_clock::from_sys(time), ignored);
}

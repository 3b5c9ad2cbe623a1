#include "backup/scratch_folder.h"

#include "backup/cache_folder.h"
#include "base/error.h"
#include "base/file_names.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <filesystem>

namespace {
constexpr std::uint64_t spareBytes = 16 << 20;
constexpr qint64 secondsPerDay = 86400;

QString namePattern()
{
    return QStringLiteral("quillbarrow-scratch-*");
}

QString lockPath(const QString &folder)
{
    return QDir(folder).filePath(QStringLiteral(".lock"));
}

bool hasRoom(const QString &folder, std::uint64_t bytes)
{
    std::error_code error;
    const auto space = std::filesystem::space(std::filesystem::path(folder.toStdU16String()), error);
    return !error && space.available >= spareBytes && space.available - spareBytes >= bytes;
}

/// A folder whose owner lives holds its lock. One without a lock may be in the making, unless it is old.
bool isLeftover(const QFileInfo &folder)
{
    const QString lock = lockPath(folder.filePath());
    if (!QFileInfo::exists(lock))
        return folder.lastModified().secsTo(QDateTime::currentDateTime()) > secondsPerDay;
    QLockFile probe(lock);
    probe.setStaleLockTime(0);
    return probe.tryLock(0);
}

void removeLeftovers(const QString &parent)
{
    const QFileInfoList folders =
        QDir(parent).entryInfoList({namePattern()}, QDir::Dirs | QDir::Hidden | QDir::NoSymLinks);
    for (const QFileInfo &folder : folders)
        if (isLeftover(folder))
            removeFolderTree(folder.filePath());
}

void removeLeftoversOfAllBackups()
{
    for (const QString &folder : cacheFolders())
        removeLeftovers(folder);
    removeLeftovers(QDir::tempPath());
}
} // namespace

ScratchFolder::ScratchFolder(const QString &backupUid) : m_uid(backupUid) {}

ScratchFolder::~ScratchFolder()
{
    remove();
}

bool ScratchFolder::hasName(const QString &name)
{
    return QDir::match(namePattern(), name);
}

bool ScratchFolder::isInUse(const QString &folder)
{
    return !isLeftover(QFileInfo(folder));
}

void ScratchFolder::make(Place &place, const QString &parent)
{
    if (place.folder || place.failed)
        return;
    QString name = namePattern();
    name.replace(QLatin1Char('*'), QLatin1String("XXXXXX"));
    auto folder = std::make_unique<QTemporaryDir>(QDir(parent).filePath(name));
    auto lock = std::make_unique<QLockFile>(lockPath(folder->path()));
    lock->setStaleLockTime(0);
    if (folder->isValid() && lock->tryLock(0)) {
        place.folder = std::move(folder);
        place.lock = std::move(lock);
    } else {
        place.failed = true;
    }
}

QString ScratchFolder::withRoomFor(std::uint64_t bytes)
{
    if (!m_cache.folder && !m_temporary.folder)
        removeLeftoversOfAllBackups();
    make(m_cache, cacheFolderOf(m_uid));
    if (m_cache.folder && hasRoom(m_cache.folder->path(), bytes))
        return m_cache.folder->path();
    make(m_temporary, QDir::tempPath());
    if (m_temporary.folder && (!m_cache.folder || hasRoom(m_temporary.folder->path(), bytes)))
        return m_temporary.folder->path();
    if (!m_cache.folder)
        throw Error(QStringLiteral("can not create %1. A private folder can be made neither there nor in %2.")
                        .arg(cacheFolderOf(m_uid), QDir::tempPath()));
    return m_cache.folder->path();
}

QString ScratchFolder::inTemporaryFolder()
{
    if (!m_cache.folder && !m_temporary.folder)
        removeLeftoversOfAllBackups();
    make(m_temporary, QDir::tempPath());
    if (!m_temporary.folder)
        throw Error(QStringLiteral("can not create a private folder in %1.").arg(QDir::tempPath()));
    return m_temporary.folder->path();
}

void ScratchFolder::remove()
{
    remove(m_cache);
    remove(m_temporary);
    leaveCacheFolderOf(m_uid);
}

void ScratchFolder::remove(Place &place)
{
    if (place.lock)
        place.lock->unlock();
    place = {};
}

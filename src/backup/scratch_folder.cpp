#include "backup/scratch_folder.h"

#include "backup/cache_folder.h"
#include "base/error.h"

#include <QDir>

#include <filesystem>

namespace {
constexpr std::uint64_t spareBytes = 16 << 20;

bool hasRoom(const QString &folder, std::uint64_t bytes)
{
    std::error_code error;
    const auto space = std::filesystem::space(std::filesystem::path(folder.toStdU16String()), error);
    return !error && space.available >= spareBytes && space.available - spareBytes >= bytes;
}
} // namespace

ScratchFolder::ScratchFolder(const QString &backupUid) : m_uid(backupUid) {}

ScratchFolder::~ScratchFolder()
{
    remove();
}

void ScratchFolder::Place::make(const QString &parent)
{
    if (folder || failed)
        return;
    folder = PrivateFolder::make(parent);
    failed = !folder;
}

QString ScratchFolder::withRoomFor(std::uint64_t bytes)
{
    m_cache.make(cacheFolderOf(m_uid));
    if (m_cache.folder && hasRoom(m_cache.folder->path(), bytes))
        return m_cache.folder->path();
    m_temporary.make(QDir::tempPath());
    if (m_temporary.folder && (!m_cache.folder || hasRoom(m_temporary.folder->path(), bytes)))
        return m_temporary.folder->path();
    if (!m_cache.folder)
        throw Error(QStringLiteral("can not create %1. A private folder can be made neither there nor in %2.")
                        .arg(cacheFolderOf(m_uid), QDir::tempPath()));
    return m_cache.folder->path();
}

QString ScratchFolder::inTemporaryFolder()
{
    m_temporary.make(QDir::tempPath());
    if (!m_temporary.folder)
        throw Error(QStringLiteral("can not create a private folder in %1.").arg(QDir::tempPath()));
    return m_temporary.folder->path();
}

void ScratchFolder::remove()
{
    m_cache = {};
    m_temporary = {};
    leaveCacheFolderOf(m_uid);
}

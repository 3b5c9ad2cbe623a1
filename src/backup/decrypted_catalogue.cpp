#include "backup/decrypted_catalogue.h"

#include "backup/backup_info.h"
#include "backup/cache_folder.h"
#include "backup/file_cipher.h"
#include "backup/sqlite_header.h"
#include "base/error.h"

#include <QDir>
#include <QFileInfo>

namespace {
constexpr QLatin1String copyName("Manifest-decrypted.db");

QString copyIn(const QString &folder)
{
    return QDir(folder).filePath(copyName);
}

std::unique_ptr<QLockFile> lockIn(const QString &cacheFolder)
{
    auto lock = std::make_unique<QLockFile>(copyIn(cacheFolder) + QStringLiteral(".lock"));
    lock->setStaleLockTime(0); // a backup may stay open for days
    return lock;
}
} // namespace

bool DecryptedCatalogue::hasName(const QString &name)
{
    return name.startsWith(copyName);
}

bool DecryptedCatalogue::isInUse(const QString &cacheFolder)
{
    return !lockIn(cacheFolder)->tryLock(0);
}

DecryptedCatalogue::~DecryptedCatalogue()
{
    remove();
}

void DecryptedCatalogue::make(const QString &folder, const QByteArray &key, ScratchFolder &scratch)
{
    remove();
    const QString source = QDir(folder).filePath(QStringLiteral("Manifest.db"));
    if (makeUnderLock(source, key, folder, cacheFolderOf(backupUid(folder))))
        return;
    const auto size = static_cast<std::uint64_t>(QFileInfo(source).size());
    decrypt(source, key, copyIn(scratch.withRoomFor(size)));
}

bool DecryptedCatalogue::makeUnderLock(const QString &source, const QByteArray &key, const QString &folder,
                                       const QString &cacheFolder)
{
    std::unique_ptr<QLockFile> lock = lockIn(cacheFolder);
    if (!lock->tryLock(0))
        return false;
    for (const QString &place : {folder, cacheFolder}) {
        try {
            decrypt(source, key, copyIn(place));
            m_lock = std::move(lock);
            return true;
        } catch (const Error &error) {
            qWarning("The catalogue is decrypted elsewhere: %s", error.what());
        }
    }
    return false;
}

void DecryptedCatalogue::decrypt(const QString &source, const QByteArray &key, const QString &destination)
{
    decryptFile(key, source, {destination, 0, Placing::InPlace}, {}, Padding::KeepIfBroken);
    m_path = destination;
    if (hasSqliteHeader(destination))
        return;
    remove();
    throw Error(QStringLiteral("can not read %1. It is damaged: what decrypts is no database.").arg(source));
}

void DecryptedCatalogue::remove()
{
    if (!m_path.isEmpty())
        QFile::remove(m_path);
    m_path.clear();
    m_lock.reset();
}

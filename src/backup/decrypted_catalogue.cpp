#include "backup/decrypted_catalogue.h"

#include "backup/backup_info.h"
#include "backup/cache_folder.h"
#include "backup/file_cipher.h"
#include "backup/sqlite_header.h"
#include "base/error.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

namespace {
constexpr QLatin1String copyName("Manifest-decrypted.db");
constexpr auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner;

QString copyIn(const QString &folder)
{
    return QDir(folder).filePath(copyName);
}

QString noteIn(const QString &cacheFolder)
{
    return copyIn(cacheFolder) + QStringLiteral(".note");
}

std::unique_ptr<QLockFile> lockIn(const QString &cacheFolder)
{
    auto lock = std::make_unique<QLockFile>(copyIn(cacheFolder) + QStringLiteral(".lock"));
    lock->setStaleLockTime(0); // a backup may stay open for days
    return lock;
}

bool isTaken(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

/// Tells one file from every other that has its name before or after it; empty when there is none.
QByteArray identityOf(const QString &path)
{
#ifdef Q_OS_UNIX
    struct stat status = {};
    if (lstat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return {};
    return QByteArray::number(static_cast<quint64>(status.st_dev)) + ' ' +
           QByteArray::number(static_cast<quint64>(status.st_ino));
#else
    const QFileInfo info(path);
    return info.isFile() ? QByteArray::number(info.birthTime().toMSecsSinceEpoch()) : QByteArray();
#endif
}

/// First the identity, empty as long as the copy is not there, then the path. Whole or as it was before.
bool writeNote(const QString &note, const QByteArray &identity, const QString &copy)
{
    QSaveFile file(note);
    return file.open(QIODevice::WriteOnly) && file.setPermissions(ownerOnly) &&
           file.write(identity + '\n' + copy.toUtf8()) > 0 && file.commit();
}

/// A copy of which nobody got to note what it is has nothing in it yet.
bool isNoted(const QString &copy, const QByteArray &identity)
{
    return identity.isEmpty() ? QFileInfo(copy).isFile() && !QFileInfo(copy).isSymLink() &&
                                    QFileInfo(copy).size() == 0
                              : identityOf(copy) == identity;
}

void removeNoted(const QString &note)
{
    QFile file(note);
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QByteArray content = file.readAll();
    const qsizetype lineEnd = content.indexOf('\n');
    const QString copy = QString::fromUtf8(content.sliced(lineEnd + 1));
    if (lineEnd >= 0 && isNoted(copy, content.first(lineEnd)))
        QFile::remove(copy);
    // A disk that is not there today may come back with the copy.
    if (QFileInfo::exists(QFileInfo(copy).path()))
        file.remove();
}
} // namespace

bool DecryptedCatalogue::hasName(const QString &name)
{
    return name.startsWith(copyName);
}

bool DecryptedCatalogue::isInUse(const QString &cacheFolder)
{
    sweep(cacheFolder);
    return isTaken(noteIn(cacheFolder)) || !lockIn(cacheFolder)->tryLock(0);
}

void DecryptedCatalogue::sweep(const QString &cacheFolder)
{
    if (!isTaken(copyIn(cacheFolder)) && !isTaken(noteIn(cacheFolder)))
        return;
    const std::unique_ptr<QLockFile> lock = lockIn(cacheFolder);
    if (!lock->tryLock(0))
        return;
    removeNoted(noteIn(cacheFolder));
    QFile::remove(copyIn(cacheFolder));
}

DecryptedCatalogue::~DecryptedCatalogue()
{
    remove();
}

void DecryptedCatalogue::make(const QString &folder, const QByteArray &key, ScratchFolder &scratch)
{
    remove();
    const QString source = QDir(folder).filePath(QStringLiteral("Manifest.db"));
    const QString cacheFolder = cacheFolderOf(backupUid(folder));
    sweep(cacheFolder);
    if (makeUnderLock(source, key, folder, cacheFolder))
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
            if (place == folder && !claim(copyIn(folder), noteIn(cacheFolder)))
                continue;
            decrypt(source, key, copyIn(place));
            m_lock = std::move(lock);
            return true;
        } catch (const Error &error) {
            qWarning("The catalogue is decrypted elsewhere: %s", error.what());
            remove();
        }
    }
    return false;
}

/// Makes the empty file that will be the copy. False when something of its name is there, which belongs to
/// somebody else, when the folder cannot be written, or when it cannot be noted.
bool DecryptedCatalogue::claim(const QString &copy, const QString &note)
{
    if (isTaken(copy) || isTaken(note) || !writeNote(note, {}, copy))
        return false;
    m_note = note;
    QFile file(copy);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly, ownerOnly)) {
        remove();
        return false;
    }
    file.close();
    m_path = copy;
    if (writeNote(note, identityOf(copy), copy))
        return true;
    remove();
    return false;
}

void DecryptedCatalogue::decrypt(const QString &source, const QByteArray &key, const QString &destination)
{
    decryptFile(key, {QFileInfo(source).path(), QFileInfo(source).fileName()}, {destination, 0, Placing::InPlace}, {}, Padding::KeepIfBroken);
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
    if (!m_note.isEmpty())
        QFile::remove(m_note);
    m_path.clear();
    m_note.clear();
    m_lock.reset();
}

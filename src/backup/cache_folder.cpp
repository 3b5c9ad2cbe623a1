#include "backup/cache_folder.h"

#include "backup/decrypted_catalogue.h"
#include "base/app_folders.h"
#include "base/file_names.h"
#include "base/private_folder.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

namespace {
constexpr auto everything = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

QString cacheRoot()
{
    return appDataFolder().filePath(QStringLiteral("itunes_cache"));
}

/// Files come first: without its registers no copy counts, so that a run which is killed half-way leaves
/// nothing that is taken for whole.
QFileInfoList entriesOf(const QString &folder)
{
    return QDir(folder).entryInfoList(everything, QDir::DirsLast | QDir::Name);
}

/// What a run makes for itself and takes away again at its end.
bool belongsToARun(const QFileInfo &entry)
{
    return entry.isDir() ? PrivateFolder::hasName(entry.fileName())
                         : DecryptedCatalogue::hasName(entry.fileName());
}

bool isInUse(const QFileInfo &entry)
{
    return belongsToARun(entry) && (entry.isDir() ? PrivateFolder::isInUse(entry.filePath())
                                                  : DecryptedCatalogue::isInUse(entry.path()));
}

qint64 sizeOf(const QFileInfo &entry)
{
    if (entry.isSymLink())
        return 0;
    if (!entry.isDir())
        return entry.size();
    qint64 bytes = 0;
    QDirIterator files(entry.filePath(), QDir::Files | QDir::Hidden | QDir::System | QDir::NoSymLinks,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        files.next();
        bytes += files.fileInfo().size();
    }
    return bytes;
}

qint64 sizeOfCopies(const QString &folder)
{
    qint64 bytes = 0;
    const QFileInfoList entries = entriesOf(folder);
    for (const QFileInfo &entry : entries)
        bytes += belongsToARun(entry) ? 0 : sizeOf(entry);
    return bytes;
}

void clear(const QString &folder)
{
    const QFileInfoList entries = entriesOf(folder);
    for (const QFileInfo &entry : entries) {
        if (isInUse(entry))
            continue;
        if (entry.isDir())
            removeFolderTree(entry.filePath()); // of a link, the link
        else
            QFile::remove(entry.filePath());
    }
    QDir().rmdir(folder); // stays when something in it is in use
}
} // namespace

QString cacheFolderPath(const QString &backupUid)
{
    return cacheRoot() + QLatin1Char('/') + backupUid;
}

QString cacheFolderOf(const QString &backupUid)
{
    const QString folder = cacheFolderPath(backupUid);
    if (QDir().mkpath(folder))
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return folder;
}

QStringList cacheFolders()
{
    QStringList folders;
    const QDir root(cacheRoot());
    const QStringList names = root.entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    for (const QString &name : names)
        folders << root.filePath(name);
    return folders;
}

qint64 cacheSize()
{
    qint64 bytes = 0;
    for (const QString &folder : cacheFolders())
        bytes += sizeOfCopies(folder);
    return bytes;
}

qint64 cacheSizeOf(const QString &backupUid)
{
    return sizeOfCopies(cacheFolderPath(backupUid));
}

void clearCaches()
{
    for (const QString &folder : cacheFolders())
        clear(folder);
}

void clearCacheOf(const QString &backupUid)
{
    clear(cacheFolderPath(backupUid));
}

bool isCacheInUse(const QString &backupUid)
{
    const QFileInfoList entries = entriesOf(cacheFolderPath(backupUid));
    return std::any_of(entries.begin(), entries.end(), isInUse);
}

void leaveCacheFolderOf(const QString &backupUid)
{
    QDir().rmdir(cacheFolderPath(backupUid));
}

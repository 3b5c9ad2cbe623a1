#include "base/private_folder.h"

#include "base/error.h"
#include "base/file_names.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QMutex>
#include <QTemporaryDir>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace {
constexpr qint64 secondsPerDay = 86400;

QString namePattern()
{
    return QStringLiteral("quillbarrow-scratch-*");
}

QString lockPath(const QString &folder)
{
    return QDir(folder).filePath(QStringLiteral(".lock"));
}

bool isOurs(const QFileInfo &folder)
{
#ifdef Q_OS_UNIX
    // Anybody may put a folder of such a name into the temporary folder.
    return folder.ownerId() == geteuid();
#else
    Q_UNUSED(folder);
    return true;
#endif
}

/// A folder whose owner lives holds its lock. One without a lock may be in the making, unless it is old.
bool isLeftover(const QFileInfo &folder)
{
    const QFileInfo lock(lockPath(folder.filePath()));
    if (!lock.exists() || lock.size() == 0)
        return folder.lastModified().secsTo(QDateTime::currentDateTime()) > secondsPerDay;
    QLockFile probe(lock.filePath());
    probe.setStaleLockTime(0);
    return probe.tryLock(0);
}

struct RunFolder
{
    QMutex mutex;
    std::unique_ptr<PrivateFolder> folder;
};

RunFolder &ownFolder()
{
    static RunFolder own;
    return own;
}

QString openedFilesRoot(const QString &run)
{
    return run + QStringLiteral("/opened");
}
} // namespace

PrivateFolder::PrivateFolder(std::unique_ptr<QTemporaryDir> folder, std::unique_ptr<QLockFile> lock)
    : m_process(QCoreApplication::applicationPid()), m_folder(std::move(folder)), m_lock(std::move(lock))
{
    m_folder->setAutoRemove(false);
}

std::unique_ptr<PrivateFolder> PrivateFolder::make(const QString &parent)
{
    QString name = namePattern();
    name.replace(QLatin1Char('*'), QLatin1String("XXXXXX"));
    auto folder = std::make_unique<QTemporaryDir>(QDir(parent).filePath(name));
    if (!folder->isValid())
        return nullptr;
    auto lock = std::make_unique<QLockFile>(lockPath(folder->path()));
    lock->setStaleLockTime(0);
    if (!lock->tryLock(0))
        return nullptr;
    return std::unique_ptr<PrivateFolder>(new PrivateFolder(std::move(folder), std::move(lock)));
}

PrivateFolder::~PrivateFolder()
{
    if (m_process != QCoreApplication::applicationPid()) {
        m_lock.release(); // it would take the lock away from the process that holds it
        return;
    }
    // The lock goes last: what a kill leaves half removed is still told to be a leftover.
    const QDir folder(m_folder->path());
    const QFileInfoList entries =
        folder.entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QFileInfo &entry : entries) {
        if (entry.isDir() && !entry.isSymLink())
            removeFolderTree(entry.filePath());
        else if (entry.filePath() != lockPath(folder.path()))
            QFile::remove(entry.filePath());
    }
    m_lock->unlock();
    removeFolderTree(folder.path());
}

QString PrivateFolder::path() const
{
    return m_folder->path();
}

bool PrivateFolder::hasName(const QString &name)
{
    return QDir::match(namePattern(), name);
}

bool PrivateFolder::isInUse(const QString &folder)
{
    return !isLeftover(QFileInfo(folder));
}

void PrivateFolder::sweep(const QString &parent)
{
    const QFileInfoList folders =
        QDir(parent).entryInfoList({namePattern()}, QDir::Dirs | QDir::Hidden | QDir::NoSymLinks);
    for (const QFileInfo &folder : folders)
        if (isOurs(folder) && isLeftover(folder))
            removeFolderTree(folder.filePath());
}

QString runFolder()
{
    RunFolder &own = ownFolder();
    const QMutexLocker locker(&own.mutex);
    if (!own.folder || !QFileInfo::exists(own.folder->path()))
        own.folder = PrivateFolder::make(QDir::tempPath());
    if (!own.folder)
        throw Error(QStringLiteral("can not create a private folder in %1.").arg(QDir::tempPath()));
    return own.folder->path();
}

QString openedFilesFolder(const QString &backupUid)
{
    return openedFilesRoot(runFolder()) + QLatin1Char('/') + backupUid;
}

void removeOpenedFiles(const QString &backupUid)
{
    RunFolder &own = ownFolder();
    const QMutexLocker locker(&own.mutex);
    if (own.folder)
        removeFolderTree(openedFilesRoot(own.folder->path()) + QLatin1Char('/') + backupUid);
}

void removeRunFolder()
{
    RunFolder &own = ownFolder();
    const QMutexLocker locker(&own.mutex);
    own.folder.reset();
}

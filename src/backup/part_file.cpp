#include "backup/part_file.h"

#include <QDir>
#include <QFile>
#include <QMutex>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSet>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {
constexpr QLatin1String namePattern(".quillbarrow-*.part");

/// True the first time.
bool isNewHere(const QString &folder)
{
    static QMutex mutex;
    static QSet<std::size_t> known; // a collision costs one sweep
    const QMutexLocker locker(&mutex);
    const std::size_t key = qHash(folder);
    const bool isNew = !known.contains(key);
    known.insert(key);
    return isNew;
}
} // namespace

QString partPath(const QString &folder)
{
    const quint64 number = QRandomGenerator::global()->generate64();
    return QStringLiteral("%1/.quillbarrow-%2.part").arg(folder, QString::number(number, 36));
}

bool isPartName(const QString &name)
{
    static const QRegularExpression pattern(
        QRegularExpression::anchoredPattern(QStringLiteral("\\.quillbarrow-[0-9a-z]{1,13}\\.part")));
    return pattern.match(name).hasMatch();
}

void sweepParts(const QString &folder)
{
    if (!isNewHere(folder))
        return;
    const QDir place(folder);
    const QStringList names =
        place.entryList({namePattern}, QDir::Files | QDir::Hidden | QDir::NoSymLinks, QDir::Unsorted);
    for (const QString &name : names)
        if (isPartName(name))
            removePartOfADeadRun(place.filePath(name));
}

#ifdef Q_OS_UNIX
void removePartOfADeadRun(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    const int descriptor = open(name.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return;
    struct stat status = {};
    if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == geteuid() &&
        flock(descriptor, LOCK_EX | LOCK_NB) == 0)
        unlink(name.constData());
    close(descriptor);
}

bool PartLock::take(const QFile &file)
{
    // Its own descriptor keeps the lock beyond the closing of the file, until that has its final name.
    m_descriptor = fcntl(file.handle(), F_DUPFD_CLOEXEC, 0);
    if (m_descriptor < 0)
        return true;
    if (flock(m_descriptor, LOCK_EX | LOCK_NB) != 0)
        return errno != EWOULDBLOCK;
    struct stat status = {};
    return fstat(m_descriptor, &status) != 0 || status.st_nlink > 0;
}

void PartLock::release()
{
    if (m_descriptor >= 0)
        close(std::exchange(m_descriptor, -1));
}
#else
// A file that somebody has open cannot be removed there.
void removePartOfADeadRun(const QString &path)
{
    QFile::remove(path);
}

bool PartLock::take(const QFile &)
{
    return true;
}

void PartLock::release() {}
#endif

#include "base/own_file.h"

#include "base/error.h"
#include "base/source_guard.h"

#include <QDir>
#include <QFileInfo>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {
[[noreturn]] void cannotOpen(const QString &path, const QString &reason, ErrorKind kind)
{
    throw Error(QStringLiteral("can not open %1. %2").arg(path, reason), kind, FileAccess::Reading);
}

[[noreturn]] void noFile(const QString &path)
{
    cannotOpen(path, QStringLiteral("It is no file."), ErrorKind::Damaged);
}

bool isLink(const QString &path)
{
    const QFileInfo info(path);
    return info.isSymLink() || info.isJunction();
}

[[noreturn]] void refuseLink(const QString &path)
{
    cannotOpen(path, QStringLiteral("It is a link, and leads elsewhere."), ErrorKind::Damaged);
}
} // namespace

#ifdef Q_OS_UNIX
namespace {
/// A descriptor that is closed.
class Descriptor
{
public:
    explicit Descriptor(int number) : m_number(number) {}
    ~Descriptor() { reset(-1); }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    bool isOpen() const { return m_number >= 0; }
    int number() const { return m_number; }
    void reset(int number)
    {
        if (isOpen())
            ::close(m_number);
        m_number = number;
    }

private:
    int m_number;
};

[[noreturn]] void failedToOpen(const QString &path, int code)
{
    // Opened as a folder, a link is none.
    if (code == ELOOP || (code == ENOTDIR && isLink(path)))
        refuseLink(path);
    if (code == ENXIO)
        noFile(path);
    const bool isMissing = code == ENOENT || code == ENOTDIR;
    const bool isDenied = code == EACCES || code == EPERM;
    cannotOpen(path, qt_error_string(code),
               isMissing  ? ErrorKind::NotFound
               : isDenied ? ErrorKind::Denied
                          : ErrorKind::Other);
}

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
} // namespace

void openOwnFile(QFile &file, const QString &folder, const QString &name)
{
    QString path = folder;
    Descriptor at(::open(QFile::encodeName(folder).constData(), folderFlags));
    const QStringList components = name.split(QLatin1Char('/'));
    for (qsizetype i = 0; at.isOpen() && i < components.size(); ++i) {
        path += QLatin1Char('/') + components[i];
        // Without O_NONBLOCK, opening a pipe waits for its other end.
        const int flags = i + 1 < components.size() ? folderFlags : O_RDONLY | O_NONBLOCK | O_CLOEXEC;
        at.reset(::openat(at.number(), QFile::encodeName(components[i]).constData(), flags | O_NOFOLLOW));
    }
    if (!at.isOpen())
        failedToOpen(path, errno);
    struct stat status;
    if (::fstat(at.number(), &status) != 0 || !S_ISREG(status.st_mode))
        noFile(path);
    // A file that is opened by its descriptor has no name. By its path it could be another by now.
    file.setFileName(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        throw Error::ofFile(QStringLiteral("can not open %1. %2"), file, FileAccess::Reading);
    struct stat opened;
    if (::fstat(file.handle(), &opened) != 0 || opened.st_dev != status.st_dev || opened.st_ino != status.st_ino)
        refuseLink(path);
}
#else
void openOwnFile(QFile &file, const QString &folder, const QString &name)
{
    QString path = folder;
    for (const QString &component : name.split(QLatin1Char('/'))) {
        path += QLatin1Char('/') + component;
        if (isLink(path))
            refuseLink(path);
    }
    if (QFileInfo(path).exists() && !QFileInfo(path).isFile())
        noFile(path);
    file.setFileName(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        throw Error::ofFile(QStringLiteral("can not open %1. %2"), file, FileAccess::Reading);
}
#endif

bool isOwnFile(const QString &folder, const QString &name)
{
    QString path = folder;
    for (const QString &component : name.split(QLatin1Char('/'))) {
        path += QLatin1Char('/') + component;
        if (isLink(path))
            return false;
    }
    return QFileInfo(path).isFile();
}

QString makeOwnFolder(const QString &folder, const QString &name)
{
    QString path = folder;
    for (const QString &component : name.split(QLatin1Char('/'))) {
        path += QLatin1Char('/') + component;
        if (isLink(path))
            throw Error(QStringLiteral("can not write to %1. It is a link, and leads elsewhere.").arg(path),
                        ErrorKind::Denied, FileAccess::Writing);
    }
    SourceGuard::requireOutside(path);
    if (!QDir().mkpath(path))
        throw Error(QStringLiteral("can not create the folder %1.").arg(path), ErrorKind::Other, FileAccess::Writing);
    return path;
}

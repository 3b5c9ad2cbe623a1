#include "base/source_guard.h"

#include "base/error.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QMutex>
#include <QThread>

#include <algorithm>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>
#endif

namespace {
constexpr const char *companions[] = {"-wal", "-shm", "-journal"};

/// The guards that live. A caller who had to be handed one could be forgotten, and a file that nobody has twice is
/// gone.
struct Guards
{
    QMutex mutex;
    QList<const SourceGuard *> all;
    QHash<const SourceGuard *, QList<int>> held; // descriptors of their places
};

/// Keeps the number of a place from being given to another one, should the place be deleted while it is guarded.
QList<int> hold([[maybe_unused]] const QStringList &places)
{
    QList<int> descriptors;
#ifdef O_PATH
    for (const QString &place : places)
        if (const int descriptor = ::open(QFile::encodeName(place).constData(), O_PATH | O_CLOEXEC); descriptor >= 0)
            descriptors.append(descriptor);
#endif
    return descriptors;
}

void letGo([[maybe_unused]] const QList<int> &descriptors)
{
#ifdef O_PATH
    for (const int descriptor : descriptors)
        ::close(descriptor);
#endif
}

Guards &guards()
{
    static Guards guards;
    return guards;
}

/// The identities of a path, as far as it is there, and of all folders above it.
QList<FileIdentity> identitiesFrom(const QString &path)
{
    QFileInfo place(QFileInfo(path).absoluteFilePath());
    while (!place.exists() && place.absolutePath() != place.absoluteFilePath())
        place.setFile(place.absolutePath());
    QList<FileIdentity> identities;
    for (QString real = place.canonicalFilePath(); !real.isEmpty();) {
        if (const auto identity = identityOf(real))
            identities.append(*identity);
        const QString above = QFileInfo(real).path();
        real = above == real ? QString() : above;
    }
    return identities;
}
} // namespace

SourceGuard::SourceGuard(const QStringList &places, Reach reach)
    : m_thread(reach == Reach::ThisThread ? QThread::currentThreadId() : nullptr)
{
    const QList<int> held = hold(places);
    for (const QString &place : places) {
        const QFileInfo real(QFileInfo(place).canonicalFilePath());
        const auto identity = identityOf(place);
        const auto folder = identityOf(real.path());
        if (!identity || !folder)
            continue;
        m_places.append(*identity);
        for (const char *companion : companions)
            if (real.isFile())
                m_beside.append({*folder, real.fileName() + QLatin1String(companion)});
    }
    const QMutexLocker lock(&guards().mutex);
    guards().all.append(this);
    guards().held.insert(this, held);
}

SourceGuard::~SourceGuard()
{
    const QMutexLocker lock(&guards().mutex);
    guards().all.removeOne(this);
    letGo(guards().held.take(this));
}

bool SourceGuard::covers(const QFileInfo &file, const QList<FileIdentity> &fileAndAbove) const
{
    if (m_thread && m_thread != QThread::currentThreadId())
        return false;
    if (std::any_of(fileAndAbove.begin(), fileAndAbove.end(),
                    [this](const FileIdentity &place) { return m_places.contains(place); }))
        return true;
    const auto folder = m_beside.isEmpty() ? std::nullopt : identityOf(file.absolutePath());
    return folder && std::any_of(m_beside.begin(), m_beside.end(), [&](const Beside &beside) {
               return beside.folder == *folder && beside.name.compare(file.fileName(), Qt::CaseInsensitive) == 0;
           });
}

void SourceGuard::requireOutside(const QString &path)
{
    const QMutexLocker lock(&guards().mutex);
    if (guards().all.isEmpty())
        return;
    const QList<FileIdentity> fileAndAbove = identitiesFrom(path);
    for (const SourceGuard *guard : std::as_const(guards().all))
        if (guard->covers(QFileInfo(path), fileAndAbove))
            throw Error(QStringLiteral("can not write %1. It belongs to data that is being read.").arg(path),
                        ErrorKind::Denied, FileAccess::Writing);
}

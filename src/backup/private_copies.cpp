#include "backup/private_copies.h"

#include "backup/database_log.h"
#include "base/contained_path.h"
#include "base/error.h"

#include <QDir>
#include <QFileInfo>

namespace {
/// A name that a program recognises by its ending; names that no file may have get a plain one.
QString copyName(QByteArrayView relativePath)
{
    const QString name = QString::fromUtf8(relativePath.sliced(relativePath.lastIndexOf('/') + 1));
    return containedPath(QString(), name) ? QFileInfo(*containedPath(QString(), name)).fileName()
                                          : QStringLiteral("file");
}
} // namespace

PrivateCopies::PrivateCopies(const FileCatalogue &catalogue, const FileFetcher &fetcher,
                             ScratchFolder &scratch)
    : m_catalogue(catalogue), m_fetcher(fetcher), m_scratch(scratch)
{
}

QString PrivateCopies::fetch(Index index, const char *kind, std::uint64_t spareBytes,
                             const CopyProgress &progress)
{
    if (m_fetcher.isLocked(index))
        throw m_fetcher.lockedError(index);
    const auto size = static_cast<std::uint64_t>(QFileInfo(m_fetcher.path(index)).size());
    const QString copy =
        QStringLiteral("%1/%2/%3/%4")
            .arg(m_scratch.withRoomFor(size + spareBytes), QLatin1String(kind),
                 QString::fromLatin1(m_catalogue.fileId(index)), copyName(m_catalogue.relativePath(index)));
    m_fetcher.fetch(index, copy, progress);
    return copy;
}

PrivateCopies::Index PrivateCopies::logOf(Index database) const
{
    const QByteArray path = m_catalogue.relativePath(database).toByteArray() + "-wal";
    return m_catalogue.find(m_catalogue.domain(database), path);
}

QString PrivateCopies::database(Index index, const CopyProgress &progress)
{
    if (QString made = m_databases.value(index); QFileInfo::exists(made))
        return made;
    const Index log = logOf(index);
    QString copy = m_cache ? m_cache->current(index, log) : QString();
    if (copy.isEmpty()) {
        const bool hasLog = log != FileCatalogue::none && !m_catalogue.isDirectory(log);
        const qint64 logSize = hasLog ? QFileInfo(m_fetcher.path(log)).size() : 0;
        copy = fetch(index, "databases", static_cast<std::uint64_t>(logSize), progress);
        const bool isWhole = !hasLog || (logSize == 0 && m_catalogue.sizeBytes(log) == 0) || fetchLog(log, copy);
        if (m_cache && isWhole)
            copy = keepDatabase(index, log, copy);
    }
    m_databases.insert(index, copy);
    return copy;
}

/// What stands beside a database is of use only together with it.
bool PrivateCopies::isCompanion(Index index) const
{
    const QByteArrayView path = m_catalogue.relativePath(index);
    const QByteArrayView database = path.chopped(path.endsWith("-wal") || path.endsWith("-shm") ? 4 : 0);
    return database.size() < path.size() &&
           m_catalogue.find(m_catalogue.domain(index), database) != FileCatalogue::none;
}

/// A database without its log lacks the last changes; one that cannot be opened lacks everything. False when some
/// of the changes are lost, which is told.
bool PrivateCopies::fetchLog(Index log, const QString &database)
{
    const QString copy = database + QStringLiteral("-wal");
    try {
        if (m_fetcher.fetch(log, copy, {}) == FetchOutcome::CopiedLocked)
            throw m_fetcher.lockedError(log);
        QString fault = faultOfLog(copy);
        if (QFileInfo(copy).size() == 0)
            fault = QStringLiteral("it is empty");
        if (!fault.isEmpty())
            tellLog(log, Error(fault, ErrorKind::Damaged, FileAccess::Reading).at(m_fetcher.displayPath(log)));
        return fault.isEmpty();
    } catch (const Error &error) {
        tellLog(log, Error(error.sentence(), error.kind(), FileAccess::Reading).at(m_fetcher.displayPath(log)));
    }
    QFile::remove(copy);
    return false;
}

/// Once, however often the database is fetched.
void PrivateCopies::tellLog(Index log, const Error &error)
{
    qWarning("The log %s is lost: %s", qUtf8Printable(error.where()), error.what());
    const std::lock_guard lock(m_reportMutex);
    if (m_toldLogs.contains(log))
        return;
    m_toldLogs.insert(log);
    m_report.add("IDS_ISSUE_DATABASE_LOG", error);
}

Report PrivateCopies::report() const
{
    const std::lock_guard lock(m_reportMutex);
    return m_report;
}

/// In the cache a database is one file, which no reader ever needs to write to.
QString PrivateCopies::keepDatabase(Index index, Index log, const QString &copy)
{
    if (m_cache->place(index).isEmpty())
        return copy;
    try {
        applyLog(copy);
    } catch (const Error &error) {
        qWarning("A database is not kept: %s", error.what());
        return copy;
    }
    setFileTimes(copy, m_catalogue.lastModified(index));
    return m_cache->keep(index, copy, log);
}

// What is kept of a database with a log is not what the backup stores under its name.
QString PrivateCopies::forViewing(Index index, const CopyProgress &progress)
{
    QString &copy = m_views[index];
    if (QFileInfo::exists(copy))
        return copy;
    const bool mayKeep = m_cache && logOf(index) == FileCatalogue::none;
    copy = mayKeep ? m_cache->current(index) : QString();
    if (copy.isEmpty()) {
        copy = fetch(index, "views", 0, progress);
        if (mayKeep)
            copy = m_cache->keep(index, copy);
    }
    return copy;
}

CacheOutcome PrivateCopies::cacheFile(Index index, const CopyProgress &progress)
{
    const QString place = m_cache ? m_cache->place(index) : QString();
    if (place.isEmpty() || !m_fetcher.hasContent(index) || m_fetcher.isLocked(index) || isCompanion(index))
        return CacheOutcome::LeftOut;
    const Index log = logOf(index);
    if (!m_cache->current(index, log).isEmpty())
        return CacheOutcome::Current;
    const bool hasLog = log != FileCatalogue::none;
    const QString copy = hasLog ? database(index, progress) : forViewing(index, progress);
    if (copy == place)
        return CacheOutcome::Copied;
    if (hasLog)
        return CacheOutcome::LeftOut; // it is good for this run only
    m_views.remove(index);
    QFile::remove(copy);
    throw Error(QStringLiteral("can not create %1. It cannot be moved into the cache.").arg(place));
}

void PrivateCopies::clear()
{
    m_databases.clear();
    m_views.clear();
}

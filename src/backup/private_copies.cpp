#include "backup/private_copies.h"

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

QString PrivateCopies::fetch(Index index, const char *kind, std::uint64_t spareBytes)
{
    if (m_fetcher.isLocked(index))
        throw Error(QStringLiteral("can not read %1, %2. It is of a class that the password does not unlock.")
                        .arg(QString::fromUtf8(m_catalogue.domain(index)),
                             QString::fromUtf8(m_catalogue.relativePath(index))));
    const auto size = static_cast<std::uint64_t>(QFileInfo(m_fetcher.path(index)).size());
    const QString copy =
        QStringLiteral("%1/%2/%3/%4")
            .arg(m_scratch.withRoomFor(size + spareBytes), QLatin1String(kind),
                 QString::fromLatin1(m_catalogue.fileId(index)), copyName(m_catalogue.relativePath(index)));
    m_fetcher.fetch(index, copy, {});
    return copy;
}

QString PrivateCopies::database(Index index)
{
    if (QString made = m_databases.value(index); QFileInfo::exists(made))
        return made;
    const QByteArray logPath = m_catalogue.relativePath(index).toByteArray() + "-wal";
    const Index log = m_catalogue.find(m_catalogue.domain(index), logPath);
    const bool hasLog = log != FileCatalogue::none && m_fetcher.hasContent(log);
    const qint64 logSize = hasLog ? QFileInfo(m_fetcher.path(log)).size() : 0;
    QString copy = fetch(index, "databases", static_cast<std::uint64_t>(logSize));
    if (logSize > 0)
        fetchLog(log, copy);
    m_databases.insert(index, copy);
    return copy;
}

/// A database without its log lacks the last changes; one that cannot be opened lacks everything.
void PrivateCopies::fetchLog(Index log, const QString &database)
{
    const QString copy = database + QStringLiteral("-wal");
    try {
        if (m_fetcher.fetch(log, copy, {}) != FetchOutcome::CopiedLocked)
            return;
        qWarning("The log of %s is of a class that the password does not unlock", qUtf8Printable(database));
    } catch (const Error &error) {
        qWarning("The log of %s is left out: %s", qUtf8Printable(database), error.what());
    }
    QFile::remove(copy);
}

QString PrivateCopies::forViewing(Index index)
{
    QString &copy = m_views[index];
    if (!QFileInfo::exists(copy)) {
        copy.clear();
        copy = fetch(index, "views", 0);
    }
    return copy;
}

void PrivateCopies::clear()
{
    m_databases.clear();
    m_views.clear();
}

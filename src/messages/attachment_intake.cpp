#include "messages/attachment_intake.h"

#include "base/contained_path.h"
#include "base/error.h"
#include "messages/attachment_content.h"

#include <QDir>
#include <QFileInfo>
#include <QStorageInfo>
#include <QUrl>

namespace {
constexpr qint64 fullDiskBytes = 1 << 20;

bool isDiskFull(const QString &folder, qint64 neededBytes)
{
    const qint64 available = QStorageInfo(folder).bytesAvailable();
    return available >= 0 && available < std::max(neededBytes, fullDiskBytes);
}

/// True when a file goes on where `beginning` ends. Anything else may be what another device had there.
bool isLongerFormOf(const QString &beginning, const QString &path)
{
    constexpr qint64 pieceBytes = 1 << 20;
    QFile part(beginning);
    QFile whole(path);
    if (!part.open(QIODevice::ReadOnly) || !whole.open(QIODevice::ReadOnly) || whole.size() <= part.size())
        return false;
    while (!part.atEnd()) {
        const QByteArray piece = part.read(pieceBytes);
        if (piece.isEmpty() || whole.read(piece.size()) != piece)
            return false;
    }
    return true;
}
} // namespace

AttachmentIntake::AttachmentIntake(const QString &folder, FileSource *source)
    : m_store(folder),
      m_source(source),
      m_journal(QDir(folder).filePath(QStringLiteral("Attachments/.incoming")))
{
}

AttachmentIntake::~AttachmentIntake()
{
    for (const SourceFile &place : m_taken)
        removeFile(place);
    removeJournal();
}

void AttachmentIntake::keep()
{
    m_taken.clear();
    removeJournal();
}

void AttachmentIntake::removeJournal()
{
    if (!m_journal.isOpen())
        return;
    m_journal.close();
    m_journal.remove();
    QDir(m_store.folder()).rmdir(QStringLiteral("Attachments")); // stays unless it is empty
}

void AttachmentIntake::removeLeftovers(const QString &folder,
                                       const std::function<bool(const QString &)> &isKnown)
{
    AttachmentIntake killed(folder, nullptr);
    if (!killed.m_journal.open(QIODevice::ReadOnly))
        return;
    while (!killed.m_journal.atEnd()) {
        const QList<QByteArray> words = killed.m_journal.readLine().trimmed().split(' ');
        if (words.size() == 2 && !isKnown(QUrl::fromPercentEncoding(words[0])))
            killed.m_taken.push_back({QString(), QUrl::fromPercentEncoding(words[1])});
    }
}

// Says what is about to come before it comes, so that it can be found after the process was killed.
void AttachmentIntake::note(const QString &guid, const SourceFile &place)
{
    if (!m_journal.isOpen() &&
        (!QDir().mkpath(QFileInfo(m_journal).path()) || !m_journal.open(QIODevice::WriteOnly)))
        throw Error::ofFile(QStringLiteral("can not write %1. %2"), m_journal, FileAccess::Writing);
    m_journal.write(QUrl::toPercentEncoding(guid) + ' ' + QUrl::toPercentEncoding(place.relativePath) + '\n');
    if (!m_journal.flush())
        throw Error::ofFile(QStringLiteral("can not write %1. %2"), m_journal, FileAccess::Writing);
    m_taken.push_back(place);
}

void AttachmentIntake::take(const _MsgAttachment &attachment, const QString &guid, const SourceFile &place)
{
    if (m_store.hasContent(place))
        return complete(attachment, m_store.localPath(place));
    if (const std::optional<Issue> loss = lossOf(attachment, m_source))
        return m_report.add(*loss);
    const std::optional<QString> destination = containedPath(m_store.folder(), place.relativePath);
    if (!destination || !staysBelow(m_store.folder(), *destination))
        return addFailure(m_report, attachment,
                          Error(QStringLiteral("There is no place for it in %1.").arg(m_store.folder()),
                                ErrorKind::Denied, FileAccess::Writing));
    note(guid, place);
    fetch(attachment, *destination);
}

void AttachmentIntake::fetch(const _MsgAttachment &attachment, const QString &destination)
{
    try {
        fetchContent(attachment, m_source, destination);
        ++m_report.done;
        noteShortfall(m_report, attachment, m_source, destination);
    } catch (const Error &error) {
        if (error.kind() == ErrorKind::NoSpace || isDiskFull(m_store.folder(), attachment.total_bytes))
            throw;
        addFailure(m_report, attachment, error);
    }
}

/// Takes the rest of a file whose beginning lies in the store: the backup that it came from had no more of it.
void AttachmentIntake::complete(const _MsgAttachment &attachment, const QString &stored)
{
    Report shortfall;
    noteShortfall(shortfall, attachment, m_source, stored);
    if (shortfall.isEmpty())
        return;
    try {
        const std::optional<QString> offered = viewableFile(attachment, m_source);
        if (offered && isLongerFormOf(stored, *offered))
            return fetch(attachment, stored);
    } catch (const Error &error) {
        addFailure(shortfall, attachment, error);
    }
    m_report.merge(shortfall);
}

void AttachmentIntake::removeFile(const SourceFile &file)
{
    const std::optional<QString> path = containedPath(m_store.folder(), file.relativePath);
    if (!path || !staysBelow(m_store.folder(), *path))
        return;
    QFile::remove(*path);
    // What a killed process had half written.
    QDir place = QFileInfo(*path).dir();
    const QStringList halves = place.entryList({QStringLiteral(".*.part")}, QDir::Files | QDir::Hidden);
    for (const QString &half : halves)
        place.remove(half);
    // The folders that it stood in, as far as they are empty now.
    for (QDir dir = QFileInfo(*path).dir(); dir.path() != m_store.folder() && dir.isEmpty();) {
        const QString name = dir.dirName();
        if (!dir.cdUp() || !dir.rmdir(name))
            break;
    }
}

#include "backup/extract.h"

#include "backup/export_memory.h"
#include "backup/extract_plan.h"
#include "backup/extract_progress.h"
#include "backup/extract_target.h"
#include "base/contained_path.h"
#include "base/error.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

namespace {
using Index = FileCatalogue::Index;

constexpr std::uint64_t cipherBlock = 16;
constexpr qsizetype longestNameBytes = 255;

/// FAT, which most memory sticks have, keeps even seconds only.
bool isTimeKept(qint64 there, qint64 time)
{
    return there == time || (there % 2 == 0 && std::abs(there - time) == 1);
}

std::size_t hashOf(const QString &place)
{
#if defined(Q_OS_WIN) || defined(Q_OS_MACOS)
    return qHash(place.toCaseFolded(), QHashSeed::globalSeed());
#else
    return qHash(place, QHashSeed::globalSeed());
#endif
}

/// "name(1).ending" and so on, as for any taken name: the base ends at the first dot, the ending begins after
/// the last. A base that fills its name makes room for the number.
QString numbered(const QString &path, int number)
{
    const QFileInfo info(path);
    const QString ending = info.suffix().isEmpty() ? QString() : QLatin1Char('.') + info.suffix();
    const QString end = QStringLiteral("(%1)%2").arg(QString::number(number), ending);
    QString base = info.baseName();
    while (!base.isEmpty() && base.toUtf8().size() + end.toUtf8().size() > longestNameBytes)
        base.chop(base.back().isLowSurrogate() ? 2 : 1);
    return info.path() + QLatin1Char('/') + base + end;
}

/// What happens to a file that lies in the place of one that is written, and was not written for it.
enum class Foreign {
    Replaced,
    Kept // it may be the export of another device, or anything of the user's
};

class Extraction
{
public:
    Extraction(BackupManifest &backup, const QString &target, Foreign foreign)
        : m_backup(backup),
          m_catalogue(backup.catalogue()),
          m_target(QDir(target).absolutePath()),
          m_foreign(foreign)
    {
    }

    Report run(const ExtractPlan &plan, Progress &progress);
    void noteMissing(const ExtractRequest &request)
    {
        m_report.add({.kind = IssueKind::Refused,
                      .what = fileFailed,
                      .where = QString::fromUtf8(request.domain + ' ' + request.relativePath),
                      .reason = QStringLiteral("the backup lists nothing there")});
    }

private:
    struct Folder
    {
        QString path;
        std::uint32_t time;
    };

    BackupManifest &m_backup;
    const FileCatalogue &m_catalogue;
    QString m_target;
    Foreign m_foreign;
    std::unique_ptr<ExportMemory> m_memory; // where foreign files are kept
    Report m_report;
    QSet<std::size_t> m_taken;          // hashes of the places used in this run
    QSet<std::size_t> m_takenByFolders; // those of them that are folders
    QHash<QString, int> m_numbers;      // the last number given to a place that was taken
    QHash<QString, QString> m_folderPlaces;
    QSet<QString> m_checkedFolders; // found to stay below the target
    std::vector<Folder> m_folders;

    void extract(Index record, const QByteArray &landing, ExtractProgress &progress);
    void extractFile(Index record, const QString &wanted, ExtractProgress &progress);
    void makeFolder(Index record, const QString &place);
    void fetch(Index record, const QString &place, ExtractProgress &progress);
    std::optional<QString> placeOf(Index record, const QByteArray &landing);
    QString folderPlace(const QString &folder);
    bool takesFolder(const QString &place);
    bool claim(const QString &place);
    QString numberedPlace(const QString &place);
    QString filePlace(Index record, const QString &place);
    bool isForeign(Index record, const QString &place) const;
    std::optional<ExportMemory::Entry> remembered(const QString &place) const;
    void remember(Index record, const QString &place) const;
    bool isWhole(Index record, const QString &place) const;
    bool isWholeSize(Index record, std::uint64_t size) const;
    bool staysInside(const QString &place);
    std::uint64_t storedSize(Index record) const;
    QByteArray sourceOf(Index record) const;
    QString where(Index record) const;
    void tell(IssueKind kind, const char *what, Index record, const QString &reason = {});
};

QString Extraction::where(Index record) const
{
    return QString::fromUtf8(m_catalogue.domain(record)) + QLatin1Char(' ') +
           QString::fromUtf8(m_catalogue.relativePath(record));
}

void Extraction::tell(IssueKind kind, const char *what, Index record, const QString &reason)
{
    m_report.add({.kind = kind, .what = what, .where = where(record), .reason = reason});
}

Report Extraction::run(const ExtractPlan &plan, Progress &progress)
{
    if (plan.items().empty())
        return m_report;
    requireTarget(m_target, m_backup.info().folder);
    if (m_foreign == Foreign::Kept)
        m_memory = std::make_unique<ExportMemory>(m_target);
    const auto files = std::count_if(plan.items().begin(), plan.items().end(), [this](const auto &item) {
        return !m_catalogue.isDirectory(item.record);
    });
    ExtractProgress watched(progress, files);
    for (const ExtractPlan::Item &item : plan.items()) {
        progress.check();
        extract(item.record, plan.landing(item), watched);
    }
    // Last, and from the bottom up: every file written into a folder changes the folder's time.
    for (auto folder = m_folders.crbegin(); folder != m_folders.crend(); ++folder)
        setFolderTime(folder->path, folder->time);
    return m_report;
}

void Extraction::extract(Index record, const QByteArray &landing, ExtractProgress &progress)
{
    const bool isFolder = m_catalogue.isDirectory(record);
    if (!isFolder)
        progress.file(QString::fromUtf8(landing.mid(landing.lastIndexOf('/') + 1)));
    if (landing.isEmpty() && isFolder)
        return;
    const std::optional<QString> place = placeOf(record, landing);
    if (!place)
        return;
    if (m_catalogue.isLink(record))
        tell(IssueKind::LeftOut, linkLeftOut, record);
    else if (isFolder)
        makeFolder(record, *place);
    else
        extractFile(record, *place, progress);
}

/// Where a record may be written. What would not stay inside the target is told.
std::optional<QString> Extraction::placeOf(Index record, const QByteArray &landing)
{
    QString why;
    const QString path = withoutDeviceNames(QString::fromUtf8(m_catalogue.relativePath(record)));
    std::optional<QString> place;
    if (path.isEmpty() || containedPath(m_target, path, &why)) {
        // The end of a harmless path may begin as a drive does.
        const QString end = QString::fromUtf8(landing).replace(QLatin1Char(':'), QLatin1Char('_'));
        place = containedPath(m_target, withoutDeviceNames(end), &why);
    }
    if (place && m_catalogue.isDirectory(record))
        place = folderPlace(*place);
    else if (place)
        place = folderPlace(QFileInfo(*place).path()) + QLatin1Char('/') + QFileInfo(*place).fileName();
    if (place && !staysInside(*place)) {
        why = QStringLiteral("a link in the target leads outside of it");
        place.reset();
    }
    if (!place)
        tell(IssueKind::Refused, fileFailed, record, why);
    return place;
}

bool Extraction::staysInside(const QString &place)
{
    const QString folder = QFileInfo(place).path();
    if (m_checkedFolders.contains(folder))
        return true;
    if (!staysBelow(m_target, folder))
        return false;
    m_checkedFolders.insert(folder);
    return true;
}

/// Where what lies in a folder goes: into the folder, or into a numbered one when a file has its place.
QString Extraction::folderPlace(const QString &folder)
{
    if (folder.size() <= m_target.size())
        return m_target;
    if (const auto known = m_folderPlaces.constFind(folder); known != m_folderPlaces.cend())
        return *known;
    const QFileInfo info(folder);
    const QString wanted = folderPlace(info.path()) + QLatin1Char('/') + info.fileName();
    QString place = wanted;
    while (!takesFolder(place))
        place = numbered(wanted, ++m_numbers[wanted]);
    m_folderPlaces.insert(folder, place);
    return place;
}

bool Extraction::takesFolder(const QString &place)
{
    const std::size_t hash = hashOf(place);
    if (m_takenByFolders.contains(hash))
        return true;
    // A link is found by whoever writes through it.
    const QFileInfo there(place);
    if ((there.exists() && !there.isDir() && !there.isSymLink()) || !claim(place))
        return false;
    m_takenByFolders.insert(hash);
    return true;
}

void Extraction::makeFolder(Index record, const QString &place)
{
    // A link in the folder's place was not made by an earlier run, and leads who knows where.
    if (QFileInfo(place).isSymLink() || !QDir().mkpath(place)) {
        tell(IssueKind::Refused, fileFailed, record, QStringLiteral("can not create %1.").arg(place));
        return;
    }
    if (m_catalogue.lastModified(record) != 0)
        m_folders.push_back({place, m_catalogue.lastModified(record)});
}

/// False when this run has used the place before.
bool Extraction::claim(const QString &place)
{
    const qsizetype before = m_taken.size();
    m_taken.insert(hashOf(place));
    return m_taken.size() > before;
}

QString Extraction::numberedPlace(const QString &place)
{
    int &number = m_numbers[place];
    QString candidate;
    do
        candidate = numbered(place, ++number);
    while (!claim(candidate));
    return candidate;
}

/// The place itself, or the first numbered one, that neither this run has used nor a file of others has.
QString Extraction::filePlace(Index record, const QString &place)
{
    QString chosen = claim(place) ? place : numberedPlace(place);
    while (m_memory && isForeign(record, chosen))
        chosen = numberedPlace(place);
    return chosen;
}

bool Extraction::isForeign(Index record, const QString &place) const
{
    const QFileInfo there(place);
    if (!there.exists() && !there.isSymLink())
        return false;
    const auto entry = remembered(place);
    return entry ? entry->source != sourceOf(record) : !isWhole(record, place);
}

QByteArray Extraction::sourceOf(Index record) const
{
    return ExportMemory::sourceOf(m_backup.info(), m_catalogue.domain(record),
                                  m_catalogue.relativePath(record));
}

std::optional<ExportMemory::Entry> Extraction::remembered(const QString &place) const
{
    return m_memory ? m_memory->at(place.sliced(m_target.size())) : std::nullopt;
}

void Extraction::remember(Index record, const QString &place) const
{
    if (m_memory)
        m_memory->remember(place.sliced(m_target.size()), {sourceOf(record), QFileInfo(place).size()});
}

std::uint64_t Extraction::storedSize(Index record) const
{
    return static_cast<std::uint64_t>(QFileInfo(m_backup.filePath(record)).size());
}

/// The length that the stored content makes; what the record says need not be true.
bool Extraction::isWholeSize(Index record, std::uint64_t size) const
{
    const std::uint64_t stored = storedSize(record);
    const bool isDecrypted = stored > 0 && m_backup.info().encrypted && !m_backup.isLocked(record) &&
                             !m_catalogue.encryptionKey(record).isEmpty();
    if (!isDecrypted)
        return size == stored;
    const auto fits = [stored](std::uint64_t bytes) {
        return bytes < stored && stored - bytes <= cipherBlock;
    };
    const std::uint64_t recorded = m_catalogue.sizeBytes(record);
    return fits(recorded) ? size == recorded : fits(size);
}

bool Extraction::isWhole(Index record, const QString &place) const
{
    const QFileInfo there(place);
    const std::uint32_t time = m_catalogue.lastModified(record);
    if (time == 0 || there.isSymLink() || !there.isFile() ||
        !isTimeKept(there.lastModified().toSecsSinceEpoch(), time))
        return false;
    const auto entry = remembered(place);
    return entry && entry->source == sourceOf(record)
               ? there.size() == entry->sizeBytes
               : isWholeSize(record, static_cast<std::uint64_t>(there.size()));
}

void Extraction::extractFile(Index record, const QString &wanted, ExtractProgress &progress)
{
    const QString place = filePlace(record, wanted);
    if (isWhole(record, place)) {
        m_report.add({.kind = IssueKind::Remark, .what = filesThere});
    } else {
        try {
            fetch(record, place, progress);
        } catch (const Error &error) {
            if (!hasRoom(m_target, storedSize(record)) || error.kind() == ErrorKind::NoSpace)
                throw;
            m_report.add(fileFailed, error.at(where(record)));
            return;
        }
        ++m_report.done;
        remember(record, place);
    }
    if (m_backup.isLocked(record))
        tell(IssueKind::Locked, fileLocked, record);
}

void Extraction::fetch(Index record, const QString &place, ExtractProgress &progress)
{
    const std::uint64_t size = storedSize(record);
    if (size == 0 && m_catalogue.sizeBytes(record) > 0 && QFileInfo::exists(m_backup.filePath(record)))
        throw Error(QStringLiteral("can not read %1. It is empty instead of %2 bytes long.")
                        .arg(m_backup.filePath(record))
                        .arg(m_catalogue.sizeBytes(record)),
                    ErrorKind::Damaged, FileAccess::Reading);
    if (!hasRoom(m_target, size))
        throw Error(
            QStringLiteral("can not write %1. The disk has no room for its %2 bytes.").arg(place).arg(size),
            ErrorKind::NoSpace, FileAccess::Writing);
    m_backup.fetchFile(record, place,
                       [&progress](std::uint64_t total, std::uint64_t done) { progress.bytes(total, done); });
}
} // namespace

Report extractFiles(BackupManifest &backup, const QList<ExtractRequest> &requests, const QString &target,
                    Progress &progress)
{
    ExtractPlan plan(backup);
    Extraction extraction(backup, target, Foreign::Replaced);
    QSet<std::pair<QByteArray, QByteArray>> asked;
    for (const ExtractRequest &request : requests) {
        const auto before = asked.size();
        asked.insert({request.domain, request.relativePath});
        if (asked.size() > before && !plan.add(request))
            extraction.noteMissing(request);
    }
    return extraction.run(plan, progress);
}

Report extractNodes(BackupManifest &backup, const std::vector<FileTree::Node> &nodes, const QString &target,
                    Progress &progress)
{
    ExtractPlan plan(backup);
    for (const FileTree::Node node : nodes)
        plan.add(node);
    return Extraction(backup, target, Foreign::Kept).run(plan, progress);
}

Report extractNamed(BackupManifest &backup, const QList<NamedExtract> &files, const QString &target,
                    Progress &progress)
{
    ExtractPlan plan(backup);
    for (const NamedExtract &file : files)
        plan.add(file);
    return Extraction(backup, target, Foreign::Kept).run(plan, progress);
}

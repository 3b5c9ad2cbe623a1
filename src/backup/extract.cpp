#include "backup/extract.h"

#include "backup/content_length.h"
#include "backup/export_memory.h"
#include "backup/extract_plan.h"
#include "backup/extract_progress.h"
#include "backup/extract_target.h"
#include "base/app_folders.h"
#include "base/error.h"
#include "base/file_names.h"
#include "base/own_file.h"
#include "base/source_guard.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QSet>

namespace {
using Index = FileCatalogue::Index;

constexpr std::uint64_t cipherBlock = 16;

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
    const QString ending = splitAtLastDot(info.fileName()).end;
    const QString base = ending.isEmpty() ? info.fileName() : info.baseName();
    return info.path() + QLatin1Char('/') +
           fittingFileName(base, QStringLiteral("(%1)").arg(number) + ending);
}

QString lastName(const QString &path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

/// Empty when no file is there.
QByteArray digestOf(const QString &path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha1);
    return file.open(QIODevice::ReadOnly) && hash.addData(&file) ? hash.result() : QByteArray();
}

/// What happens to a file that lies in the place of one that is written, and was not written for it.
enum class Foreign {
    Replaced,
    Kept // it may be the export of another device, or anything of the user's
};

class Extraction
{
public:
    Extraction(BackupManifest &backup, const QString &target, Foreign foreign, NameRules rules = ownNameRules)
        : m_backup(backup),
          m_catalogue(backup.catalogue()),
          m_target(QDir(target).absolutePath()),
          m_foreign(foreign),
          m_rules(rules)
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
    NameRules m_rules;
    std::unique_ptr<ExportMemory> m_memory; // where foreign files are kept
    Report m_report;
    QSet<std::size_t> m_taken;              // hashes of the places used in this run
    QHash<QString, int> m_numbers;          // the last number given to a place that was taken
    QHash<QString, QString> m_folderPlaces; // of folders by their path from the target, as the backup spells it
    QSet<QString> m_checkedFolders;         // found to stay below the target
    std::vector<Folder> m_folders;

    void extract(Index record, const QByteArray &landing, ExtractProgress &progress);
    void extractFile(Index record, const QString &landing, ExtractProgress &progress);
    void makeFolder(Index record, const QString &landing);
    void fetch(Index record, const QString &place, ExtractProgress &progress);
    bool mayLand(Index record, const QString &landing);
    QString folderPlace(Index record, const QString &landing);
    QString folderAbove(Index record, const QString &landing);
    bool takesFolder(const QString &place);
    void tellName(const QString &where, const QString &landing, const QString &place);
    bool claim(const QString &place);
    QString numberedPlace(const QString &place);
    QString filePlace(Index record, const QString &place);
    bool isForeign(Index record, const QString &place) const;
    std::optional<ExportMemory::Entry> remembered(const QString &place) const;
    void remember(Index record, const QString &place) const;
    bool isWhole(Index record, const QString &place) const;
    bool isWholeSize(Index record, std::uint64_t size) const;
    bool staysInside(const QString &folder);
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
    const SourceGuard localDatabases({localDatabasesFolder().path()}, SourceGuard::Reach::ThisThread);
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
    const QString path = QString::fromUtf8(landing);
    if (!mayLand(record, path))
        return;
    if (m_catalogue.isLink(record))
        tell(IssueKind::LeftOut, linkLeftOut, record);
    else if (isFolder)
        makeFolder(record, path);
    else
        extractFile(record, path, progress);
}

/// Tells what would not stay inside the target.
bool Extraction::mayLand(Index record, const QString &landing)
{
    const QString path = QString::fromUtf8(m_catalogue.relativePath(record));
    QString why = path.isEmpty() ? QString() : whyNotBelow(path, m_rules);
    if (why.isEmpty()) // the end of a harmless path may begin as a drive does
        why = whyNotBelow(QString(landing).replace(QLatin1Char(':'), QLatin1Char('_')), m_rules);
    if (why.isEmpty() && !staysInside(folderAbove(record, landing)))
        why = QStringLiteral("a link in the target leads outside of it");
    if (!why.isEmpty())
        tell(IssueKind::Refused, fileFailed, record, why);
    return why.isEmpty();
}

bool Extraction::staysInside(const QString &folder)
{
    if (m_checkedFolders.contains(folder))
        return true;
    if (!staysBelow(m_target, folder))
        return false;
    m_checkedFolders.insert(folder);
    return true;
}

/// Where what lies in a folder goes: into the folder, or into a numbered one when something else has its place.
QString Extraction::folderPlace(Index record, const QString &landing)
{
    if (landing.isEmpty())
        return m_target;
    if (const auto known = m_folderPlaces.constFind(landing); known != m_folderPlaces.cend())
        return *known;
    const QString wanted =
        folderAbove(record, landing) + QLatin1Char('/') + landingName(lastName(landing), m_rules);
    QString place = wanted;
    while (!takesFolder(place))
        place = numbered(wanted, ++m_numbers[wanted]);
    m_folderPlaces.insert(landing, place);
    tellName(where(record), landing, place);
    return place;
}

QString Extraction::folderAbove(Index record, const QString &landing)
{
    return folderPlace(record, landing.left(std::max<qsizetype>(landing.lastIndexOf(QLatin1Char('/')), 0)));
}

bool Extraction::takesFolder(const QString &place)
{
    // What is behind a link is for whoever writes there to find out.
    const QFileInfo there(place);
    return (!there.exists() || there.isDir() || there.isSymLink()) && claim(place);
}

/// Each file that got another name is told, and a folder once, with the first record that is it or lies in it.
void Extraction::tellName(const QString &where, const QString &landing, const QString &place)
{
    if (lastName(place) != lastName(landing))
        m_report.add({.kind = IssueKind::Renamed,
                      .what = fileRenamed,
                      .where = where,
                      .reason = place.sliced(m_target.size() + 1)});
}

void Extraction::makeFolder(Index record, const QString &landing)
{
    const QString place = folderPlace(record, landing);
    try {
        // A link in the folder's place was not made by an earlier run, and leads who knows where.
        makeOwnFolder(QFileInfo(place).path(), QFileInfo(place).fileName());
    } catch (const Error &error) {
        m_report.add(fileFailed, error.at(where(record)));
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

void Extraction::extractFile(Index record, const QString &landing, ExtractProgress &progress)
{
    const QString place = filePlace(
        record, folderAbove(record, landing) + QLatin1Char('/') + landingName(lastName(landing), m_rules));
    if (isWhole(record, place)) {
        m_report.add({.kind = IssueKind::Remark, .what = filesThere});
    } else {
        const QByteArray former = m_foreign == Foreign::Replaced ? digestOf(place) : QByteArray();
        try {
            fetch(record, place, progress);
        } catch (const Error &error) {
            if (!hasRoom(m_target, storedSize(record)) || error.kind() == ErrorKind::NoSpace)
                throw;
            m_report.add(fileFailed, error.at(where(record)));
            return;
        }
        ++m_report.done;
        if (!former.isEmpty() && former != digestOf(place))
            tell(IssueKind::Remark, fileReplaced, record);
        remember(record, place);
    }
    tellName(where(record), landing, place);
    if (m_backup.isLocked(record))
        tell(IssueKind::Locked, fileLocked, record);
    else if (const QString lack = shortfallOf(place, m_catalogue.sizeBytes(record)); !lack.isEmpty())
        tell(IssueKind::Damaged, fileCutOff, record, lack);
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
                    Progress &progress, NameRules rules)
{
    ExtractPlan plan(backup);
    Extraction extraction(backup, target, Foreign::Replaced, rules);
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

#include "backup/backup_manifest.h"

#include "backup/catalogue_loader.h"
#include "backup/decrypted_catalogue.h"
#include "backup/device_path.h"
#include "backup/file_fetcher.h"
#include "backup/plain_catalogue.h"
#include "backup/private_copies.h"
#include "backup/sqlite_header.h"
#include "backup/well_known_files.h"
#include "base/error.h"
#include "base/own_file.h"
#include "base/source_guard.h"
#include "base/texts.h"
#include "base/secret.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>

namespace {
using Index = FileCatalogue::Index;

constexpr qsizetype keyPrefixSize = 4;

/// The key of an encrypted "Manifest.db"; empty when there is none, or no class unwraps it.
QByteArray catalogueKey(const BackupInfo &info, const Keybag &keybag)
{
    if (info.manifestKey.size() <= keyPrefixSize)
        return {};
    return keybag.unwrapWithAnyClass(QByteArrayView(info.manifestKey).sliced(keyPrefixSize));
}

/// Hands on how far a password is checked, and about how many seconds are left once that can be told.
Keybag::RoundsDone unlockProgress(Progress &progress)
{
    constexpr qint64 shortestGuessMs = 1000;
    QElapsedTimer clock;
    clock.start();
    return [&progress, clock](std::uint64_t done, std::uint64_t total) {
        progress.check();
        const qint64 passed = clock.elapsed();
        const double left = static_cast<double>(passed) * static_cast<double>(total - done) / static_cast<double>(done);
        progress.report(textFor("IDS_CHECKING_PASSWORD"), static_cast<int>(done * 100 / total),
                        passed < shortestGuessMs
                            ? QString()
                            : textFor("IDS_CHECKING_PASSWORD_SECONDS", static_cast<qint64>(left / 1000) + 1));
    };
}

bool tellsEveryKind(const FileCatalogue &catalogue)
{
    for (Index i = 0; i < catalogue.size(); ++i)
        if (catalogue.mode(i) == 0)
            return false;
    return true;
}

/// A record whose kind the catalogue does not tell is a folder when something lies below it.
void tellFolders(FileCatalogue &catalogue, const FileTree &tree)
{
    if (tellsEveryKind(catalogue))
        return;
    std::vector<FileTree::Node> open = {FileTree::root};
    while (!open.empty()) {
        const FileTree::Node node = open.back();
        open.pop_back();
        const Index record = tree.record(node);
        if (record != FileCatalogue::none && tree.isFolder(node) && catalogue.mode(record) == 0)
            catalogue.setMode(record, modeDirectory);
        for (const FileTree::Node child : tree.children(node))
            if (tree.isFolder(child))
                open.push_back(child);
    }
}
} // namespace

/// What there is of a backup beyond its description.
struct BackupManifest::Opened
{
    explicit Opened(const BackupInfo &backup)
        : info(backup),
          scratch(backupUid(backup.folder)),
          fetcher(info, catalogue, keybag),
          copies(catalogue, fetcher, scratch)
    {
    }

    ~Opened() { wipe(password); }

    const BackupInfo &info;
    SourceGuard guard{{info.folder}};
    Keybag keybag;
    QByteArray password; // only until the catalogue is read
    ScratchFolder scratch;
    DecryptedCatalogue decrypted;
    FileCatalogue catalogue;
    FileTree tree;
    std::optional<WellKnownFiles> wellKnown;
    Report report;
    FileFetcher fetcher;
    PrivateCopies copies;
    std::unique_ptr<BackupFileCache> cache;

    Report load(FileCatalogue &into, Progress &progress);
    Index find(const SourceFile &file) const
    {
        return catalogue.find(file.domain.toUtf8(), file.relativePath.toUtf8());
    }
    Index findOrThrow(const SourceFile &file) const;
};

Report BackupManifest::Opened::load(FileCatalogue &into, Progress &progress)
{
    CatalogueLoader loader(into, progress);
    const bool isMbdb = info.layout == BackupLayout::Mbdb;
    const QString name = isMbdb ? QStringLiteral("Manifest.mbdb") : QStringLiteral("Manifest.db");
    QFile own;
    openOwnFile(own, info.folder, name); // whoever opens it by its path would follow a link
    if (isMbdb)
        return loader.loadMbdb(own.fileName());
    Report ofLog;
    const QString path =
        decrypted.path().isEmpty() ? plainCatalogue(info.folder, scratch, ofLog) : decrypted.path();
    Report report = loader.loadDatabase(path, password);
    report.merge(ofLog);
    return report;
}

Index BackupManifest::Opened::findOrThrow(const SourceFile &file) const
{
    const Index index = find(file);
    if (index == FileCatalogue::none)
        throw Error(QStringLiteral("The backup lists no file %1, %2.").arg(file.domain, file.relativePath));
    return index;
}

BackupManifest::BackupManifest(const QString &folder)
{
    m_info.folder = QDir(folder).absolutePath();
    d = std::make_unique<Opened>(m_info);
}

BackupManifest::~BackupManifest()
{
    close();
}

void BackupManifest::loadInfo()
{
    m_info = readBackupInfo(m_info.folder);
    d->report = m_info.report;
}

bool BackupManifest::openEncrypted(const QString &password)
{
    NoProgress progress;
    return openEncrypted(password, progress);
}

bool BackupManifest::openEncrypted(const QString &password, Progress &progress)
{
    const QDir folder(m_info.folder);
    const QString manifest = folder.filePath(QStringLiteral("Manifest.plist"));
    const QString catalogue = folder.filePath(QStringLiteral("Manifest.db"));
    QByteArray secret = password.toUtf8();
    const WipedAtEnd wipedSecret(secret);
    Keybag keybag;
    try {
        keybag = Keybag::parse(m_info.keybag);
        if (!keybag.unlock(secret, unlockProgress(progress)))
            return false;
    } catch (const Error &error) {
        throw error.withContext(manifest);
    }
    if (m_info.layout == BackupLayout::Modern && !hasSqliteHeader(catalogue)) {
        QByteArray key = catalogueKey(m_info, keybag);
        const WipedAtEnd wipedKey(key);
        if (key.isEmpty())
            throw Error(
                QStringLiteral("%1: the key that opens Manifest.db is missing or damaged.").arg(manifest));
        if (QFileInfo(catalogue).size() == 0)
            throw Error(QStringLiteral("can not read %1. The file is empty.").arg(catalogue));
        d->decrypted.make(m_info.folder, key, d->scratch);
    }
    d->keybag = std::move(keybag);
    d->password = std::exchange(secret, QByteArray());
    return true;
}

bool BackupManifest::isUnlocked() const
{
    return !m_info.encrypted || d->keybag.isUnlocked();
}

void BackupManifest::buildIndex(Progress &progress)
{
    if (hasIndex())
        return;
    if (!isUnlocked())
        throw Error(
            QStringLiteral("The backup in %1 is encrypted. Its password is needed.").arg(m_info.folder));
    FileCatalogue loaded;
    Report report;
    try {
        report = d->load(loaded, progress);
    } catch (const Error &error) {
        throw error.withContext(m_info.folder);
    }
    loaded.squeeze();
    progress.check();
    d->report.merge(report);
    d->catalogue = std::move(loaded);
    d->tree = FileTree::build(d->catalogue);
    tellFolders(d->catalogue, d->tree);
    d->wellKnown.emplace(d->catalogue);
    d->decrypted.remove();
    wipe(d->password);
}

bool BackupManifest::hasIndex() const
{
    return d->wellKnown.has_value();
}

Report BackupManifest::report() const
{
    Report all = d->report;
    all.merge(d->copies.report());
    return all;
}

const FileCatalogue &BackupManifest::catalogue() const
{
    return d->catalogue;
}

const FileTree &BackupManifest::tree() const
{
    return d->tree;
}

Index BackupManifest::wellKnown(WellKnown kind) const
{
    return d->wellKnown ? d->wellKnown->file(kind) : FileCatalogue::none;
}

const QHash<QByteArray, Index> &BackupManifest::wellKnownGroup(WellKnownGroup group) const
{
    static const QHash<QByteArray, Index> noFiles;
    return d->wellKnown ? d->wellKnown->group(group) : noFiles;
}

QString BackupManifest::filePath(Index index) const
{
    return d->fetcher.path(index);
}

bool BackupManifest::isLocked(Index index) const
{
    return d->fetcher.isLocked(index);
}

FetchOutcome BackupManifest::fetchFile(Index index, const QString &destination, const CopyProgress &progress)
{
    if (index == FileCatalogue::none)
        return FetchOutcome::Copied;
    return d->fetcher.fetch(index, destination, progress);
}

Index BackupManifest::firstEncryptedItem() const
{
    return d->fetcher.firstEncryptedItem();
}

void BackupManifest::attachCache()
{
    d->cache = std::make_unique<BackupFileCache>(backupUid(m_info.folder), d->catalogue, d->tree);
    d->copies.setCache(d->cache.get());
}

void BackupManifest::retireCache()
{
    if (d->cache)
        d->cache->retire();
}

CacheOutcome BackupManifest::cacheFile(Index index, const CopyProgress &progress)
{
    return d->copies.cacheFile(index, progress);
}

void BackupManifest::close()
{
    d->copies.clear();
    d->decrypted.remove();
    d->scratch.remove();
}

bool BackupManifest::hasContent(const SourceFile &file) const
{
    const Index index = d->find(file);
    return index != FileCatalogue::none && d->fetcher.hasContent(index);
}

bool BackupManifest::lists(const SourceFile &file) const
{
    return d->find(file) != FileCatalogue::none;
}

std::optional<QString> BackupManifest::fetchDatabase(const SourceFile &file)
{
    const Index index = d->find(file);
    if (index == FileCatalogue::none || d->catalogue.isDirectory(index))
        return std::nullopt;
    return d->copies.database(index, {});
}

QString BackupManifest::fetchDatabase(Index index, const CopyProgress &progress)
{
    return d->copies.database(index, progress);
}

void BackupManifest::fetchTo(const SourceFile &file, const QString &destination, const CopyProgress &progress)
{
    fetchFile(d->findOrThrow(file), destination, progress);
}

bool BackupManifest::isLocked(const SourceFile &file) const
{
    const Index index = d->find(file);
    return index != FileCatalogue::none && d->fetcher.isLocked(index);
}

std::uint64_t BackupManifest::listedBytes(const SourceFile &file) const
{
    const Index index = d->find(file);
    return index == FileCatalogue::none ? 0 : d->catalogue.sizeBytes(index);
}

/// Real backups keep some files of the home folder in MediaDomain. When both domains list one, the domain
/// that has the content is meant.
SourceFile BackupManifest::fileOfDevicePath(const QString &devicePath) const
{
    const QString relativePath = pathInDomain(devicePath);
    const SourceFile home{QStringLiteral("HomeDomain"), relativePath};
    const SourceFile media{QStringLiteral("MediaDomain"), relativePath};
    if (relativePath.isEmpty())
        return {};
    const bool inHome = d->find(home) != FileCatalogue::none;
    const bool inMedia = d->find(media) != FileCatalogue::none;
    if (inHome && inMedia)
        return hasContent(home) || !hasContent(media) ? home : media;
    return inHome ? home : inMedia ? media : SourceFile();
}

QString BackupManifest::fetchForViewing(const SourceFile &file)
{
    return d->copies.forViewing(d->findOrThrow(file));
}

qint64 BackupManifest::takenAt() const
{
    return m_info.backupDate.isValid() ? m_info.backupDate.toSecsSinceEpoch() : 0;
}

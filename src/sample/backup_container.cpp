#include "sample/backup_container.h"

#include "base/error.h"
#include "sample/cipher.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>

namespace sample {

namespace {

constexpr int folderMode = 0040755;
constexpr int fileMode = 0100644;
constexpr int linkMode = 0120755;

Error cannotWrite(const QFile &file)
{
    return Error(QStringLiteral("can not write %1. %2").arg(file.fileName(), file.errorString()));
}

QByteArray sha1Of(QIODevice &content)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    if (!hash.addData(&content))
        throw Error(content.errorString());
    content.seek(0);
    return hash.result();
}

void copyContent(QIODevice &from, QIODevice &to)
{
    while (!from.atEnd()) {
        const QByteArray piece = from.read(1 << 20);
        if (piece.isEmpty() || to.write(piece) != piece.size())
            throw Error(piece.isEmpty() ? from.errorString() : to.errorString());
    }
}

} // namespace

void prepareFolder(const QString &folder)
{
    const QDir dir(folder);
    if (dir.exists() && !dir.isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot))
        throw Error(QStringLiteral("%1 is not empty.").arg(folder));
    if (!dir.mkpath(QStringLiteral(".")))
        throw Error(QStringLiteral("can not create %1.").arg(folder));
}

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush())
        throw cannotWrite(file);
}

void setModified(const QString &path, qint64 modified)
{
    QFile file(path);
    const QDateTime time = QDateTime::fromSecsSinceEpoch(modified, Qt::UTC);
    if (!file.open(QIODevice::ReadWrite) || !file.setFileTime(time, QFileDevice::FileModificationTime))
        throw cannotWrite(file);
}

BackupContainer::BackupContainer(const SampleOptions &options, std::unique_ptr<CatalogueWriter> catalogue,
                                 const KeybagWriter *keybag, SeededGenerator chance)
    : m_folder(options.folder),
      m_layout(options.layout),
      m_catalogue(std::move(catalogue)),
      m_keybag(keybag),
      m_chance(chance)
{
}

CatalogueRecord BackupContainer::record(const FilePlace &place, CatalogueRecord::Kind kind)
{
    CatalogueRecord result;
    result.kind = kind;
    result.domain = place.domain;
    result.relativePath = place.relativePath;
    result.mode = kind == CatalogueRecord::File     ? fileMode
                  : kind == CatalogueRecord::Folder ? folderMode
                                                    : linkMode;
    result.inode = ++m_inode;
    result.modified = place.modified;
    result.statusChanged = place.modified + 5;
    result.born = place.modified - 60;
    return result;
}

void BackupContainer::addRow(const CatalogueRecord &record)
{
    ++m_rows;
    m_catalogue->add(record);
}

void BackupContainer::putFolder(const QString &domain, const QString &relativePath, qint64 modified)
{
    const QString key = domain + QLatin1Char('\n') + relativePath;
    if (m_knownFolders.contains(key))
        return;
    m_knownFolders.insert(key);
    addRow(record({domain, relativePath, modified}, CatalogueRecord::Folder));
}

void BackupContainer::addParents(const FilePlace &place)
{
    putFolder(place.domain, QString(), place.modified);
    for (qsizetype slash = place.relativePath.indexOf(u'/'); slash > 0;
         slash = place.relativePath.indexOf(u'/', slash + 1))
        putFolder(place.domain, place.relativePath.left(slash), place.modified);
}

QByteArray BackupContainer::newFileKey()
{
    return m_keybag ? m_chance.bytes(32) : QByteArray();
}

void BackupContainer::addFileRow(const FilePlace &place, qint64 size, const QByteArray &sha1,
                                 const QByteArray &fileKey, bool stored)
{
    CatalogueRecord row = record(place, CatalogueRecord::File);
    row.size = size + place.sizeDifference;
    row.protectionClass = place.protectionClass;
    if (m_rows % 2 == 0)
        row.digest = sha1;
    if (m_rows % 5 == 0)
        row.extendedAttributes = m_chance.bytes(24);
    static constexpr int propertyCounts[] = {0, 0, 1, 0, 11, 0, 12};
    for (int i = 0; i < propertyCounts[m_rows % 7]; ++i)
        row.properties.emplace_back("com.sample.attribute." + QByteArray::number(i),
                                    m_chance.bytes(20 + i * 7));
    if (!fileKey.isEmpty())
        row.encryptionKey = m_keybag->wrapForClass(place.protectionClass, fileKey);
    else if (place.odd)
        row.encryptionKey = QByteArray("\x03\0\0\0", 4) + m_chance.bytes(40);
    if (place.odd)
        row.kind = CatalogueRecord::Unmarked;
    addRow(row);

    SampleFile file;
    file.domain = place.domain;
    file.relativePath = place.relativePath;
    file.fileId = row.fileId();
    file.sha1 = stored ? sha1 : QByteArray();
    file.sizeBytes = size;
    file.cataloguedSize = row.size;
    file.modified = place.modified;
    file.protectionClass = place.protectionClass;
    file.stored = stored;
    file.locked = m_keybag && place.protectionClass == KeybagWriter::deviceOnlyClass;
    m_files.push_back(file);
}

QString BackupContainer::storedPath(const QString &fileId) const
{
    if (m_layout == SampleOptions::Layout::Mbdb)
        return m_folder + QLatin1Char('/') + fileId;
    const QString folder = m_folder + QLatin1Char('/') + fileId.left(2);
    if (!QDir().mkpath(folder))
        throw Error(QStringLiteral("can not create %1.").arg(folder));
    return folder + QLatin1Char('/') + fileId;
}

void BackupContainer::writeStored(const QString &path, QIODevice &content, const QByteArray &fileKey,
                                  qint64 modified)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        throw cannotWrite(file);
    // An empty file is found both ways in real backups: without a byte, and as one block of padding.
    const bool nothing = content.size() == 0 && m_rows % 2 == 0;
    if (fileKey.isEmpty())
        copyContent(content, file);
    else if (!nothing)
        encryptContent(fileKey, content, file);
    if (!file.flush())
        throw cannotWrite(file);
    file.close();
    setModified(path, modified);
}

void BackupContainer::put(const FilePlace &place, const QByteArray &content)
{
    addParents(place);
    QBuffer buffer;
    buffer.setData(content);
    buffer.open(QIODevice::ReadOnly);
    const QByteArray key = newFileKey();
    addFileRow(place, content.size(), sha1Of(buffer), key, true);
    writeStored(storedPath(m_files.back().fileId), buffer, key, place.modified);
}

void BackupContainer::putFile(const FilePlace &place, const QString &localPath)
{
    addParents(place);
    QFile local(localPath);
    if (!local.open(QIODevice::ReadOnly))
        throw Error(QStringLiteral("can not open %1. %2").arg(localPath, local.errorString()));
    const QByteArray key = newFileKey();
    addFileRow(place, local.size(), sha1Of(local), key, true);
    const QString target = storedPath(m_files.back().fileId);
    if (key.isEmpty() && local.rename(target)) {
        setModified(target, place.modified);
        return;
    }
    writeStored(target, local, key, place.modified);
    local.remove();
}

void BackupContainer::putRowAlone(const FilePlace &place, qint64 size)
{
    addParents(place);
    addFileRow(place, size, QByteArray(), newFileKey(), false);
}

void BackupContainer::putLink(const FilePlace &place, const QString &target)
{
    addParents(place);
    CatalogueRecord row = record(place, CatalogueRecord::Link);
    row.target = target;
    addRow(row);
}

void BackupContainer::finish()
{
    m_catalogue->finish();
    m_catalogue.reset();
}

} // namespace sample

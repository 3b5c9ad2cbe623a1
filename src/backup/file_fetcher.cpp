#include "backup/file_fetcher.h"

#include "backup/target_file.h"
#include "base/error.h"

#include <QDir>
#include <QFileInfo>

namespace {
constexpr qsizetype keyPrefixSize = 4;
} // namespace

void setFileTimes(const QString &path, std::uint32_t unixSeconds)
{
    if (unixSeconds == 0)
        return;
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly) || !setTimes(file, unixSeconds))
        qWarning("The time of %s cannot be set: %s", qUtf8Printable(path),
                 qUtf8Printable(file.errorString()));
}

FileFetcher::FileFetcher(const BackupInfo &info, const FileCatalogue &catalogue, const Keybag &keybag)
    : m_info(info), m_catalogue(catalogue), m_keybag(keybag)
{
}

QString FileFetcher::path(Index index) const
{
    const QString id = QString::fromLatin1(m_catalogue.fileId(index));
    if (m_info.layout == BackupLayout::Mbdb)
        return m_info.folder + QLatin1Char('/') + id;
    return QStringLiteral("%1/%2/%3").arg(m_info.folder, id.first(2), id);
}

bool FileFetcher::hasContent(Index index) const
{
    return !m_catalogue.isDirectory(index) && !m_catalogue.isLink(index) && QFileInfo(path(index)).isFile();
}

QByteArray FileFetcher::key(Index index) const
{
    const QByteArrayView wrapped = m_catalogue.encryptionKey(index);
    if (!m_info.encrypted || wrapped.size() <= keyPrefixSize)
        return {};
    return m_keybag.unwrapFileKey(m_catalogue.protectionClass(index), wrapped.sliced(keyPrefixSize));
}

bool FileFetcher::isLocked(Index index) const
{
    return m_info.encrypted && !m_catalogue.encryptionKey(index).isEmpty() && key(index).isEmpty();
}

QString FileFetcher::displayPath(Index index) const
{
    return QString::fromUtf8(m_catalogue.domain(index)) + QLatin1String(", ") +
           QString::fromUtf8(m_catalogue.relativePath(index));
}

/// Also keeps pipes and devices away, which a folder of unknown origin may hold: reading them never ends.
void FileFetcher::requireFile(Index index) const
{
    if (m_catalogue.isDirectory(index))
        throw Error(QStringLiteral("%1 is a folder and has no content.").arg(displayPath(index)));
    if (m_catalogue.isLink(index))
        throw Error(QStringLiteral("%1 is a symbolic link and has no content.").arg(displayPath(index)));
    const QFileInfo source(path(index));
    if (source.exists() && !source.isFile())
        throw Error(QStringLiteral("can not open %1. It is no file.").arg(source.filePath()));
}

FetchOutcome FileFetcher::fetch(Index index, const QString &destination, const CopyProgress &progress) const
{
    requireFile(index);
    const QByteArray fileKey = key(index);
    const Destination place{destination, m_catalogue.lastModified(index)};
    FetchOutcome outcome = FetchOutcome::Decrypted;
    if (fileKey.isEmpty()) {
        copyFile(path(index), place, progress);
        outcome = isLocked(index) ? FetchOutcome::CopiedLocked : FetchOutcome::Copied;
    } else {
        try {
            decryptFile(fileKey, path(index), place, progress);
        } catch (const Error &error) {
            if (error.sentence().contains(path(index)))
                throw;
            throw error.withContext(displayPath(index));
        }
    }
    return outcome;
}

FileFetcher::Index FileFetcher::firstEncryptedItem() const
{
    for (Index i = 0; i < m_catalogue.size(); ++i)
        if (!key(i).isEmpty())
            return i;
    throw Error(QStringLiteral("BackupManifest::firstEncryptedItem, no valid keys"));
}

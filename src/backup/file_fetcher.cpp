#include "backup/file_fetcher.h"

#include "backup/target_file.h"
#include "base/error.h"
#include "base/own_file.h"
#include "base/secret.h"

#include <QDir>
#include <QFileInfo>
#include <QtEndian>

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

CopySource FileFetcher::stored(Index index) const
{
    const QString id = QString::fromLatin1(m_catalogue.fileId(index));
    return {m_info.folder, m_info.layout == BackupLayout::Mbdb ? id : id.first(2) + QLatin1Char('/') + id};
}

bool FileFetcher::hasContent(Index index) const
{
    if (m_catalogue.isDirectory(index) || m_catalogue.isLink(index))
        return false;
    const CopySource content = stored(index);
    return isOwnFile(content.folder, content.name);
}

QByteArray FileFetcher::key(Index index) const
{
    const QByteArrayView stored = m_catalogue.encryptionKey(index);
    if (!m_info.encrypted || stored.size() <= keyPrefixSize)
        return {};
    const QByteArrayView wrapped = stored.sliced(keyPrefixSize);
    QByteArray key = m_keybag.unwrapFileKey(m_catalogue.protectionClass(index), wrapped);
    // A record may lack its class, which stands before the key too.
    if (key.isEmpty())
        key = m_keybag.unwrapFileKey(qFromLittleEndian<std::uint32_t>(stored.data()), wrapped);
    return key;
}

/// Some plain backups say that they are encrypted: no file of theirs has a key.
bool FileFetcher::anyFileHasKey() const
{
    std::call_once(m_keysSought, [this] {
        for (Index i = 0; !m_anyFileHasKey && i < m_catalogue.size(); ++i)
            m_anyFileHasKey = !m_catalogue.encryptionKey(i).isEmpty();
    });
    return m_anyFileHasKey;
}

/// Without a key of its own, whatever a file of an encrypted backup holds is ciphertext: its record was not
/// readable. Only nothing is nothing either way.
bool FileFetcher::isLocked(Index index) const
{
    const bool hasKey = !m_catalogue.encryptionKey(index).isEmpty();
    if (m_info.isManifestDamaged)
        return hasKey;
    if (!m_info.encrypted || m_catalogue.isDirectory(index) || m_catalogue.isLink(index))
        return false;
    if (hasKey)
        return key(index).isEmpty();
    return anyFileHasKey() && QFileInfo(path(index)).size() > 0;
}

QString FileFetcher::displayPath(Index index) const
{
    return QString::fromUtf8(m_catalogue.domain(index)) + QLatin1Char(' ') +
           QString::fromUtf8(m_catalogue.relativePath(index));
}

Error FileFetcher::lockedError(Index index) const
{
    return Error(QStringLiteral("can not read %1. The password does not unlock it.").arg(displayPath(index)),
                 ErrorKind::Locked, FileAccess::Reading)
        .at(displayPath(index));
}

void FileFetcher::requireFile(Index index) const
{
    if (m_catalogue.isDirectory(index))
        throw Error(QStringLiteral("it is a folder and has no content."));
    if (m_catalogue.isLink(index))
        throw Error(QStringLiteral("it is a symbolic link and has no content."));
}

FetchOutcome FileFetcher::fetch(Index index, const QString &destination, const CopyProgress &progress) const
{
    QByteArray fileKey = key(index);
    const WipedAtEnd wiped(fileKey);
    const Destination place{destination, m_catalogue.lastModified(index)};
    try {
        requireFile(index);
        if (!fileKey.isEmpty()) {
            decryptFile(fileKey, stored(index), place, progress);
            return FetchOutcome::Decrypted;
        }
        copyFile(stored(index), place, progress);
    } catch (const Error &error) {
        const bool isNamed = error.isWriting() || error.sentence().contains(path(index));
        throw (isNamed ? error : error.withContext(displayPath(index))).at(displayPath(index));
    }
    return isLocked(index) ? FetchOutcome::CopiedLocked : FetchOutcome::Copied;
}

FileFetcher::Index FileFetcher::firstEncryptedItem() const
{
    for (Index i = 0; i < m_catalogue.size(); ++i)
        if (!key(i).isEmpty())
            return i;
    throw Error(QStringLiteral("BackupManifest::firstEncryptedItem, no valid keys"));
}

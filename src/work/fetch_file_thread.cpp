#include "work/fetch_file_thread.h"

#include "base/error.h"
#include "base/file_names.h"
#include "work/opened_files.h"

#include <QFileInfo>

bool isTooLargeToOpen(const BackupManifest &backup, FileCatalogue::Index file)
{
    // What a record says of the size need not be true, and what is stored may be padded by a block.
    constexpr qint64 cipherBlock = 16;
    return backup.catalogue().sizeBytes(file) > largestOpenedBytes ||
           QFileInfo(backup.filePath(file)).size() > qint64{largestOpenedBytes} + cipherBlock;
}

QString openedCopyPath(const BackupManifest &backup, FileCatalogue::Index file)
{
    const QString device = safeFileName(backup.info().deviceId);
    const QString name =
        QString::fromUtf8(backup.catalogue().relativePath(file)).section(QLatin1Char('/'), -1);
    const QString prefix = device.isEmpty() ? backupUid(backup.info().folder) : device;
    return placeToOpen(backupUid(backup.info().folder), QString::fromLatin1(backup.catalogue().fileId(file)),
                       prefix + QLatin1Char('-') + name);
}

FetchFileThread::FetchFileThread(OpenBackupPtr backup, FileCatalogue::Index file, QString destination)
    : m_backup(std::move(backup)), m_file(file), m_path(std::move(destination))
{
}

QString FetchFileThread::work(Progress &progress)
{
    const BackupUse use(*m_backup, progress);
    BackupManifest &manifest = m_backup->manifest();
    if (m_path.isEmpty()) {
        const FileCatalogue &catalogue = manifest.catalogue();
        m_path = manifest.fetchForViewing(
            {QString::fromUtf8(catalogue.domain(m_file)), QString::fromUtf8(catalogue.relativePath(m_file))});
    } else {
        if (manifest.isLocked(m_file))
            throw Error(QStringLiteral("can not read %1. It is of a class that the password does not unlock.")
                            .arg(QString::fromUtf8(manifest.catalogue().relativePath(m_file))));
        manifest.fetchFile(m_file, m_path, [&progress](std::uint64_t, std::uint64_t) { progress.check(); });
    }
    return {};
}

#include "export/attachment_copies.h"

#include "backup/file_source.h"
#include "base/error.h"
#include "export/output_file.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>

#include <algorithm>

namespace {
constexpr qint64 probeBytes = 64 * 1024;

QString fileNameOf(const _MsgAttachment &attachment)
{
    // The name comes from the device and may hold anything.
    const QString name = attachment.displayName();
    const qsizetype slash = std::max(name.lastIndexOf(QLatin1Char('/')), name.lastIndexOf(QLatin1Char('\\')));
    return portableFileName(name.mid(slash + 1), QStringLiteral("attachment"));
}

void copyWithTime(const QString &from, const QString &to, const CopyProgress &progress)
{
    copyFile(from, to, progress);
    QFile copy(to);
    if (copy.open(QIODevice::ReadWrite | QIODevice::ExistingOnly))
        copy.setFileTime(QFileInfo(from).lastModified(), QFileDevice::FileModificationTime);
}
} // namespace

void makeFolder(const QString &path)
{
    if (!QDir().mkpath(path))
        throw Error(QStringLiteral("can not create the folder %1.").arg(path));
}

AttachmentCopies::AttachmentCopies(const QString &folder, FileSource *source, Progress &progress,
                                   MessageExportSummary &summary)
    : m_folder(folder),
      m_source(source),
      m_progress(progress),
      m_summary(summary),
      m_names((makeFolder(folder), folder))
{
}

QString AttachmentCopies::copy(const _MsgAttachment &attachment)
{
    const QString wanted = fileNameOf(attachment);
    const bool isLocal = !attachment.local_path.isEmpty() && QFileInfo(attachment.local_path).isFile();
    if (!isLocal && (!m_source || attachment.source.isNull()))
        return missing(wanted, QStringLiteral("The backup does not list the file."));
    if (!isLocal && !m_source->hasContent(attachment.source))
        return missing(wanted, QStringLiteral("The backup lists the file but does not hold it."));

    const QString name = m_names.take(wanted);
    const QString target = pathOf(name);
    const CopyProgress stopWhenAsked = [this](std::uint64_t, std::uint64_t) { m_progress.check(); };
    try {
        if (isLocal)
            copyWithTime(attachment.local_path, target, stopWhenAsked);
        else
            m_source->fetchTo(attachment.source, target, stopWhenAsked);
    } catch (const Error &error) {
        m_names.release(name);
        // The sentence names the file that could not be written or the one that could not be read.
        if (error.sentence().contains(target))
            requireTargetWorks(attachment.total_bytes);
        return missing(wanted, error.sentence());
    }
    if (!isLocal && m_source->isLocked(attachment.source))
        m_summary.lockedFiles += name;
    ++m_summary.attachmentsCopied;
    return name;
}

QString AttachmentCopies::missing(const QString &name, const QString &reason)
{
    m_summary.missingAttachments += QStringLiteral("%1: %2").arg(name, reason);
    return {};
}

/// A file could not be written. When that lies in the folder and not in the file, every other one would fail
/// too.
void AttachmentCopies::requireTargetWorks(qint64 neededBytes) const
{
    const QString probe = pathOf(QStringLiteral(".probe"));
    writeWholeFile(probe, QByteArray(probeBytes, '\0'));
    QFile::remove(probe);
    const QStorageInfo disk(m_folder);
    if (disk.isValid() && disk.bytesAvailable() < std::max(neededBytes, probeBytes))
        throw Error(QStringLiteral("There is no room left on the disk of %1.").arg(m_folder));
}

#include "export/attachment_copies.h"

#include "base/error.h"
#include "base/source_guard.h"
#include "export/attachment_file.h"
#include "export/output_file.h"
#include "messages/attachment_content.h"

#include <QDir>
#include <QFile>
#include <QStorageInfo>

#include <algorithm>

namespace {
constexpr qint64 probeBytes = 64 * 1024;
} // namespace

void makeFolder(const QString &path)
{
    SourceGuard::requireOutside(path);
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
    if (const QString reason = whyMissing(attachment, m_source); !reason.isEmpty())
        return missing(attachment, reason);

    const QString name = m_names.take(attachmentFileName(attachment));
    const QString target = pathOf(name);
    const CopyProgress stopWhenAsked = [this](std::uint64_t, std::uint64_t) { m_progress.check(); };
    try {
        fetchContent(attachment, m_source, target, stopWhenAsked);
    } catch (const Error &error) {
        m_names.release(name);
        // The sentence names the file that could not be written or the one that could not be read.
        if (error.sentence().contains(target))
            requireTargetWorks(attachment.total_bytes);
        return missing(attachment, error.sentence());
    }
    if (isLocked(attachment, m_source))
        m_summary.lockedFiles += name;
    ++m_summary.attachmentsCopied;
    return name;
}

QString AttachmentCopies::missing(const _MsgAttachment &attachment, const QString &reason)
{
    m_summary.missingAttachments += missingAttachmentText(attachment, reason);
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

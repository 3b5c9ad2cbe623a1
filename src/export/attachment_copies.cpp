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
                                   ExportedMessages &exported)
    : m_folder(folder),
      m_source(source),
      m_progress(progress),
      m_exported(exported),
      m_names((makeFolder(folder), folder))
{
}

QString AttachmentCopies::copy(const _MsgAttachment &attachment)
{
    const std::optional<Issue> loss = lossOf(attachment, m_source);
    if (loss)
        m_exported.report.add(*loss);
    if (loss && loss->kind != IssueKind::Locked)
        return {};

    const QString name = m_names.take(attachmentFileName(attachment));
    const QString target = pathOf(name);
    const CopyProgress stopWhenAsked = [this](std::uint64_t, std::uint64_t) { m_progress.check(); };
    try {
        fetchContent(attachment, m_source, target, stopWhenAsked);
    } catch (const Error &error) {
        m_names.release(name);
        if (error.kind() == ErrorKind::NoSpace)
            throw;
        if (error.isWriting())
            requireTargetWorks(attachment.total_bytes);
        addFailure(m_exported.report, attachment, error);
        return {};
    }
    noteShortfall(m_exported.report, attachment, m_source, target);
    ++m_exported.attachmentsCopied;
    return name;
}

void AttachmentCopies::noteBadPicture(const _MsgAttachment &attachment)
{
    m_exported.report.add(badPicture(attachment));
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
        throw Error(QStringLiteral("There is no room left on the disk of %1.").arg(m_folder),
                    ErrorKind::NoSpace, FileAccess::Writing);
}

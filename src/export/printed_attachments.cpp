#include "export/printed_attachments.h"

#include "base/error.h"
#include "export/attachment_file.h"
#include "export/message_text.h"
#include "export/thumbnails.h"
#include "messages/attachment_content.h"

#include <QFile>

FetchedAttachments::FetchedAttachments(FileSource *source, Progress &progress, MessageExportSummary &summary)
    : m_source(source), m_progress(progress), m_summary(summary)
{
}

QImage FetchedAttachments::picture(const _MsgAttachment &attachment)
{
    const bool isCard = attachmentKind(attachment.mime_type) == AttachmentKind::VCard;
    QImage result;
    withFile(attachment,
             [&](const QString &path) { result = isCard ? vCardImage(path) : thumbnailImage(path); });
    return result;
}

PrintedAttachments::Text FetchedAttachments::text(const _MsgAttachment &attachment)
{
    Text result;
    withFile(attachment, [&](const QString &path) {
        QFile file(path);
        result.isThere = file.open(QIODevice::ReadOnly);
        if (result.isThere && file.size() <= longestShownTextBytes)
            result.content = QString::fromUtf8(file.readAll());
    });
    return result;
}

void FetchedAttachments::withFile(const _MsgAttachment &attachment,
                                  const std::function<void(const QString &path)> &read)
{
    const auto missing = [&](const QString &reason) {
        m_summary.missingAttachments += missingAttachmentText(attachment, reason);
    };
    if (const QString reason = whyMissing(attachment, m_source); !reason.isEmpty()) {
        missing(reason);
        return;
    }
    if (isLocal(attachment)) {
        read(attachment.local_path);
        return;
    }
    if (isLocked(attachment, m_source)) {
        missing(QStringLiteral("The password does not unlock the file."));
        return;
    }
    const QString path = m_folder.filePath(QStringLiteral("attachment"));
    try {
        m_source->fetchTo(attachment.source, path,
                          [this](std::uint64_t, std::uint64_t) { m_progress.check(); });
    } catch (const Error &error) {
        missing(error.sentence());
        return;
    }
    read(path);
    QFile::remove(path);
}

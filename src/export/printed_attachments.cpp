#include "export/printed_attachments.h"

#include "base/error.h"
#include "export/attachment_file.h"
#include "export/message_text.h"
#include "export/thumbnails.h"
#include "messages/attachment_content.h"

#include <QFile>

#include <algorithm>

FetchedAttachments::FetchedAttachments(FileSource *source, Progress &progress, Report &report)
    : m_source(source), m_progress(progress), m_report(report), m_scratch(QStringLiteral("loose"))
{
}

QImage FetchedAttachments::picture(const _MsgAttachment &attachment)
{
    const bool isCard = attachmentKind(attachment.mime_type) == AttachmentKind::VCard;
    QImage result;
    withFile(attachment, [&](const QString &path) {
        const SmallPicture picture = isCard ? vCardPictureOf(path) : thumbnailOf(path);
        if (picture.isBad)
            m_report.add(badPicture(attachment));
        result = picture.image;
    });
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
    if (const std::optional<Issue> loss = lossOf(attachment, m_source))
        return m_report.add(*loss);
    if (isLocal(attachment)) {
        read(attachment.local_path);
        return;
    }
    QString path;
    try {
        path =
            m_scratch.withRoomFor(static_cast<std::uint64_t>(std::max<qint64>(0, attachment.total_bytes))) +
            QStringLiteral("/attachment");
        m_source->fetchTo(attachment.source, path,
                          [this](std::uint64_t, std::uint64_t) { m_progress.check(); });
    } catch (const Error &error) {
        if (error.kind() == ErrorKind::NoSpace)
            throw;
        return addFailure(m_report, attachment, error);
    }
    noteShortfall(m_report, attachment, m_source, path);
    read(path);
    QFile::remove(path);
}

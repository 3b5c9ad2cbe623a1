#include "export/attachment_file.h"

#include "export/free_names.h"

#include <QFileInfo>

#include <algorithm>

bool isLocalAttachment(const _MsgAttachment &attachment)
{
    return !attachment.local_path.isEmpty() && QFileInfo(attachment.local_path).isFile();
}

QString whyMissing(const _MsgAttachment &attachment, const FileSource *source)
{
    if (isLocalAttachment(attachment))
        return {};
    if (!source || attachment.source.isNull())
        return QStringLiteral("The backup does not list the file.");
    if (!source->hasContent(attachment.source))
        return QStringLiteral("The backup lists the file but does not hold it.");
    return {};
}

QString missingAttachmentText(const _MsgAttachment &attachment, const QString &reason)
{
    return QStringLiteral("%1: %2").arg(attachmentFileName(attachment), reason);
}

QString attachmentFileName(const _MsgAttachment &attachment)
{
    const QString name = attachment.displayName();
    const qsizetype slash = std::max(name.lastIndexOf(QLatin1Char('/')), name.lastIndexOf(QLatin1Char('\\')));
    return portableFileName(name.mid(slash + 1), QStringLiteral("attachment"));
}

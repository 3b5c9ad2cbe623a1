#include "export/attachment_file.h"

#include "export/free_names.h"
#include "messages/attachment_content.h"

#include <algorithm>

QString whyMissing(const _MsgAttachment &attachment, const FileSource *source)
{
    if (hasContent(attachment, source))
        return {};
    return !source || attachment.source.isNull()
               ? QStringLiteral("The backup does not list the file.")
               : QStringLiteral("The backup lists the file but does not hold it.");
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

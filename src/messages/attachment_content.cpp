#include "messages/attachment_content.h"

#include "base/error.h"

#include <QFileInfo>

namespace {
bool isLocal(const _MsgAttachment &attachment)
{
    return !attachment.local_path.isEmpty() && QFileInfo(attachment.local_path).isFile();
}
} // namespace

bool hasContent(const _MsgAttachment &attachment, const FileSource *source)
{
    return isLocal(attachment) ||
           (source && !attachment.source.isNull() && source->hasContent(attachment.source));
}

bool isLocked(const _MsgAttachment &attachment, const FileSource *source)
{
    return !isLocal(attachment) && source && source->isLocked(attachment.source);
}

void fetchContent(const _MsgAttachment &attachment, FileSource *source, const QString &destination)
{
    if (isLocal(attachment))
        return copyFile(attachment.local_path, destination);
    if (!source)
        throw Error(QStringLiteral("can not open %1. Its file is nowhere to be found.")
                        .arg(attachment.displayName()));
    source->fetchTo(attachment.source, destination);
}

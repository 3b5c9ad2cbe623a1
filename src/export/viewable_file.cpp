#include "export/viewable_file.h"

#include <QFileInfo>

std::optional<QString> viewableFile(const _MsgAttachment &attachment, FileSource *source)
{
    if (!attachment.local_path.isEmpty() && QFileInfo(attachment.local_path).isFile())
        return attachment.local_path;
    if (!source || attachment.source.isNull() || !source->hasContent(attachment.source))
        return std::nullopt;
    return source->fetchForViewing(attachment.source);
}

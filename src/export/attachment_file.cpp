#include "export/attachment_file.h"

#include "export/free_names.h"

#include <algorithm>

QString attachmentFileName(const _MsgAttachment &attachment)
{
    const QString name = attachment.displayName();
    const qsizetype slash = std::max(name.lastIndexOf(QLatin1Char('/')), name.lastIndexOf(QLatin1Char('\\')));
    return portableFileName(name.mid(slash + 1), QStringLiteral("attachment"));
}

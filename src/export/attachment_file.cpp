#include "export/attachment_file.h"

#include "export/free_names.h"

#include <algorithm>

Issue badPicture(const _MsgAttachment &attachment)
{
    return {.kind = IssueKind::Remark, .what = "IDS_ISSUE_BAD_PICTURES", .where = attachmentFileName(attachment)};
}

QString attachmentFileName(const _MsgAttachment &attachment)
{
    const QString name = attachment.displayName();
    const qsizetype slash = std::max(name.lastIndexOf(QLatin1Char('/')), name.lastIndexOf(QLatin1Char('\\')));
    return portableFileName(name.mid(slash + 1), QStringLiteral("attachment"));
}

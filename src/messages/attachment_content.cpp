#include "messages/attachment_content.h"

#include "backup/content_length.h"
#include "base/error.h"

#include <QDateTime>
#include <QFileInfo>

#include <unordered_set>

bool isLocal(const _MsgAttachment &attachment)
{
    return !attachment.local_path.isEmpty() && QFileInfo(attachment.local_path).isFile();
}

bool hasContent(const _MsgAttachment &attachment, const FileSource *source)
{
    return isLocal(attachment) ||
           (source && !attachment.source.isNull() && source->hasContent(attachment.source));
}

bool isLocked(const _MsgAttachment &attachment, const FileSource *source)
{
    return !isLocal(attachment) && source && source->isLocked(attachment.source);
}

QString placeOf(const _MsgAttachment &attachment)
{
    if (!attachment.source.domain.isEmpty())
        return attachment.source.display();
    return attachment.filename.isEmpty() ? attachment.displayName() : attachment.filename;
}

std::optional<Issue> lossOf(const _MsgAttachment &attachment, const FileSource *source)
{
    const auto loss = [&](IssueKind kind, const char *what) {
        return Issue{.kind = kind, .what = what, .where = placeOf(attachment)};
    };
    if (hasContent(attachment, source)) {
        if (isLocked(attachment, source))
            return loss(IssueKind::Locked, "IDS_ISSUE_ATTACHMENTS_LOCKED");
        return std::nullopt;
    }
    if (source && !attachment.source.isNull() && source->lists(attachment.source))
        return loss(IssueKind::Damaged, "IDS_ISSUE_ATTACHMENTS_LOST");
    return loss(IssueKind::Absent, "IDS_ISSUE_ATTACHMENTS_ABSENT");
}

void noteLostContent(Report &report, const _MsgAttachment &attachment, const FileSource *source)
{
    const std::optional<Issue> loss = lossOf(attachment, source);
    if (loss && loss->kind == IssueKind::Damaged)
        report.add(*loss);
}

void noteLostContent(Report &report, const std::vector<MessageRef> &messages, const FileSource *source)
{
    std::unordered_set<const _MsgAttachment *> seen;
    for (const MessageRef &ref : messages)
        for (const _MsgAttachment *attachment : ref.message->attachments)
            if (seen.insert(attachment).second)
                noteLostContent(report, *attachment, source);
}

void addFailure(Report &report, const _MsgAttachment &attachment, const Error &error)
{
    report.add(error.isWriting() ? "IDS_ISSUE_ATTACHMENTS_NOT_WRITTEN" : "IDS_ISSUE_ATTACHMENTS_NOT_READ",
               error.at(placeOf(attachment)));
}

void fetchContent(const _MsgAttachment &attachment, FileSource *source, const QString &destination,
                  const CopyProgress &progress)
{
    if (isLocal(attachment)) {
        const qint64 seconds = QFileInfo(attachment.local_path).lastModified().toSecsSinceEpoch();
        return copyFile(attachment.local_path, {destination, static_cast<std::uint32_t>(seconds)}, progress);
    }
    if (!source)
        throw Error(QStringLiteral("can not open %1. Its file is nowhere to be found.")
                        .arg(attachment.displayName()));
    source->fetchTo(attachment.source, destination, progress);
}

void noteShortfall(Report &report, const _MsgAttachment &attachment, const FileSource *source,
                   const QString &copy)
{
    if (isLocal(attachment) || !source || source->isLocked(attachment.source))
        return;
    if (const QString lack = shortfallOf(copy, source->listedBytes(attachment.source)); !lack.isEmpty())
        report.add({.what = "IDS_ISSUE_FILES_CUT_OFF", .where = placeOf(attachment), .reason = lack});
}

std::optional<QString> viewableFile(const _MsgAttachment &attachment, FileSource *source)
{
    if (isLocal(attachment))
        return attachment.local_path;
    if (!hasContent(attachment, source))
        return std::nullopt;
    return source->fetchForViewing(attachment.source);
}

#include "export/message_text.h"

#include "base/texts.h"
#include "export/date_text.h"

namespace {
// Stands in the text where an attachment was put in.
constexpr char16_t attachmentPlace = 0xFFFC;

QString nameOr(const _MsgHandle *handle, const QString &otherwise)
{
    return handle ? handle->name() : otherwise;
}

QString withoutPlaces(const QString &text)
{
    QString result = text;
    if (result.contains(QChar(attachmentPlace)))
        result.remove(QChar(attachmentPlace));
    return result;
}

QLatin1String summaryWord(AttachmentKind kind)
{
    switch (kind) {
    case AttachmentKind::Image:
        return QLatin1String(" [IMAGE]");
    case AttachmentKind::Video:
        return QLatin1String(" [VIDEO]");
    case AttachmentKind::Audio:
        return QLatin1String(" [AUDIO]");
    case AttachmentKind::VCard:
        return QLatin1String(" [VCARD]");
    case AttachmentKind::PlainText:
    case AttachmentKind::Other:
        break;
    }
    return QLatin1String(" [ATTA]");
}
} // namespace

AttachmentKind attachmentKind(const QString &mimeType)
{
    const auto begins = [&](const char *prefix) {
        return mimeType.startsWith(QLatin1String(prefix), Qt::CaseInsensitive);
    };
    const auto is = [&](const char *type) {
        return mimeType.compare(QLatin1String(type), Qt::CaseInsensitive) == 0;
    };
    if (begins("image/"))
        return AttachmentKind::Image;
    if (begins("video/"))
        return AttachmentKind::Video;
    if (begins("audio/"))
        return AttachmentKind::Audio;
    if (is("text/x-vCard") || is("text/vcard"))
        return AttachmentKind::VCard;
    return is("text/plain") ? AttachmentKind::PlainText : AttachmentKind::Other;
}

QString systemText(const _MsgMessage &message)
{
    const QString you = textFor("IDS_YOU");
    const QString actor = nameOr(message.handle, you);
    const QString other = nameOr(message.otherHandle, you);
    const QString time = conversationDate(message.date);
    switch (message.item_type) {
    case 1: {
        const bool isRemoval = message.group_action_type == 1;
        return textFor(isRemoval ? "IDS_SYS_REMOVED_%1_%2_%3" : "IDS_SYS_ADDED_%1_%2_%3")
            .arg(actor, other, time);
    }
    case 2:
        return textFor("IDS_SYS_NAMED_%1_%2_%3").arg(actor, message.group_title, time);
    case 3:
        return textFor("IDS_SYS_LEFT_%1_%2").arg(actor, time);
    case 4: {
        const QString what =
            textFor(message.share_status != 0 ? "IDS_SYS_LOCATION_STOPPED" : "IDS_SYS_LOCATION_STARTED");
        return textFor("IDS_SYS_LOCATION_%1_%2_%3_%4").arg(actor, what, other, time);
    }
    default:
        return textFor("IDS_SYS_INFORMATION_%1").arg(time);
    }
}

QString senderLabel(const MessageRef &ref)
{
    const _MsgMessage &message = *ref.message;
    const bool named = ref.chat && ref.chat->isGroup() && message.is_from_me == 0 && message.handle;
    return named ? message.handle->name() : QString();
}

QString messageBody(const _MsgMessage &message)
{
    const QString text = withoutPlaces(message.text);
    if (message.subject.isEmpty())
        return text.trimmed();
    return QString(QStringLiteral("<Subject:") + message.subject + QStringLiteral(">\n") + text).trimmed();
}

QString summaryText(const _MsgMessage &message)
{
    if (message.item_type != 0)
        return systemText(message);
    QString text = withoutPlaces(message.text);
    for (const _MsgAttachment *attachment : message.attachments)
        text += summaryWord(attachmentKind(attachment->mime_type));
    return text.trimmed();
}

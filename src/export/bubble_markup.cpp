#include "export/bubble_markup.h"

#include "export/message_text.h"

namespace {
constexpr char cells[] = "<div class=\"bb_bg top_left\"></div><div class=\"bb_bg top_middle\"></div>"
                         "<div class=\"bb_bg top_right\"></div><div class=\"bb_bg middle_left\"></div>"
                         "<div class=\"bb_bg middle_middle\"></div><div class=\"bb_bg middle_right\"></div>"
                         "<div class=\"bb_bg bottom_left\"></div><div class=\"bb_bg bottom_middle\"></div>"
                         "<div class=\"bb_bg bottom_right\"></div>";
constexpr char bubbleEnd[] = "</div><div class=\"clear\"></div>";

// The sizes come from the style sheet, which chooses by this attribute.
constexpr char imageSize[] = "stype=\"max-width:120px;max-height:120px\"";
constexpr char cardSize[] = "stype=\"max-width:200px;max-height:200px\"";

QByteArray imageLink(const QByteArray &link, const QByteArray &picture, const char *size)
{
    return "<a href=\"" + link + "\"><img src=\"" + picture + "\" " + size + "></a>";
}

QByteArray wordLink(const QByteArray &link, const char *word)
{
    return "<a href=\"" + link + "\">[" + word + "]</a>";
}
} // namespace

BubbleMarkup::BubbleMarkup(const Look &look, DateText &dates, AttachmentLinks &links,
                           std::int64_t lastDateLine)
    : m_look(look), m_dates(dates), m_links(links), m_lastDateLine(lastDateLine), m_text(look.emojiEndpoint)
{
}

void BubbleMarkup::append(QByteArray &out, const MessageRef &ref)
{
    const _MsgMessage &message = *ref.message;
    if (message.item_type != 0) {
        out += "<div class=\"sysif\">";
        m_text.append(out, systemText(message));
        out += "</div>";
        return;
    }
    appendDateLine(out, message);
    const QString label = labelOf(ref);
    const QString body = messageBody(message);
    if (!body.isEmpty() || message.attachments.empty()) {
        beginBubble(out, ref, label);
        m_text.append(out, body);
        out += bubbleEnd;
    }
    for (const _MsgAttachment *attachment : message.attachments)
        appendAttachment(out, ref, label, *attachment);
}

QString BubbleMarkup::labelOf(const MessageRef &ref) const
{
    if (m_look.labels == Labels::Names)
        return senderLabel(ref);
    if (!ref.chat || ref.message->is_from_me != 0)
        return {};
    return ref.chat->isGroup() && ref.message->handle ? ref.message->handle->nameWithAddress()
                                                      : chatName(*ref.chat, Addresses::With);
}

void BubbleMarkup::appendDateLine(QByteArray &out, const _MsgMessage &message)
{
    const std::int64_t time = unixFromApple(message.date);
    if (time - m_lastDateLine <= sameTimeSeconds)
        return;
    m_lastDateLine = time;
    out += "<div class=\"dt\">";
    m_dates.append(out, message.date);
    out += "</div>";
}

void BubbleMarkup::beginBubble(QByteArray &out, const MessageRef &ref, const QString &label)
{
    if (!label.isEmpty()) {
        out += "<div class=\"ct_left\">";
        m_text.append(out, label);
        out += "</div><div class=\"clear\"></div>";
    }
    out += ref.message->is_from_me != 0 ? "<div class=\"bb2\">" : "<div class=\"bb1\">";
    out += cells;
}

void BubbleMarkup::appendAttachment(QByteArray &out, const MessageRef &ref, const QString &label,
                                    const _MsgAttachment &attachment)
{
    const AttachmentKind kind = attachmentKind(attachment.mime_type);
    const QByteArray link = m_links.link(attachment);
    QByteArray content;
    switch (kind) {
    case AttachmentKind::Image: {
        const QByteArray picture = m_links.picture(attachment);
        content = imageLink(link, picture.isEmpty() ? m_look.emptyPhoto : picture, imageSize);
        break;
    }
    case AttachmentKind::Video:
        content = wordLink(link, "VIDEO");
        break;
    case AttachmentKind::Audio:
        content = wordLink(link, "AUDIO");
        break;
    case AttachmentKind::VCard: {
        const QByteArray picture = m_links.picture(attachment);
        content = picture.isEmpty() ? wordLink(link, "VCARD") : imageLink(link, picture, cardSize);
        break;
    }
    case AttachmentKind::PlainText:
        if (const std::optional<QString> text = m_links.text(attachment))
            m_text.append(content, *text);
        else if (link == "#")
            return;
        else
            content = wordLink(link, "ATTACHMENT");
        break;
    case AttachmentKind::Other:
        content = wordLink(link, "ATTACHMENT");
        break;
    }
    beginBubble(out, ref, label);
    out += content;
    out += bubbleEnd;
}

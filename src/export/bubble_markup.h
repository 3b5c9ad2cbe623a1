#pragma once

#include "export/date_text.h"
#include "export/html_text.h"
#include "messages/msg_records.h"

#include <optional>

/// How a page reaches the files of its messages. Addresses are fit for an attribute as they are.
class AttachmentLinks
{
public:
    virtual ~AttachmentLinks() = default;

    /// The file itself; "#" when it cannot be had.
    virtual QByteArray link(const _MsgAttachment &attachment) = 0;
    /// The small picture of an image or the picture of a card; empty when there is none.
    virtual QByteArray picture(const _MsgAttachment &attachment) = 0;
    /// What a text file says; nothing when it cannot be had or is too long for a page.
    virtual std::optional<QString> text(const _MsgAttachment &attachment) = 0;
};

/// Whether the addresses of people stand beside their names.
enum class Labels { Names, NamesAndAddresses };

/// The markup of messages as chat bubbles, one page at a time. Holds what a page needs to know of the
/// messages before.
class BubbleMarkup
{
public:
    struct Look
    {
        QByteArray emojiEndpoint; // before "/app_res/emoji/"
        QByteArray emptyPhoto;    // address of the picture of an image without one
        Labels labels = Labels::Names;
    };

    /// `dates` and `links` must outlive it. `lastDateLine` is when the page last told the time, in Unix
    /// seconds: a time within 60 seconds after it is not told again.
    BubbleMarkup(const Look &look, DateText &dates, AttachmentLinks &links, std::int64_t lastDateLine);

    /// Appends one message, as UTF-8.
    void append(QByteArray &out, const MessageRef &ref);

    /// For the pictures that the page needs.
    HtmlText &text() { return m_text; }

private:
    Look m_look;
    DateText &m_dates;
    AttachmentLinks &m_links;
    std::int64_t m_lastDateLine;
    HtmlText m_text;

    QString labelOf(const MessageRef &ref) const;
    void appendDateLine(QByteArray &out, const _MsgMessage &message);
    void beginBubble(QByteArray &out, const MessageRef &ref, const QString &label);
    void appendAttachment(QByteArray &out, const MessageRef &ref, const QString &label,
                          const _MsgAttachment &attachment);
};

#include "export/conversation_page.h"

#include "base/texts.h"

namespace {
// So long before any message that the first one of a page always tells its time.
constexpr std::int64_t noDateLine = INT64_MIN / 2;

constexpr char pageBegin[] =
    "<!DOCTYPE html PUBLIC \"-//W3C//DTD XHTML 1.0 Transitional//EN\" "
    "\"http://www.w3.org/TR/xhtml1/DTD/xhtml1-transitional.dtd\">"
    "<html xmlns=\"http://www.w3.org/1999/xhtml\"><head>"
    "<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\" /><title>Bubble</title>"
    "<link href=\"bubble/style.css\" type=\"text/css\" rel=\"stylesheet\"/></head><body>"
    "<a name=\"start\"></a>";

void appendPageLink(QByteArray &out, HtmlText &text, const char *address, const char *label)
{
    out += "<p><a href=\"";
    out += address;
    out += "\">";
    text.append(out, textFor(label));
    out += "</a></p>";
}
} // namespace

QByteArray conversationPage(const ConversationPage &page, AttachmentLinks &links)
{
    DateText dates = DateText::fixed(QStringLiteral("dd MMM yyyy"), QStringLiteral("h:m AP"));
    BubbleMarkup markup({.emojiEndpoint = "", .emptyPhoto = "bubble/empty_photo.jpg"}, dates, links,
                        noDateLine);
    QByteArray out = pageBegin;
    if (page.number > 1)
        appendPageLink(out, markup.text(), "/pre_page", "IDS_PREVIOUS_PAGE");
    for (const MessageRef &ref : page.messages) {
        out += "<a name=\"sms_" + QByteArray::number(ref.message->rowid) + "\"></a>";
        markup.append(out, ref);
    }
    if (page.number < page.count)
        appendPageLink(out, markup.text(), "/next_page", "IDS_NEXT_PAGE");
    out += "<a name=\"end\"></a></body></html>";
    return out;
}

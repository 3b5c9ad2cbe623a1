#include "export/html_text.h"

#include "export/emoji_scan.h"
#include "export/utf8.h"

#include <QUrl>

HtmlText::HtmlText(const QByteArray &endpoint) : m_imageBegin("<img src=\"" + endpoint + "/app_res/emoji/") {}

void HtmlText::append(QByteArray &out, QStringView text)
{
    qsizetype plainFrom = 0;
    const auto replace = [&](qsizetype from, qsizetype units, const char *markup) {
        appendUtf8(out, text.sliced(plainFrom, from - plainFrom));
        out += markup;
        plainFrom = from + units;
    };

    const qsizetype size = text.size();
    for (qsizetype i = 0; i < size; ++i) {
        switch (const char16_t unit = text[i].unicode()) {
        case u'&':
            replace(i, 1, "&amp;");
            break;
        case u'<':
            replace(i, 1, "&lt;");
            break;
        case u'>':
            replace(i, 1, "&gt;");
            break;
        case u'\r':
            if (i + 1 < size && text[i + 1] == u'\n')
                replace(i, 1, "");
            break;
        case u'\n':
            replace(i, 1, "<br/>");
            break;
        default:
            if (unit < firstEmojiUnit)
                break;
            if (const EmojiHit hit = emojiAt(text, i); hit.units > 0) {
                replace(i, hit.units, "");
                appendEmoji(out, hit.key);
                i += hit.units - 1;
            }
        }
    }
    appendUtf8(out, text.sliced(plainFrom));
}

void HtmlText::appendEmoji(QByteArray &out, char32_t key)
{
    if (m_known.insert(key).second)
        m_new.push_back(key);
    out += m_imageBegin;
    out += emojiName(key);
    out += ".png\" />";
}

std::vector<char32_t> HtmlText::takeNewEmoji()
{
    return std::exchange(m_new, {});
}

QByteArray emojiName(char32_t key)
{
    return QByteArray::number(static_cast<uint>(key), 16).toUpper();
}

QByteArray addressOf(const QString &fileName)
{
    // Everything but letters, digits and -._~ is percent-encoded, so no quote, no query and no fragment is
    // left.
    return QUrl::toPercentEncoding(fileName);
}

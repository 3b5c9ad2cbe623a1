#include "personal/plain_text.h"

#include <QHash>
#include <QSet>

#include <algorithm>

// A rich-text document could do this too, but it needs fonts, opens the files that a style sheet names, and
// takes minutes for elements that are nested deeply. Notes come from a backup, so none of this may happen.

namespace {
constexpr qsizetype longestEntity = 32;
constexpr QChar noBreakSpace(0xA0);

bool isBlock(const QString &tag)
{
    static const QSet<QString> tags = [] {
        const QStringList names =
            QStringLiteral("address article aside blockquote body caption center dd div dl dt fieldset "
                           "figcaption figure footer form h1 h2 h3 h4 h5 h6 head header hr html li main nav "
                           "ol p pre section table tbody td tfoot th thead tr ul")
                .split(u' ');
        return QSet<QString>(names.begin(), names.end());
    }();
    return tags.contains(tag);
}

/// Elements that people and programs leave open.
bool needsNoEnd(const QString &tag)
{
    static const QSet<QString> tags = [] {
        const QStringList names =
            QStringLiteral("area base br col dd dt hr img input li link meta p td th tr wbr").split(u' ');
        return QSet<QString>(names.begin(), names.end());
    }();
    return tags.contains(tag);
}

bool isHidden(const QString &tag)
{
    return tag == QLatin1String("script") || tag == QLatin1String("style") || tag == QLatin1String("title");
}

const QHash<QString, char16_t> &namedCharacters()
{
    static const QHash<QString, char16_t> characters = [] {
        QHash<QString, char16_t> named{
            {QStringLiteral("amp"), u'&'},         {QStringLiteral("lt"), u'<'},
            {QStringLiteral("gt"), u'>'},          {QStringLiteral("quot"), u'"'},
            {QStringLiteral("apos"), u'\''},       {QStringLiteral("OElig"), u'\u0152'},
            {QStringLiteral("oelig"), u'\u0153'},  {QStringLiteral("Scaron"), u'\u0160'},
            {QStringLiteral("scaron"), u'\u0161'}, {QStringLiteral("Yuml"), u'\u0178'},
            {QStringLiteral("ensp"), u'\u2002'},   {QStringLiteral("emsp"), u'\u2003'},
            {QStringLiteral("thinsp"), u'\u2009'}, {QStringLiteral("zwnj"), u'\u200C'},
            {QStringLiteral("zwj"), u'\u200D'},    {QStringLiteral("lrm"), u'\u200E'},
            {QStringLiteral("rlm"), u'\u200F'},    {QStringLiteral("ndash"), u'\u2013'},
            {QStringLiteral("mdash"), u'\u2014'},  {QStringLiteral("lsquo"), u'\u2018'},
            {QStringLiteral("rsquo"), u'\u2019'},  {QStringLiteral("sbquo"), u'\u201A'},
            {QStringLiteral("ldquo"), u'\u201C'},  {QStringLiteral("rdquo"), u'\u201D'},
            {QStringLiteral("bdquo"), u'\u201E'},  {QStringLiteral("bull"), u'\u2022'},
            {QStringLiteral("hellip"), u'\u2026'}, {QStringLiteral("lsaquo"), u'\u2039'},
            {QStringLiteral("rsaquo"), u'\u203A'}, {QStringLiteral("euro"), u'\u20AC'},
            {QStringLiteral("trade"), u'\u2122'},  {QStringLiteral("rarr"), u'\u2192'}};
        // The names of U+00A0 to U+00FF, in order.
        const QStringList latin1 =
            QStringLiteral(
                "nbsp iexcl cent pound curren yen brvbar sect uml copy ordf laquo not shy reg macr deg "
                "plusmn "
                "sup2 sup3 acute micro para middot cedil sup1 ordm raquo frac14 frac12 frac34 iquest Agrave "
                "Aacute Acirc Atilde Auml Aring AElig Ccedil Egrave Eacute Ecirc Euml Igrave Iacute Icirc "
                "Iuml ETH Ntilde Ograve Oacute Ocirc Otilde Ouml times Oslash Ugrave Uacute Ucirc Uuml "
                "Yacute "
                "THORN szlig agrave aacute acirc atilde auml aring aelig ccedil egrave eacute ecirc euml "
                "igrave iacute icirc iuml eth ntilde ograve oacute ocirc otilde ouml divide oslash ugrave "
                "uacute ucirc uuml yacute thorn yuml")
                .split(u' ');
        for (qsizetype i = 0; i < latin1.size(); ++i)
            named.insert(latin1.at(i), static_cast<char16_t>(noBreakSpace.unicode() + i));
        return named;
    }();
    return characters;
}

/// What stands between "&" and ";" as text; empty when it is no character.
QString characterOf(QStringView entity)
{
    if (!entity.startsWith(u'#')) {
        const char16_t character = namedCharacters().value(entity.toString());
        return character == 0 ? QString() : QString(QChar(character));
    }
    const bool isHex = entity.size() > 1 && entity[1].toLower() == u'x';
    bool isNumber = false;
    const char32_t code = entity.sliced(isHex ? 2 : 1).toUInt(&isNumber, isHex ? 16 : 10);
    if (!isNumber)
        return {};
    if (code == 0 || code > QChar::LastValidCodePoint || QChar::isSurrogate(code))
        return QString(QChar(QChar::ReplacementCharacter));
    return QString::fromUcs4(&code, 1);
}

bool isAsciiLetter(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

bool isAsciiLetterOrDigit(QChar c)
{
    return isAsciiLetter(c) || (c >= u'0' && c <= u'9');
}

/// Walks over the markup once, from its beginning to its end, whatever it holds.
class TextOfHtml
{
public:
    TextOfHtml(QStringView html, qsizetype enough) : m_html(html), m_enough(enough) {}

    QString read()
    {
        while (m_at < m_html.size() && !isEnough()) {
            if (m_html[m_at] == u'<' && readMarkup())
                continue;
            if (m_html[m_at] == u'&' && readEntity())
                continue;
            append(m_html[m_at++]);
        }
        return std::move(m_text).trimmed();
    }

    int deepest() const { return m_deepest; }

private:
    QStringView m_html;
    qsizetype m_enough;
    qsizetype m_at = 0;
    QString m_text;
    bool m_blankDue = false;
    int m_preformatted = 0; // how many such elements are open
    int m_depth = 0;
    int m_deepest = 0;

    // A blank at the end may still go away.
    bool isEnough() const { return m_text.size() > m_enough && !m_text.back().isSpace(); }

    void append(QChar c)
    {
        const bool isBlank = c == u' ' || c == u'\t' || c == u'\n' || c == u'\r' || c == u'\f';
        if (isBlank && m_preformatted == 0) {
            m_blankDue = true;
            return;
        }
        if (m_blankDue && !m_text.isEmpty() && !m_text.endsWith(u'\n'))
            m_text += u' ';
        m_blankDue = false;
        if (!m_text.isEmpty() || !c.isSpace())
            m_text += c == noBreakSpace ? QChar(u' ') : c;
    }

    void endLine()
    {
        m_blankDue = false;
        if (!m_text.isEmpty())
            m_text += u'\n';
    }

    void startBlock()
    {
        m_blankDue = false;
        if (!m_text.endsWith(u'\n'))
            endLine();
    }

    void skipPast(QStringView end)
    {
        const qsizetype found = m_html.indexOf(end, m_at);
        m_at = found < 0 ? m_html.size() : found + end.size();
    }

    bool readEntity()
    {
        const QStringView rest = m_html.sliced(m_at + 1);
        const qsizetype end = rest.first(std::min(rest.size(), longestEntity)).indexOf(u';');
        const QString text = end > 0 ? characterOf(rest.first(end)) : QString();
        if (text.isEmpty())
            return false;
        m_at += end + 2;
        for (const QChar c : text)
            append(c);
        return true;
    }

    /// False when the "<" is only a character.
    bool readMarkup()
    {
        const QStringView rest = m_html.sliced(m_at + 1);
        if (rest.startsWith(u"!--")) {
            skipPast(u"-->");
            return true;
        }
        const bool closes = rest.startsWith(u'/');
        const QStringView name = rest.sliced(closes ? 1 : 0);
        if (rest.startsWith(u'!') || rest.startsWith(u'?')) {
            skipPast(u">");
            return true;
        }
        if (name.isEmpty() || !isAsciiLetter(name.front()))
            return false;
        const auto end = std::find_if_not(name.begin(), name.end(), isAsciiLetterOrDigit);
        skipTag();
        apply(name.first(end - name.begin()).toString().toLower(), closes);
        return true;
    }

    /// To behind the ">" that ends a tag; one in a quoted value does not.
    void skipTag()
    {
        QChar quote;
        QChar last;
        for (++m_at; m_at < m_html.size(); ++m_at) {
            const QChar c = m_html[m_at];
            if (quote.isNull() && c == u'>')
                break;
            if (quote.isNull() && last == u'=' && (c == u'"' || c == u'\''))
                quote = c;
            else if (c == quote)
                quote = QChar();
            if (!c.isSpace())
                last = c;
        }
        m_at = std::min(m_at + 1, m_html.size());
    }

    void apply(const QString &tag, bool closes)
    {
        if (!needsNoEnd(tag)) {
            m_depth = std::max(0, m_depth + (closes ? -1 : 1));
            m_deepest = std::max(m_deepest, m_depth);
        }
        if (tag == QLatin1String("br"))
            endLine();
        else if (isBlock(tag))
            startBlock();
        if (tag == QLatin1String("pre"))
            m_preformatted = std::max(0, m_preformatted + (closes ? -1 : 1));
        if (!closes && isHidden(tag)) {
            const qsizetype end = m_html.indexOf(QLatin1String("</") + tag, m_at, Qt::CaseInsensitive);
            m_at = end < 0 ? m_html.size() : end;
        }
    }
};
} // namespace

QString plainTextOfHtml(const QString &html, qsizetype enough)
{
    return TextOfHtml(html, enough).read();
}

int nestingOfHtml(const QString &html)
{
    TextOfHtml text(html, std::numeric_limits<qsizetype>::max());
    text.read();
    return text.deepest();
}

QString firstCharacters(const QString &text, qsizetype atMost)
{
    if (text.size() <= atMost)
        return text;
    return text.left(atMost > 0 && text.at(atMost - 1).isHighSurrogate() ? atMost - 1 : atMost);
}

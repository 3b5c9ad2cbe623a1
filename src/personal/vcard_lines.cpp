#include "personal/vcard_lines.h"

#include <QStringDecoder>

#include <algorithm>

namespace {
// No property has a head that is as long: what has is text without a colon.
constexpr qsizetype longestHead = 4096;

bool isHexDigit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

QByteArray decodeQuotedPrintable(const QByteArray &value)
{
    QByteArray bytes;
    bytes.reserve(value.size());
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value.at(i) == '=' && i + 2 < value.size() && isHexDigit(value.at(i + 1)) &&
            isHexDigit(value.at(i + 2))) {
            bytes.append(static_cast<char>(value.mid(i + 1, 2).toInt(nullptr, 16)));
            i += 2;
        } else {
            bytes.append(value.at(i));
        }
    }
    return bytes;
}

/// Nothing where a character is none of Base64, or the last ones are missing.
std::optional<QByteArray> decodeBase64(QByteArray value)
{
    value.removeIf([](char c) { return c == ' ' || c == '\t'; });
    const auto decoded = QByteArray::fromBase64Encoding(
        std::move(value), QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
    return decoded ? std::optional(*decoded) : std::nullopt;
}

/// Length of what stands before the bytes in "data:image/jpeg;base64,/9j/4A...", 0 for any other value.
qsizetype dataAddressHead(const QByteArray &value)
{
    const QByteArray head = value.left(std::min(value.indexOf(','), longestHead)).toLower();
    return head.startsWith("data:") && head.endsWith(";base64") ? head.size() + 1 : 0;
}

QByteArray unquoted(QByteArray value)
{
    if (value.size() >= 2 && value.startsWith('"') && value.endsWith('"'))
        value = value.mid(1, value.size() - 2);
    return value;
}

// Before the colon: names and values, where a colon or semicolon may stand in quotes.
QList<QByteArray> splitHead(QByteArrayView head)
{
    QList<QByteArray> parts{QByteArray()};
    bool quoted = false;
    for (const char c : head) {
        if (c == '"')
            quoted = !quoted;
        if (c == ';' && !quoted)
            parts.append(QByteArray());
        else
            parts.last().append(c);
    }
    return parts;
}

qsizetype endOfHead(QByteArrayView line)
{
    bool quoted = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        if (line[i] == '"')
            quoted = !quoted;
        else if (line[i] == ':' && !quoted)
            return i;
    }
    return line.indexOf(':'); // a quote that is never closed is a character
}

void addBareWord(VCardLine &line, const QByteArray &word)
{
    const QByteArray upper = word.toUpper();
    const bool isEncoding = upper == "QUOTED-PRINTABLE" || upper == "BASE64" || upper == "B" ||
                            upper == "8BIT" || upper == "7BIT";
    line.params.insert(isEncoding ? "ENCODING" : "TYPE", word);
}

bool parseLine(QByteArrayView text, VCardLine &line)
{
    const qsizetype colon = endOfHead(text);
    if (colon <= 0)
        return false;
    const QList<QByteArray> parts = splitHead(text.first(colon));
    line.name = parts.first().mid(parts.first().lastIndexOf('.') + 1).trimmed().toUpper();
    for (const QByteArray &part : parts.mid(1)) {
        const qsizetype equals = part.indexOf('=');
        if (equals < 0)
            addBareWord(line, part.trimmed());
        else
            line.params.insert(part.left(equals).trimmed().toUpper(),
                               unquoted(part.mid(equals + 1).trimmed()));
    }
    line.value = text.sliced(colon + 1).toByteArray();
    return !line.name.isEmpty();
}

/// Physical lines, without their ends.
class LineCursor
{
public:
    explicit LineCursor(QByteArrayView text) : m_text(text) {}

    bool atEnd() const { return m_position >= m_text.size(); }
    char peek() const { return atEnd() ? '\n' : m_text[m_position]; }

    // A copy in text mode makes "\r\r\n" of "\r\n": however many CRs there are, they are one line end.
    QByteArrayView next()
    {
        qsizetype end = m_position;
        while (end < m_text.size() && m_text[end] != '\n' && m_text[end] != '\r')
            ++end;
        const QByteArrayView line = m_text.sliced(m_position, end - m_position);
        m_position = end;
        while (m_position < m_text.size() && m_text[m_position] == '\r')
            ++m_position;
        if (m_position < m_text.size() && m_text[m_position] == '\n')
            ++m_position;
        return line;
    }

private:
    QByteArrayView m_text;
    qsizetype m_position = 0;
};

bool startsFold(char c)
{
    return c == ' ' || c == '\t';
}

bool endsInSoftBreak(const QByteArray &text)
{
    VCardLine line;
    return text.endsWith('=') &&
           parseLine(QByteArrayView(text).first(std::min(text.size(), longestHead)), line) &&
           line.isQuotedPrintable();
}

// After a soft break the next line goes on as it stands, a blank at its beginning being one of the text.
// Writers that write every blank as "=20" may fold there as well, and then that blank is none.
QByteArray softBreaksJoined(const QList<QByteArray> &pieces)
{
    const auto blankWithin = [](const QByteArray &piece) { return piece.lastIndexOf(' ') > 0; };
    const auto beginsWithBlank = [](const QByteArray &piece) {
        return !piece.isEmpty() && startsFold(piece.front());
    };
    const bool isFolded =
        std::all_of(pieces.begin() + 1, pieces.end(), beginsWithBlank) &&
        std::none_of(pieces.begin(), pieces.end(), blankWithin) &&
        std::any_of(pieces.begin(), pieces.end(), [](const auto &piece) { return piece.contains("=20"); });
    QByteArray value = pieces.first();
    for (const QByteArray &piece : pieces.mid(1))
        value += isFolded ? piece.mid(1) : piece;
    return value;
}

void joinSoftBreaks(VCardLine &line, LineCursor &cursor)
{
    QList<QByteArray> pieces{line.value};
    while (pieces.last().endsWith('=') && !cursor.atEnd()) {
        LineCursor ahead = cursor;
        const QByteArray next = ahead.next().toByteArray();
        if (next.trimmed().compare("END:VCARD", Qt::CaseInsensitive) == 0)
            break; // the "=" is a character that its writer has left as it is
        pieces.last().chop(1);
        pieces.append(next);
        cursor = ahead;
        while (!pieces.last().endsWith('=') && startsFold(cursor.peek()) && !cursor.atEnd())
            pieces.last().append(cursor.next().sliced(1).toByteArray());
    }
    line.value = softBreaksJoined(pieces);
}

// Bytes go on behind an empty line and on lines that nobody has folded, up to the next property: what is no
// Base64 among them is damage of the bytes, and not the end of a whole value.
void joinBytes(VCardLine &line, LineCursor &cursor)
{
    for (LineCursor ahead = cursor; !ahead.atEnd(); cursor = ahead) {
        const bool isFold = startsFold(ahead.peek());
        const QByteArrayView next = ahead.next().trimmed();
        if (!isFold && next.contains(':'))
            return;
        line.value.append(next.data(), next.size());
    }
}

/// A property with all of its physical lines; nameless where they are none.
VCardLine nextProperty(LineCursor &cursor)
{
    QByteArray whole = cursor.next().toByteArray();
    while (startsFold(cursor.peek()) && !cursor.atEnd() && !endsInSoftBreak(whole)) {
        const QByteArrayView more = cursor.next();
        whole.append(more.data() + 1, more.size() - 1);
    }
    VCardLine line;
    if (!parseLine(whole, line)) {
        line = {};
        line.value = whole.trimmed();
    } else if (line.isQuotedPrintable()) {
        joinSoftBreaks(line, cursor);
    } else if (line.carriesBytes()) {
        joinBytes(line, cursor);
    }
    return line;
}
} // namespace

bool VCardLine::hasType(const char *type) const
{
    for (const QByteArray &value : params.values("TYPE"))
        for (const QByteArray &word : value.split(','))
            if (word.trimmed().compare(type, Qt::CaseInsensitive) == 0)
                return true;
    return false;
}

bool VCardLine::isQuotedPrintable() const
{
    return param("ENCODING").compare("QUOTED-PRINTABLE", Qt::CaseInsensitive) == 0;
}

bool VCardLine::isBase64() const
{
    const QByteArray encoding = param("ENCODING").toUpper();
    return encoding == "B" || encoding == "BASE64";
}

bool VCardLine::carriesBytes() const
{
    return isBase64() || dataAddressHead(value) > 0;
}

std::optional<QByteArray> VCardLine::embeddedBytes() const
{
    return decodeBase64(isBase64() ? value : value.mid(dataAddressHead(value)));
}

QString VCardLine::text() const
{
    const QByteArray raw = isQuotedPrintable() ? decodeQuotedPrintable(value)
                           : isBase64()        ? QByteArray::fromBase64(value)
                                               : value;
    if (const QByteArray charset = param("CHARSET"); !charset.isEmpty()) {
        QStringDecoder decoder(charset.constData());
        if (decoder.isValid())
            return decoder.decode(raw);
    }
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString text = utf8.decode(raw);
    if (!utf8.hasError())
        return text;
    QStringDecoder local(QStringDecoder::System);
    const QString localText = local.decode(raw);
    // Where the code page of the system is UTF-8 too, the text comes from a system where it is not.
    return local.hasError() ? QString::fromLatin1(raw) : localText;
}

QList<VCardLine> splitVCardLines(QByteArrayView text)
{
    QList<VCardLine> lines;
    LineCursor cursor(text.startsWith("\xef\xbb\xbf") ? text.sliced(3) : text);
    while (!cursor.atEnd()) {
        VCardLine line = nextProperty(cursor);
        if (!line.name.isEmpty() || !line.value.isEmpty())
            lines.append(std::move(line));
    }
    return lines;
}

QString vCardUnescaped(const QString &value)
{
    QString text;
    text.reserve(value.size());
    for (qsizetype i = 0; i < value.size(); ++i) {
        const QChar next =
            value.at(i) == QLatin1Char('\\') && i + 1 < value.size() ? value.at(i + 1) : QChar();
        if (next == QLatin1Char('n') || next == QLatin1Char('N'))
            text += QLatin1Char('\n');
        else if (next == QLatin1Char('\\') || next == QLatin1Char(',') || next == QLatin1Char(';') ||
                 next == QLatin1Char(':'))
            text += next;
        else {
            text += value.at(i);
            continue;
        }
        ++i;
    }
    return text;
}

QStringList vCardParts(const QString &value)
{
    QStringList parts;
    qsizetype start = 0;
    for (qsizetype i = 0; i <= value.size(); ++i) {
        if (i + 1 < value.size() && value.at(i) == QLatin1Char('\\')) {
            ++i;
        } else if (i >= value.size() || value.at(i) == QLatin1Char(';')) {
            parts.append(vCardUnescaped(value.mid(start, i - start)));
            start = i + 1;
        }
    }
    return parts;
}

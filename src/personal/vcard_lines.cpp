#include "personal/vcard_lines.h"

#include <QStringDecoder>

namespace {
QByteArray decodeQuotedPrintable(const QByteArray &value)
{
    QByteArray bytes;
    bytes.reserve(value.size());
    for (qsizetype i = 0; i < value.size(); ++i) {
        bool isHex = false;
        const int byte =
            value.at(i) == '=' && i + 2 < value.size() ? value.mid(i + 1, 2).toInt(&isHex, 16) : 0;
        if (isHex) {
            bytes.append(static_cast<char>(byte));
            i += 2;
        } else {
            bytes.append(value.at(i));
        }
    }
    return bytes;
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

    QByteArrayView next()
    {
        qsizetype end = m_position;
        while (end < m_text.size() && m_text[end] != '\n' && m_text[end] != '\r')
            ++end;
        const QByteArrayView line = m_text.sliced(m_position, end - m_position);
        m_position = end;
        if (m_position < m_text.size() && m_text[m_position] == '\r')
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

// A quoted-printable value goes on after a "=" at the end of its line; some writers begin the next with a
// blank.
void joinSoftBreaks(VCardLine &line, LineCursor &cursor)
{
    while (line.value.endsWith('=') && !cursor.atEnd()) {
        line.value.chop(1);
        QByteArrayView next = cursor.next();
        if (!next.isEmpty() && startsFold(next.front()))
            next = next.sliced(1);
        line.value.append(next.data(), next.size());
    }
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

QByteArray VCardLine::bytes() const
{
    if (isQuotedPrintable())
        return decodeQuotedPrintable(value);
    return isBase64() ? QByteArray::fromBase64(value) : value;
}

QByteArray VCardLine::embeddedBytes() const
{
    if (isBase64())
        return bytes();
    const QByteArray head = value.left(value.indexOf(',')).toLower();
    if (head.startsWith("data:") && head.endsWith(";base64"))
        return QByteArray::fromBase64(value.mid(head.size() + 1));
    return {};
}

QString VCardLine::text() const
{
    const QByteArray raw = bytes();
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
        QByteArray whole = cursor.next().toByteArray();
        while (startsFold(cursor.peek()) && !cursor.atEnd()) {
            const QByteArrayView more = cursor.next();
            whole.append(more.data() + 1, more.size() - 1);
        }
        if (whole.trimmed().isEmpty())
            continue;
        VCardLine line;
        if (!parseLine(whole, line))
            line = {};
        if (line.isQuotedPrintable())
            joinSoftBreaks(line, cursor);
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
        if (i < value.size() && value.at(i) == QLatin1Char('\\')) {
            ++i;
        } else if (i >= value.size() || value.at(i) == QLatin1Char(';')) {
            parts.append(vCardUnescaped(value.mid(start, i - start)));
            start = i + 1;
        }
    }
    return parts;
}

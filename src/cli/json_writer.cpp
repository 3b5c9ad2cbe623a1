#include "cli/json_writer.h"

#include "base/apple_time.h"

namespace {
constexpr char hexDigits[] = "0123456789abcdef";

void appendUnicodeEscape(QByteArray &to, unsigned codeUnit)
{
    to.append("\\u");
    for (int shift = 12; shift >= 0; shift -= 4)
        to.append(hexDigits[(codeUnit >> shift) & 0xF]);
}

/// The length of a line separator at the start of `utf8` that is no control character of ASCII: U+0085,
/// U+2028 or U+2029; 0 when there is none.
int separatorLength(QByteArrayView utf8)
{
    const auto byte = [utf8](qsizetype i) {
        return static_cast<unsigned char>(i < utf8.size() ? utf8[i] : 0);
    };
    if (byte(0) == 0xC2 && byte(1) == 0x85)
        return 2;
    return byte(0) == 0xE2 && byte(1) == 0x80 && (byte(2) == 0xA8 || byte(2) == 0xA9) ? 3 : 0;
}
} // namespace

void JsonWriter::beginValue()
{
    if (m_needsComma)
        m_to.append(',');
    m_needsComma = true;
}

void JsonWriter::beginObject()
{
    beginValue();
    m_to.append('{');
    m_needsComma = false;
}

void JsonWriter::endObject()
{
    m_to.append('}');
    m_needsComma = true;
}

void JsonWriter::beginArray()
{
    beginValue();
    m_to.append('[');
    m_needsComma = false;
}

void JsonWriter::endArray()
{
    m_to.append(']');
    m_needsComma = true;
}

void JsonWriter::key(const char *name)
{
    beginValue();
    m_to.append('"').append(name).append("\":");
    m_needsComma = false;
}

void JsonWriter::text(const QString &value)
{
    beginValue();
    m_to.append('"');
    appendEscaped(value.toUtf8());
    m_to.append('"');
}

void JsonWriter::utf8(QByteArrayView value)
{
    if (!value.isValidUtf8())
        return text(QString::fromUtf8(value));
    beginValue();
    m_to.append('"');
    appendEscaped(value);
    m_to.append('"');
}

void JsonWriter::number(std::int64_t value)
{
    beginValue();
    m_to.append(QByteArray::number(static_cast<qint64>(value)));
}

void JsonWriter::boolean(bool value)
{
    beginValue();
    m_to.append(value ? "true" : "false");
}

void JsonWriter::null()
{
    beginValue();
    m_to.append("null");
}

void JsonWriter::instant(std::optional<std::int64_t> unixSeconds)
{
    const QString iso = unixSeconds ? isoUtc(*unixSeconds) : QString();
    if (iso.isEmpty())
        null();
    else
        text(iso);
}

void JsonWriter::appendEscaped(QByteArrayView utf8)
{
    qsizetype runStart = 0;
    const auto endRun = [&](qsizetype at, qsizetype skipped) {
        m_to.append(utf8.sliced(runStart, at - runStart));
        runStart = at + skipped;
    };
    for (qsizetype i = 0; i < utf8.size(); ++i) {
        const auto byte = static_cast<unsigned char>(utf8[i]);
        if (byte == '"' || byte == '\\') {
            endRun(i, 1);
            m_to.append('\\').append(static_cast<char>(byte));
        } else if (byte == '\n') {
            endRun(i, 1);
            m_to.append("\\n");
        } else if (byte < 0x20 || byte == 0x7F) {
            endRun(i, 1);
            appendUnicodeEscape(m_to, byte);
        } else if (byte == 0xC2 || byte == 0xE2) {
            const int length = separatorLength(utf8.sliced(i));
            if (length == 0)
                continue;
            endRun(i, length);
            const auto last = static_cast<unsigned char>(utf8[i + length - 1]);
            appendUnicodeEscape(m_to, length == 2 ? 0x85u : 0x2000u + (last & 0x3Fu));
            i += length - 1;
        }
    }
    endRun(utf8.size(), 0);
}

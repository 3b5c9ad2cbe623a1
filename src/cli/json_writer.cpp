#include "cli/json_writer.h"

#include "base/apple_time.h"
#include "cli/line_text.h"

namespace {
constexpr char hexDigits[] = "0123456789abcdef";

void appendUnicodeEscape(QByteArray &to, unsigned codeUnit)
{
    to.append("\\u");
    for (int shift = 12; shift >= 0; shift -= 4)
        to.append(hexDigits[(codeUnit >> shift) & 0xF]);
}

/// The character at the start of valid `utf8`, where it is one of two or three bytes.
char16_t decoded(QByteArrayView utf8, int &length)
{
    const auto bits = [utf8](qsizetype i, unsigned mask) {
        return static_cast<unsigned>(static_cast<unsigned char>(utf8[i])) & mask;
    };
    length = bits(0, 0xE0) == 0xC0 ? 2 : 3;
    if (utf8.size() < length)
        return 0;
    return static_cast<char16_t>(length == 2 ? bits(0, 0x1F) << 6 | bits(1, 0x3F)
                                             : bits(0, 0x0F) << 12 | bits(1, 0x3F) << 6 | bits(2, 0x3F));
}

/// The first bytes of the characters that isUnprintable() tells: U+0080 to U+009F, U+061C, U+200E to U+2069.
bool mayBeginUnprintable(unsigned char byte)
{
    return byte == 0xC2 || byte == 0xD8 || byte == 0xE2;
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
        } else if (mayBeginUnprintable(byte)) {
            int length = 0;
            const char16_t letter = decoded(utf8.sliced(i), length);
            if (!isUnprintable(letter))
                continue;
            endRun(i, length);
            appendUnicodeEscape(m_to, letter);
            i += length - 1;
        }
    }
    endRun(utf8.size(), 0);
}

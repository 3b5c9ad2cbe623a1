#include "messages/typed_stream.h"

#include "base/byte_reader.h"
#include "base/error.h"

#include <vector>

// A typed stream, as far as the way to the text needs it:
//
//   stream = 04 0B "streamtyped" integer(system version) group
//   group  = shared(type encoding) value...        "@" an object, "+" bytes, other letters numbers
//   object = 84 class group... 86 | 85 (nil) | reference
//   class  = 84 shared(name) integer(version) class(of the superclass) | 85 | reference
//   shared = 84 length bytes | 85 | reference      into the table of strings
//
// Objects and classes share the second table; an object takes its number before its class does.
namespace {
enum Head : std::uint8_t {
    Int16 = 0x81,
    Int32 = 0x82,
    New = 0x84,
    Nil = 0x85,
    FirstReference = 0x92,
};

class TypedStream
{
public:
    explicit TypedStream(QByteArrayView bytes) : m_reader(bytes) {}

    QString text()
    {
        readHeader();
        if (beginObject())
            return stringContent();
        if (!beginObject())
            throw Error(QStringLiteral("the archived object does not begin with its text"));
        return stringContent();
    }

private:
    void readHeader()
    {
        m_reader.skip(1); // version of the format, 4 on every device seen
        if (m_reader.u8() != 11 || m_reader.slice(11) != QByteArrayView("streamtyped"))
            throw Error(QStringLiteral("no typed stream"));
        readUnsigned(m_reader.u8());
    }

    std::uint32_t readUnsigned(std::uint8_t head)
    {
        if (head == Int16)
            return m_reader.u16le();
        if (head == Int32)
            return m_reader.u32le();
        if (head >= 0x80 && head < FirstReference)
            throw Error(QStringLiteral("mark %1 where a number was expected").arg(head));
        return head;
    }

    std::size_t readReference(std::uint8_t head, std::size_t tableSize)
    {
        std::int64_t number = static_cast<std::int8_t>(head);
        if (head == Int16)
            number = static_cast<std::int16_t>(m_reader.u16le());
        else if (head == Int32)
            number = static_cast<std::int32_t>(m_reader.u32le());
        number -= static_cast<std::int8_t>(FirstReference);
        if (number < 0 || static_cast<std::size_t>(number) >= tableSize)
            throw Error(QStringLiteral("reference to something that was not read"));
        return static_cast<std::size_t>(number);
    }

    QByteArrayView readBytes() { return m_reader.slice(readUnsigned(m_reader.u8())); }

    QByteArrayView readShared()
    {
        const std::uint8_t head = m_reader.u8();
        if (head == Nil)
            return {};
        if (head != New)
            return m_strings[readReference(head, m_strings.size())];
        m_strings.push_back(readBytes());
        return m_strings.back();
    }

    // Reads up to the first group inside of a new object; true when the object is a string.
    bool beginObject()
    {
        if (readShared() != QByteArrayView("@") || m_reader.u8() != New)
            throw Error(QStringLiteral("no object where one was expected"));
        m_classIsString.push_back(false);
        return readClass();
    }

    // True for NSString and every class derived from it.
    bool readClass()
    {
        const std::size_t first = m_classIsString.size();
        std::uint8_t head = m_reader.u8();
        for (; head == New; head = m_reader.u8()) {
            m_classIsString.push_back(readShared() == QByteArrayView("NSString"));
            readUnsigned(m_reader.u8());
        }
        bool isString = head != Nil && m_classIsString[readReference(head, m_classIsString.size())];
        for (std::size_t i = m_classIsString.size(); i-- > first;)
            m_classIsString[i] = isString = isString || m_classIsString[i];
        return isString;
    }

    QString stringContent()
    {
        if (readShared() != QByteArrayView("+"))
            throw Error(QStringLiteral("a string without its bytes"));
        return QString::fromUtf8(readBytes());
    }

    ByteReader m_reader;
    std::vector<QByteArrayView> m_strings;
    std::vector<bool> m_classIsString; // false for objects
};
} // namespace

std::optional<QString> typedStreamText(QByteArrayView bytes)
{
    try {
        return TypedStream(bytes).text();
    } catch (const Error &) {
        return {};
    }
}

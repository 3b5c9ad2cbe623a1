#include "sample/typedstream_writer.h"

#include <QtEndian>

#include <algorithm>

namespace sample {

namespace {

// 04 0B "streamtyped" 81 E8 03, then values, each after the text that describes its type. Type texts and
// class names are written out once and then referred to by number, and so are objects and classes; the two
// tables are separate, and both count from 0x92.
class TypedstreamWriter
{
public:
    QByteArray m_bytes = QByteArray::fromHex("040b73747265616d747970656481e803");

    void integer(qint64 value);
    void type(const char *encoding) { sharedText(encoding); }
    void object(const char *className);
    void end() { m_bytes += '\x86'; }
    void cString(const char *text);
    void string(const char *className, const QByteArray &utf8);
    void number(int value);

private:
    struct ClassInfo
    {
        const char *name;
        int version;
        const char *superclass;
    };

    static const ClassInfo &info(const QByteArray &name);
    void sharedText(const QByteArray &text);
    void classChain(const QByteArray &name);
    void reference(std::size_t index) { m_bytes += static_cast<char>(0x92 + index); }

    std::vector<QByteArray> m_texts;
    std::vector<QByteArray> m_objects; // class names where the entry is a class, else empty
};

const TypedstreamWriter::ClassInfo &TypedstreamWriter::info(const QByteArray &name)
{
    static constexpr ClassInfo classes[] = {
        {"NSObject", 0, ""},
        {"NSAttributedString", 0, "NSObject"},
        {"NSMutableAttributedString", 0, "NSAttributedString"},
        {"NSString", 1, "NSObject"},
        {"NSMutableString", 1, "NSString"},
        {"NSDictionary", 0, "NSObject"},
        {"NSValue", 0, "NSObject"},
        {"NSNumber", 0, "NSValue"},
    };
    return *std::find_if(std::begin(classes), std::end(classes),
                         [&](const ClassInfo &c) { return name == c.name; });
}

void TypedstreamWriter::integer(qint64 value)
{
    if (value >= -110 && value <= 127) {
        m_bytes += static_cast<char>(value);
        return;
    }
    const bool narrow = value >= INT16_MIN && value <= INT16_MAX;
    m_bytes += narrow ? '\x81' : '\x82';
    for (int shift = 0; shift < (narrow ? 16 : 32); shift += 8)
        m_bytes += static_cast<char>(value >> shift);
}

void TypedstreamWriter::sharedText(const QByteArray &text)
{
    const auto known = std::find(m_texts.begin(), m_texts.end(), text);
    if (known != m_texts.end()) {
        reference(static_cast<std::size_t>(known - m_texts.begin()));
        return;
    }
    m_texts.push_back(text);
    m_bytes += '\x84';
    integer(text.size());
    m_bytes += text;
}

void TypedstreamWriter::classChain(const QByteArray &name)
{
    if (name.isEmpty()) {
        m_bytes += '\x85';
        return;
    }
    const auto known = std::find(m_objects.begin(), m_objects.end(), name);
    if (known != m_objects.end()) {
        reference(static_cast<std::size_t>(known - m_objects.begin()));
        return;
    }
    m_objects.push_back(name);
    m_bytes += '\x84';
    sharedText(name);
    integer(info(name).version);
    classChain(info(name).superclass);
}

void TypedstreamWriter::object(const char *className)
{
    type("@");
    m_objects.emplace_back();
    m_bytes += '\x84';
    classChain(className);
}

void TypedstreamWriter::cString(const char *text)
{
    type("*");
    m_objects.emplace_back();
    m_bytes += '\x84';
    sharedText(text);
}

void TypedstreamWriter::string(const char *className, const QByteArray &utf8)
{
    object(className);
    type("+");
    integer(utf8.size());
    m_bytes += utf8;
    end();
}

void TypedstreamWriter::number(int value)
{
    object("NSNumber");
    cString("i");
    type("i");
    integer(value);
    end();
}

void writeAttributes(TypedstreamWriter &writer, const TextRun &run)
{
    const bool transfer = !run.transferGuid.isEmpty();
    writer.object("NSDictionary");
    writer.type("i");
    writer.integer(transfer ? 2 : 1);
    if (transfer) {
        writer.string("NSString", "__kIMFileTransferGUIDAttributeName");
        writer.string("NSString", run.transferGuid);
    }
    writer.string("NSString", "__kIMMessagePartAttributeName");
    writer.number(run.part);
    writer.end();
}

} // namespace

QByteArray typedstreamBody(const QByteArray &utf8, std::vector<TextRun> runs, StyledText kind)
{
    if (runs.empty())
        runs.push_back({static_cast<int>(QString::fromUtf8(utf8).size()), 0, {}});
    const bool isMutable = kind == StyledText::Mutable;
    TypedstreamWriter writer;
    writer.object(isMutable ? "NSMutableAttributedString" : "NSAttributedString");
    writer.string(isMutable ? "NSMutableString" : "NSString", utf8);
    int attributes = 0;
    for (const TextRun &run : runs) {
        writer.type("iI");
        writer.integer(++attributes);
        writer.integer(run.length);
        writeAttributes(writer, run);
    }
    writer.end();
    return writer.m_bytes;
}

} // namespace sample

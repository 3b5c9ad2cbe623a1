#include "sample/plist_value.h"

#include <QtEndian>

#include <bit>

namespace sample {

namespace {

// "bplist00" | objects, each a marker byte (kind, small count) and its bytes | offset table | trailer:
// 6 unused, width of an offset, width of a reference, object count (8), root (8), table offset (8).
class BinaryPlistWriter
{
public:
    QByteArray write(const PlistValue &root);

private:
    std::size_t number(const PlistValue &value);
    void writeObject(const PlistValue &value, const std::vector<std::size_t> &references);
    void writeBigEndian(quint64 value, int width);
    void writeInteger(qint64 value);
    void writeMarker(int kind, qsizetype count);
    void writeText(const QString &text);

    struct Object
    {
        const PlistValue *value;
        std::vector<std::size_t>
            references; // of an array its items, of a dictionary its keys, then its values
    };

    std::vector<Object> m_objects;
    std::vector<std::unique_ptr<PlistValue>> m_keys;
    QByteArray m_bytes = "bplist00";
    int m_referenceWidth = 1;
};

int widthOf(quint64 value)
{
    return value < 0x100 ? 1 : value < 0x10000 ? 2 : value < 0x100000000ULL ? 4 : 8;
}

QByteArray BinaryPlistWriter::write(const PlistValue &root)
{
    number(root);
    m_referenceWidth = widthOf(m_objects.size());
    std::vector<qsizetype> offsets;
    for (const Object &object : m_objects) {
        offsets.push_back(m_bytes.size());
        writeObject(*object.value, object.references);
    }
    const auto table = static_cast<quint64>(m_bytes.size());
    const int offsetWidth = widthOf(table);
    for (const qsizetype offset : offsets)
        writeBigEndian(static_cast<quint64>(offset), offsetWidth);
    m_bytes.append(6, '\0');
    writeBigEndian(static_cast<quint64>(offsetWidth), 1);
    writeBigEndian(static_cast<quint64>(m_referenceWidth), 1);
    writeBigEndian(m_objects.size(), 8);
    writeBigEndian(0, 8);
    writeBigEndian(table, 8);
    return m_bytes;
}

std::size_t BinaryPlistWriter::number(const PlistValue &value)
{
    const std::size_t index = m_objects.size();
    m_objects.push_back({&value, {}});
    std::vector<std::size_t> references;
    if (const auto *array = std::get_if<PlistValue::Array>(&value.variant())) {
        for (const PlistValue &item : *array)
            references.push_back(number(item));
    } else if (const auto *dictionary = std::get_if<PlistValue::Dictionary>(&value.variant())) {
        for (const auto &entry : *dictionary) {
            m_keys.push_back(std::make_unique<PlistValue>(entry.first));
            references.push_back(number(*m_keys.back()));
        }
        for (const auto &entry : *dictionary)
            references.push_back(number(entry.second));
    }
    m_objects[index].references = std::move(references);
    return index;
}

void BinaryPlistWriter::writeBigEndian(quint64 value, int width)
{
    for (int shift = (width - 1) * 8; shift >= 0; shift -= 8)
        m_bytes += static_cast<char>(value >> shift);
}

void BinaryPlistWriter::writeInteger(qint64 value)
{
    const int width = value < 0 ? 8 : widthOf(static_cast<quint64>(value));
    m_bytes += static_cast<char>(0x10 | std::countr_zero(static_cast<unsigned>(width)));
    writeBigEndian(static_cast<quint64>(value), width);
}

void BinaryPlistWriter::writeMarker(int kind, qsizetype count)
{
    m_bytes += static_cast<char>(kind << 4 | static_cast<int>(qMin<qsizetype>(count, 15)));
    if (count >= 15)
        writeInteger(count);
}

void BinaryPlistWriter::writeText(const QString &text)
{
    const bool ascii = std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
    writeMarker(ascii ? 5 : 6, text.size());
    if (ascii) {
        m_bytes += text.toLatin1();
        return;
    }
    for (const QChar unit : text)
        writeBigEndian(unit.unicode(), 2);
}

void BinaryPlistWriter::writeObject(const PlistValue &value, const std::vector<std::size_t> &references)
{
    const PlistValue::Variant &variant = value.variant();
    if (const auto *flag = std::get_if<bool>(&variant)) {
        m_bytes += *flag ? '\x09' : '\x08';
    } else if (const auto *integer = std::get_if<qint64>(&variant)) {
        writeInteger(*integer);
    } else if (const auto *real = std::get_if<double>(&variant)) {
        m_bytes += '\x23';
        writeBigEndian(std::bit_cast<quint64>(*real), 8);
    } else if (const auto *date = std::get_if<PlistDate>(&variant)) {
        m_bytes += '\x33';
        writeBigEndian(std::bit_cast<quint64>(date->appleSeconds), 8);
    } else if (const auto *uid = std::get_if<PlistUid>(&variant)) {
        const int width = widthOf(uid->value);
        m_bytes += static_cast<char>(0x80 | (width - 1));
        writeBigEndian(uid->value, width);
    } else if (const auto *data = std::get_if<QByteArray>(&variant)) {
        writeMarker(4, data->size());
        m_bytes += *data;
    } else if (const auto *text = std::get_if<QString>(&variant)) {
        writeText(*text);
    } else {
        const bool array = std::holds_alternative<PlistValue::Array>(variant);
        const auto entries = static_cast<qsizetype>(references.size());
        writeMarker(array ? 0xA : 0xD, array ? entries : entries / 2);
        for (const std::size_t reference : references)
            writeBigEndian(reference, m_referenceWidth);
    }
}

} // namespace

QByteArray binaryPlist(const PlistValue &root)
{
    return BinaryPlistWriter().write(root);
}

} // namespace sample

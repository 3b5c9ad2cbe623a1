#include "sample/plist_value.h"

#include "base/apple_time.h"

namespace sample {

namespace {

void writeValue(QByteArray &out, const PlistValue &value, int depth);

void writeElement(QByteArray &out, const char *name, const QByteArray &content, int depth)
{
    out += QByteArray(depth, '\t') + '<' + name + '>' + content + "</" + name + ">\n";
}

void writeDictionary(QByteArray &out, const PlistValue::Dictionary &dictionary, int depth)
{
    out += QByteArray(depth, '\t') + "<dict>\n";
    for (const auto &[key, value] : dictionary) {
        writeElement(out, "key", key.toHtmlEscaped().toUtf8(), depth + 1);
        writeValue(out, value, depth + 1);
    }
    out += QByteArray(depth, '\t') + "</dict>\n";
}

void writeArray(QByteArray &out, const PlistValue::Array &array, int depth)
{
    out += QByteArray(depth, '\t') + "<array>\n";
    for (const PlistValue &item : array)
        writeValue(out, item, depth + 1);
    out += QByteArray(depth, '\t') + "</array>\n";
}

void writeValue(QByteArray &out, const PlistValue &value, int depth)
{
    const PlistValue::Variant &variant = value.variant();
    if (const auto *flag = std::get_if<bool>(&variant))
        out += QByteArray(depth, '\t') + (*flag ? "<true/>\n" : "<false/>\n");
    else if (const auto *integer = std::get_if<qint64>(&variant))
        writeElement(out, "integer", QByteArray::number(*integer), depth);
    else if (const auto *uid = std::get_if<PlistUid>(&variant))
        writeElement(out, "integer", QByteArray::number(uid->value), depth);
    else if (const auto *real = std::get_if<double>(&variant))
        writeElement(out, "real", QByteArray::number(*real, 'g', 17), depth);
    else if (const auto *date = std::get_if<PlistDate>(&variant))
        writeElement(out, "date", isoUtc(unixFromApple(static_cast<qint64>(date->appleSeconds))).toLatin1(),
                     depth);
    else if (const auto *data = std::get_if<QByteArray>(&variant))
        writeElement(out, "data", data->toBase64(), depth);
    else if (const auto *text = std::get_if<QString>(&variant))
        writeElement(out, "string", text->toHtmlEscaped().toUtf8(), depth);
    else if (const auto *array = std::get_if<PlistValue::Array>(&variant))
        writeArray(out, *array, depth);
    else
        writeDictionary(out, std::get<PlistValue::Dictionary>(variant), depth);
}

} // namespace

QByteArray xmlPlist(const PlistValue &root)
{
    QByteArray out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                     "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                     "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                     "<plist version=\"1.0\">\n";
    writeValue(out, root, 0);
    out += "</plist>\n";
    return out;
}

} // namespace sample

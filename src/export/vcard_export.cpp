#include "export/vcard_export.h"

#include "personal/contact_words.h"

#include <QHash>

namespace {
constexpr int photoWidth = 75;

using TypeWords = QHash<int, QByteArray>;

const TypeWords phoneTypes{{1, "home,voice"}, {2, "cell"},     {3, "work,voice"},
                           {4, "work,fax"},   {5, "home,fax"}, {6, "pager"},
                           {9, "car"},        {11, "isdn"},    {13, "fax"}};
const TypeWords imTypes{{1, "aim"},        {2, "msn"},        {3, "yahoo"},    {4, "skype"},
                        {5, "qq"},         {6, "googletalk"}, {7, "icq"},      {8, "jabber"},
                        {9, "netmetting"}, {10, "gadugadu"},  {11, "facebook"}};
const TypeWords relationTypes{{1, "assistant"}, {2, "brother"},  {3, "child"},   {4, "dompartner"},
                              {5, "father"},    {6, "friend"},   {7, "manager"}, {8, "mother"},
                              {9, "parent"},    {10, "partner"}, {11, "ref"},    {12, "relative"},
                              {13, "sister"},   {14, "spouse"}};
const TypeWords addressTypes{{1, "home"}, {2, "work"}};
const TypeWords websiteTypes{{1, "homepage"}, {2, "blog"}, {3, "profile"},
                             {4, "home"},     {5, "work"}, {6, "ftp"}};

constexpr int birthday = 3;
constexpr int anniversary = 1;

// Only ";" is escaped: readers of these files expect the rest as it is.
QString joined(const QStringList &parts)
{
    QStringList escaped = parts;
    escaped.replaceInStrings(QStringLiteral(";"), QStringLiteral("\\;"));
    return escaped.join(QLatin1Char(';'));
}

VCardProperty utf8Text(const char *name, const QString &text)
{
    return {name, {{"CHARSET", "UTF-8"}}, text.toUtf8()};
}

VCardProperty localText(const char *name, const QString &text)
{
    return {name, {}, text.toLocal8Bit()};
}

VCardProperty quoted(const char *name, const QString &text)
{
    return {name,
            {{"CHARSET", "UTF-8"}, {"ENCODING", "QUOTED-PRINTABLE"}},
            VCardExport::quotedPrintable(text.toUtf8(), 0)};
}

VCardProperty typed(VCardProperty property, const QByteArray &type)
{
    if (!type.isEmpty())
        property.params.insert("TYPE", type);
    return property;
}

VCardProperty eventProperty(const ContactDataRow &row, int type)
{
    if (type == birthday)
        return localText("BDAY", row.data(1));
    return typed(localText("X-EVENT", row.data(1)), type == anniversary ? "anniversary" : "other");
}

VCardProperty addressProperty(const ContactDataRow &row, int type)
{
    const QString value =
        QStringLiteral(";;") + joined({row.data(4), row.data(7), row.data(8), row.data(9), row.data(10)});
    return typed(quoted("ADR", value), addressTypes.value(type, "intl"));
}

QList<VCardProperty> propertiesOfRow(ContactDataKind kind, const ContactDataRow &row)
{
    const int type = row.data(2).toInt();
    switch (kind) {
    case ContactDataKind::Name:
        return {utf8Text("N", joined({row.data(2), row.data(3), row.data(4), row.data(5), row.data(6)}))};
    case ContactDataKind::Photo:
        return {{"PHOTO",
                 {{"ENCODING", "B"}, {"TYPE", "JPEG"}},
                 VCardExport::foldBase64(row.data15, photoWidth)}};
    case ContactDataKind::Phone:
        return {typed(localText("TEL", row.data(1)), phoneTypes.value(type))};
    case ContactDataKind::Email:
        return {typed(localText("EMAIL", row.data(1)), "internet")};
    case ContactDataKind::Nickname:
        return {utf8Text("NICKNAME", row.data(1))};
    case ContactDataKind::Event:
        return {eventProperty(row, type)};
    case ContactDataKind::GroupMembership:
        return {utf8Text("CATEGORIES", row.data(2))};
    case ContactDataKind::Im:
        return {typed(utf8Text("X-IM", row.data(1)), imTypes.value(row.data(5).toInt()))};
    case ContactDataKind::Note:
        return {quoted("NOTE", row.data(1))};
    case ContactDataKind::Organization:
        return {utf8Text("TITLE", row.data(4)),
                utf8Text("ORG", joined({row.data(1), row.data(5)}) + QStringLiteral(";;"))};
    case ContactDataKind::Relation:
        return {typed(utf8Text("X-REL", row.data(1)), relationTypes.value(type))};
    case ContactDataKind::PostalAddress:
        return {addressProperty(row, type)};
    case ContactDataKind::Website:
        return {typed(localText("URL", row.data(1)), websiteTypes.value(type, "other"))};
    }
    return {};
}
} // namespace

QList<VCardProperty> VCardExport::propertiesOf(const ContactRecord &contact)
{
    QList<VCardProperty> properties{{"VERSION", {}, "3.0"}, utf8Text("FN", displayNameOf(contact))};
    for (auto kind = contact.rows.constBegin(); kind != contact.rows.constEnd(); ++kind)
        for (const ContactDataRow &row : kind.value())
            properties.append(propertiesOfRow(kind.key(), row));
    return properties;
}

QByteArray VCardExport::exportContact(const ContactRecord &contact)
{
    return serialize(propertiesOf(contact));
}

QByteArray VCardExport::serialize(const QList<VCardProperty> &properties)
{
    QByteArray card("BEGIN:VCARD\r\n");
    for (const VCardProperty &property : properties) {
        card += property.name;
        for (auto param = property.params.constBegin(); param != property.params.constEnd(); ++param)
            card += ';' + param.key() + '=' + param.value();
        card += ':' + property.value + "\r\n";
    }
    return card + "END:VCARD\r\n";
}

QByteArray VCardExport::foldBase64(const QByteArray &bytes, int width)
{
    const QByteArray base64 = bytes.toBase64();
    if (width <= 0)
        return base64;
    QByteArray folded;
    for (qsizetype start = 0; start < base64.size(); start += width) {
        if (start > 0)
            folded += "\r\n ";
        folded += base64.mid(start, width);
    }
    return folded;
}

QByteArray VCardExport::quotedPrintable(const QByteArray &bytes, int width)
{
    static constexpr char digits[] = "0123456789ABCDEF";
    QByteArray quoted;
    int count = 0;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x21 || byte > 0x7E || byte == '=') {
            quoted += '=';
            quoted += digits[byte >> 4];
            quoted += digits[byte & 0xF];
            count += 3;
        } else {
            quoted += c;
            ++count;
        }
        if (width != 0 && count >= width - 3) {
            quoted += "=\r\n ";
            count = 0;
        }
    }
    return quoted;
}

#include "personal/vcard_reader.h"

#include "personal/contact_words.h"
#include "personal/vcard_lines.h"

#include <QHash>
#include <QStringDecoder>

#include <memory>

namespace {
using Kind = ContactDataKind;

struct TypeWord
{
    const char *word;
    int type;
};

int typeOf(const VCardLine &line, std::initializer_list<TypeWord> words, int fallback = 0)
{
    for (const TypeWord &candidate : words)
        if (line.hasType(candidate.word))
            return candidate.type;
    return fallback;
}

int phoneType(const VCardLine &line)
{
    if (line.hasType("fax"))
        return line.hasType("work") ? 4 : line.hasType("home") ? 5 : 13;
    return typeOf(
        line, {{"cell", 2}, {"pager", 6}, {"car", 9}, {"isdn", 11}, {"home", 1}, {"work", 3}, {"main", 12}});
}

ContactDataRow typedRow(const QString &value, int type)
{
    ContactDataRow row;
    row.data(1) = value;
    row.data(2) = QString::number(type);
    return row;
}

QString part(const QStringList &parts, qsizetype index)
{
    return index < parts.size() ? parts.at(index) : QString();
}

/// Reads one card; the name rows are put together at its end, when FN and N are both known.
class CardReader
{
public:
    void read(const VCardLine &line)
    {
        static const QHash<QByteArray, void (CardReader::*)(const VCardLine &)> readers{
            {"FN", &CardReader::fullName},
            {"N", &CardReader::name},
            {"TEL", &CardReader::phone},
            {"EMAIL", &CardReader::email},
            {"NICKNAME", &CardReader::nickname},
            {"BDAY", &CardReader::birthday},
            {"ANNIVERSARY", &CardReader::anniversary},
            {"X-ANNIVERSARY", &CardReader::anniversary},
            {"X-EVENT", &CardReader::event},
            {"NOTE", &CardReader::note},
            {"ORG", &CardReader::organization},
            {"TITLE", &CardReader::title},
            {"ADR", &CardReader::address},
            {"URL", &CardReader::website},
            {"PHOTO", &CardReader::photo},
            {"X-IM", &CardReader::im},
            {"IMPP", &CardReader::impp},
            {"X-REL", &CardReader::relation},
            {"RELATED", &CardReader::relation},
            {"CATEGORIES", &CardReader::groups},
        };
        if (const auto reader = readers.value(line.name))
            (this->*reader)(line);
    }

    ContactRecord finish()
    {
        fillName();
        m_record.rows[Kind::Name] = {m_name};
        if (m_work != ContactDataRow())
            m_record.rows[Kind::Organization] = {m_work};
        return std::move(m_record);
    }

    QString fullName() const { return m_fullName; }

private:
    ContactRecord m_record;
    ContactDataRow m_name;
    ContactDataRow m_work;
    QString m_fullName;
    QStringList m_nameParts;

    static QString plain(const VCardLine &line) { return vCardUnescaped(line.text()); }
    static QStringList parts(const VCardLine &line) { return vCardParts(line.text()); }
    void add(Kind kind, const ContactDataRow &row) { m_record.rows[kind].append(row); }

    void fullName(const VCardLine &line) { m_fullName = plain(line).trimmed(); }

    void name(const VCardLine &line) { m_nameParts = parts(line); }

    // The standard puts the family name first, the writer of this program the given name. The full name tells
    // which of the two a card follows.
    void fillName()
    {
        const QString first = part(m_nameParts, 0);
        const QString second = part(m_nameParts, 1);
        const qsizetype secondAt = second.isEmpty() ? -1 : m_fullName.indexOf(second);
        const bool familyFirst =
            secondAt >= 0 && m_fullName.lastIndexOf(first) > secondAt && !first.isEmpty();
        m_name.data(2) = familyFirst ? second : first;
        m_name.data(3) = familyFirst ? first : second;
        m_name.data(4) = part(m_nameParts, 2);
        m_name.data(5) = part(m_nameParts, 3);
        m_name.data(6) = part(m_nameParts, 4);
        m_name.data(1) = m_fullName.isEmpty() ? composeDisplayName(m_name) : m_fullName;
    }

    void phone(const VCardLine &line)
    {
        QString number = plain(line);
        if (number.startsWith(QLatin1String("tel:"), Qt::CaseInsensitive))
            number = number.mid(4);
        add(Kind::Phone, typedRow(number, phoneType(line)));
    }

    void email(const VCardLine &line)
    {
        add(Kind::Email, typedRow(plain(line), typeOf(line, {{"home", 1}, {"work", 2}, {"cell", 4}})));
    }

    void nickname(const VCardLine &line)
    {
        ContactDataRow row;
        row.data(1) = plain(line);
        add(Kind::Nickname, row);
    }

    void birthday(const VCardLine &line) { add(Kind::Event, typedRow(plain(line), 3)); }
    void anniversary(const VCardLine &line) { add(Kind::Event, typedRow(plain(line), 1)); }
    void event(const VCardLine &line)
    {
        add(Kind::Event, typedRow(plain(line), line.hasType("anniversary") ? 1 : 0));
    }

    void note(const VCardLine &line)
    {
        ContactDataRow row;
        row.data(1) = plain(line);
        add(Kind::Note, row);
    }

    void organization(const VCardLine &line)
    {
        const QStringList value = parts(line);
        m_work.data(1) = part(value, 0);
        m_work.data(5) = part(value, 1);
    }

    void title(const VCardLine &line) { m_work.data(4) = plain(line); }

    void address(const VCardLine &line)
    {
        const QStringList value = parts(line);
        QStringList street{part(value, 0), part(value, 1), part(value, 2)};
        street.removeAll(QString());
        ContactDataRow row;
        row.data(2) = QString::number(typeOf(line, {{"home", 1}, {"work", 2}}));
        row.data(4) = street.join(QLatin1Char('\n'));
        row.data(7) = part(value, 3);
        row.data(8) = part(value, 4);
        row.data(9) = part(value, 5);
        row.data(10) = part(value, 6);
        row.data(1) = composeAddress(row);
        add(Kind::PostalAddress, row);
    }

    void website(const VCardLine &line)
    {
        add(Kind::Website,
            typedRow(
                plain(line),
                typeOf(
                    line,
                    {{"homepage", 1}, {"blog", 2}, {"profile", 3}, {"home", 4}, {"work", 5}, {"ftp", 6}})));
    }

    void photo(const VCardLine &line)
    {
        ContactDataRow row;
        row.data15 = line.embeddedBytes();
        // A picture that lies on a server is left there.
        if (!row.data15.isEmpty())
            add(Kind::Photo, row);
    }

    void im(const VCardLine &line)
    {
        ContactDataRow row = typedRow(plain(line), 0);
        row.data(5) = QString::number(typeOf(line, {{"aim", 1},
                                                    {"msn", 2},
                                                    {"yahoo", 3},
                                                    {"skype", 4},
                                                    {"qq", 5},
                                                    {"googletalk", 6},
                                                    {"icq", 7},
                                                    {"jabber", 8},
                                                    {"netmetting", 9},
                                                    {"gadugadu", 10},
                                                    {"facebook", 11}}));
        add(Kind::Im, row);
    }

    void impp(const VCardLine &line)
    {
        static const QHash<QString, int> schemes{{QStringLiteral("aim"), 1},
                                                 {QStringLiteral("msnim"), 2},
                                                 {QStringLiteral("ymsgr"), 3},
                                                 {QStringLiteral("skype"), 4},
                                                 {QStringLiteral("xmpp"), 8}};
        const QString value = plain(line);
        const qsizetype colon = value.indexOf(QLatin1Char(':'));
        ContactDataRow row = typedRow(value.mid(colon + 1), 0);
        row.data(5) = QString::number(colon < 0 ? 0 : schemes.value(value.left(colon).toLower()));
        add(Kind::Im, row);
    }

    void relation(const VCardLine &line)
    {
        add(Kind::Relation, typedRow(plain(line), typeOf(line, {{"assistant", 1},
                                                                {"brother", 2},
                                                                {"child", 3},
                                                                {"dompartner", 4},
                                                                {"father", 5},
                                                                {"friend", 6},
                                                                {"manager", 7},
                                                                {"mother", 8},
                                                                {"parent", 9},
                                                                {"partner", 10},
                                                                {"ref", 11},
                                                                {"relative", 12},
                                                                {"sister", 13},
                                                                {"spouse", 14}})));
    }

    void groups(const VCardLine &line)
    {
        for (const QString &name : plain(line).split(QLatin1Char(','), Qt::SkipEmptyParts)) {
            ContactDataRow row;
            row.data(2) = name.trimmed();
            add(Kind::GroupMembership, row);
        }
    }
};

bool saysSomething(const ContactRecord &contact)
{
    return contact.rows.size() > 1 || contact.rows.first().first() != ContactDataRow();
}

/// Some programs write UTF-16, which a mark at the beginning tells.
QByteArray asUtf8(QByteArrayView text)
{
    QStringDecoder utf16(QStringDecoder::Utf16);
    const bool isUtf16 = text.startsWith("\xff\xfe") || text.startsWith("\xfe\xff");
    return isUtf16 ? QString(utf16.decode(text)).toUtf8() : text.toByteArray();
}
} // namespace

VCardContacts readVCards(QByteArrayView text)
{
    VCardContacts result;
    std::unique_ptr<CardReader> card;
    int number = 0;
    int unreadable = 0;
    const auto name = [&](const QString &problem) {
        const QString name = card->fullName();
        result.problems.append(QStringLiteral("card %1%2: %3")
                                   .arg(QString::number(number),
                                        name.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(name),
                                        problem));
    };
    const auto skipUnfinished = [&] {
        if (card)
            name(QStringLiteral("it has no end, and is left out"));
        card.reset();
    };
    for (const VCardLine &line : splitVCardLines(asUtf8(text))) {
        const bool isVCard = line.value.trimmed().compare("VCARD", Qt::CaseInsensitive) == 0;
        if (line.name == "BEGIN" && isVCard) {
            skipUnfinished();
            ++number;
            unreadable = 0;
            card = std::make_unique<CardReader>();
        } else if (!card) {
            continue;
        } else if (line.name == "END" && isVCard) {
            if (unreadable > 0)
                name(QStringLiteral("%1 of its lines could not be read").arg(unreadable));
            if (ContactRecord contact = card->finish(); saysSomething(contact))
                result.contacts.append(std::move(contact));
            else
                name(QStringLiteral("it is empty, and is left out"));
            card.reset();
        } else if (line.name.isEmpty()) {
            ++unreadable;
        } else {
            card->read(line);
        }
    }
    skipUnfinished();
    return result;
}

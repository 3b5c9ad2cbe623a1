#include "personal/vcard_reader.h"

#include "personal/contact_words.h"
#include "personal/vcard_lines.h"

#include <QHash>
#include <QSet>
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

/// What the program writes of its own: FN and N of version 3.0 with CHARSET=UTF-8 and nothing else, which
/// that version does not know.
bool hasOwnMark(const VCardLine &line)
{
    return line.params.size() == 1 && line.param("CHARSET") == "UTF-8";
}

/// Reads one card, and tells what it does not bring over; the name row is put together at the end, when all
/// of it is known.
class CardReader
{
public:
    /// `where` says which card of which file this is.
    explicit CardReader(QString where) : m_where(std::move(where)) {}

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
        // About the card, not about the person.
        static const QSet<QByteArray> ofTheCard{"VERSION", "PRODID", "REV", "UID"};
        if (line.name.isEmpty())
            tell(IssueKind::Damaged, "IDS_ISSUE_CARD_LINES");
        else if (const auto reader = readers.value(line.name))
            (this->*reader)(line);
        else if (!ofTheCard.contains(line.name))
            tell(IssueKind::LeftOut, "IDS_ISSUE_CARD_PROPERTIES", line.name);
        if (line.name == "VERSION")
            m_isOfVersion3 = line.value.trimmed() == "3.0";
    }

    ContactRecord finish()
    {
        fillName();
        m_record.rows[Kind::Name] = {m_name};
        if (m_work != ContactDataRow())
            m_record.rows[Kind::Organization] = {m_work};
        return std::move(m_record);
    }

    void tell(IssueKind kind, const char *what, const QByteArray &property = {})
    {
        m_told.append({kind, what, property});
    }

    /// Names the card by its full name, which may stand behind what is told.
    Report report() const
    {
        const QString card =
            m_fullName.isEmpty() ? m_where : QStringLiteral("%1 (%2)").arg(m_where, m_fullName);
        Report report;
        for (const Told &told : m_told)
            report.add({.kind = told.kind,
                        .what = told.what,
                        .where = (card + QLatin1Char(' ') + QString::fromUtf8(told.property)).trimmed()});
        return report;
    }

private:
    struct Told
    {
        IssueKind kind;
        const char *what;
        QByteArray property;
    };

    QString m_where;
    QList<Told> m_told;
    ContactRecord m_record;
    ContactDataRow m_name;
    ContactDataRow m_work;
    QString m_fullName;
    QStringList m_nameParts;
    bool m_isOfVersion3 = false;
    bool m_isFullNameMarked = false;
    bool m_isNameMarked = false;

    static QString plain(const VCardLine &line) { return vCardUnescaped(line.text()); }
    static QStringList parts(const VCardLine &line) { return vCardParts(line.text()); }
    void add(Kind kind, const ContactDataRow &row) { m_record.rows[kind].append(row); }

    // A contact has one note, one nickname and one place of work, so what a card has more of is joined with
    // it.
    void join(QString &text, const QString &more, const char *separator, const VCardLine &line)
    {
        if (more.isEmpty() || text == more)
            return;
        if (!text.isEmpty()) {
            tell(IssueKind::Remark, "IDS_ISSUE_CARD_VALUES_JOINED", line.name);
            text += QLatin1String(separator);
        }
        text += more;
    }

    void joinRow(Kind kind, const VCardLine &line, const char *separator)
    {
        QList<ContactDataRow> &rows = m_record.rows[kind];
        if (rows.isEmpty())
            rows.append(ContactDataRow());
        join(rows.first().data(1), plain(line), separator, line);
    }

    void fullName(const VCardLine &line)
    {
        if (!m_fullName.isEmpty())
            return tell(IssueKind::LeftOut, "IDS_ISSUE_CARD_PROPERTIES", line.name);
        m_fullName = plain(line).trimmed();
        m_isFullNameMarked = hasOwnMark(line);
    }

    void name(const VCardLine &line)
    {
        if (!m_nameParts.isEmpty())
            return tell(IssueKind::LeftOut, "IDS_ISSUE_CARD_PROPERTIES", line.name);
        m_nameParts = parts(line);
        m_isNameMarked = hasOwnMark(line);
    }

    // The standard puts the family name first; the writer of this program the given name, which its mark
    // tells.
    void fillName()
    {
        const bool givenFirst = m_isOfVersion3 && m_isFullNameMarked && m_isNameMarked;
        m_name.data(2) = part(m_nameParts, givenFirst ? 0 : 1);
        m_name.data(3) = part(m_nameParts, givenFirst ? 1 : 0);
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

    void nickname(const VCardLine &line) { joinRow(Kind::Nickname, line, ", "); }
    void note(const VCardLine &line) { joinRow(Kind::Note, line, "\n\n"); }

    void birthday(const VCardLine &line) { add(Kind::Event, typedRow(plain(line), 3)); }
    void anniversary(const VCardLine &line) { add(Kind::Event, typedRow(plain(line), 1)); }
    void event(const VCardLine &line)
    {
        add(Kind::Event, typedRow(plain(line), line.hasType("anniversary") ? 1 : 0));
    }

    void organization(const VCardLine &line)
    {
        QStringList units = parts(line);
        const QString company = units.takeFirst();
        units.removeAll(QString());
        join(m_work.data(1), company, "; ", line);
        join(m_work.data(5), units.join(QStringLiteral(", ")), "; ", line);
    }

    void title(const VCardLine &line) { join(m_work.data(4), plain(line), "; ", line); }

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
        if (!line.carriesBytes())
            return tell(IssueKind::LeftOut, "IDS_ISSUE_CARD_PICTURES_ELSEWHERE");
        const std::optional<QByteArray> bytes = line.embeddedBytes();
        if (!bytes)
            return tell(IssueKind::Damaged, "IDS_ISSUE_CARD_PICTURES");
        ContactDataRow row;
        row.data15 = *bytes;
        if (!bytes->isEmpty())
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

VCardContacts readVCards(QByteArrayView text, const QString &file)
{
    VCardContacts result;
    std::unique_ptr<CardReader> card;
    int number = 0;
    const auto finish = [&](bool isWhole) {
        if (!card)
            return;
        ContactRecord contact = card->finish();
        if (!isWhole)
            card->tell(IssueKind::Damaged, "IDS_ISSUE_CARDS_WITHOUT_END");
        else if (!saysSomething(contact))
            card->tell(IssueKind::LeftOut, "IDS_ISSUE_CARDS_EMPTY");
        else
            result.contacts.append(std::move(contact));
        result.report.merge(card->report());
        card.reset();
    };
    for (const VCardLine &line : splitVCardLines(asUtf8(text))) {
        const bool isVCard = line.value.trimmed().compare("VCARD", Qt::CaseInsensitive) == 0;
        if (line.name == "BEGIN" && isVCard) {
            finish(false);
            card = std::make_unique<CardReader>(QStringLiteral("%1 card %2").arg(file).arg(++number));
        } else if (line.name == "END" && isVCard) {
            finish(true);
        } else if (card) {
            card->read(line);
        }
    }
    finish(false);
    return result;
}

#include "sample/cast.h"
#include "sample/data_classes.h"
#include "sample/address_book_schema.h"
#include "sample/media_content.h"
#include "sample/sqlite_file.h"

#include <QMap>

namespace sample {

namespace {

enum Property { Phone = 3, Email = 4, Address = 5, Date = 12, InstantMessage = 13, Url = 22, Related = 23 };

struct Entry
{
    QString key;
    QString value;
};

struct MultiValue
{
    int property;
    QString label; // empty: NULL
    QString value;
    std::vector<Entry> entries;
};

struct Contact
{
    QString first;
    QString last;
    QString middle;
    QString prefix;
    QString suffix;
    QString nickname;
    QString organization;
    QString department;
    QString jobTitle;
    QString note;
    QString birthday; // Apple absolute seconds as text, as the column holds them
    int kind = 0;     // 1: a company
    int link = -1;    // shared by rows that are one person
    std::vector<MultiValue> values;
};

QString utf8(const char *text)
{
    return QString::fromUtf8(text);
}

std::vector<Contact> castContacts()
{
    std::vector<Contact> contacts;
    for (const CastMember &member : cast()) {
        Contact contact;
        contact.first = utf8(member.first);
        contact.last = utf8(member.last);
        contact.values.push_back({Phone, utf8(member.label), utf8(member.written), {}});
        if (*member.email)
            contact.values.push_back({Email, utf8("_$!<Home>!$_"), utf8(member.email), {}});
        contacts.push_back(contact);
    }
    return contacts;
}

/// One value of every kind and label that is told apart, and some that are not.
Contact fullContact()
{
    Contact contact;
    contact.first = utf8("Wilhelmina");
    contact.middle = utf8("van der");
    contact.last = utf8("Berg, \"Mien\"");
    contact.prefix = utf8("Dr.");
    contact.suffix = utf8("PhD");
    contact.nickname = utf8("Mien");
    contact.organization = utf8("Berg & Söhne <GmbH>");
    contact.department = utf8("Research; Development");
    contact.jobTitle = utf8("Head, Second Floor");
    contact.note = utf8("first line\nsecond line, with a comma\r\nand a third; \"quoted\"");
    contact.birthday = utf8("155779200.0");
    for (const char *label :
         {"_$!<Mobile>!$_", "_$!<Main>!$_", "_$!<HomeFAX>!$_", "_$!<WorkFAX>!$_", "_$!<Work>!$_",
          "_$!<Home>!$_", "_$!<Pager>!$_", "_$!<OtherFAX>!$_", "_$!<Other>!$_", "TextNow"})
        contact.values.push_back(
            {Phone, utf8(label), QStringLiteral("(206) 555-01%1").arg(10 + contact.values.size()), {}});
    contact.values.push_back({Phone, QString(), utf8("206 555 0199"), {}}); // a value without a label
    contact.values.push_back({Email, utf8("_$!<Work>!$_"), utf8("w.berg@example.org"), {}});
    contact.values.push_back({Email, utf8("school"), utf8("mien@example.edu"), {}});
    contact.values.push_back({Address,
                              utf8("_$!<Home>!$_"),
                              QString(),
                              {{utf8("Street"), utf8("Bergweg 7\nHinterhaus")},
                               {utf8("ZIP"), utf8("10115")},
                               {utf8("City"), utf8("Berlin")},
                               {utf8("Country"), utf8("Deutschland")},
                               {utf8("CountryCode"), utf8("de")}}});
    contact.values.push_back({Address,
                              utf8("_$!<Work>!$_"),
                              QString(),
                              {{utf8("Street"), utf8("1 Main St, Suite 5")},
                               {utf8("City"), utf8("Springfield")},
                               {utf8("State"), utf8("OR")},
                               {utf8("ZIP"), utf8("97477")},
                               {utf8("Country"), utf8("USA")}}});
    contact.values.push_back({Date, utf8("_$!<Anniversary>!$_"), utf8("-86400.0"), {}});
    contact.values.push_back({Date, utf8("first concert"), utf8("400000000.0"), {}});
    contact.values.push_back(
        {InstantMessage,
         utf8("_$!<Home>!$_"),
         QString(),
         {{utf8("service"), utf8("Jabber")}, {utf8("username"), utf8("mien@example.org")}}});
    contact.values.push_back({InstantMessage,
                              utf8("_$!<Work>!$_"),
                              QString(),
                              {{utf8("service"), utf8("Unheard")}, {utf8("username"), utf8("mien.w")}}});
    contact.values.push_back(
        {Url, utf8("_$!<HomePage>!$_"), utf8("https://www.example.org/~mien?a=1&b=2"), {}});
    contact.values.push_back({Url, utf8("_$!<Work>!$_"), utf8("https://berg.example.com/"), {}});
    contact.values.push_back({Related, utf8("_$!<Sister>!$_"), utf8("Johanna"), {}});
    contact.values.push_back({Related, utf8("godmother"), utf8("Tante Elly"), {}});
    return contact;
}

std::vector<Contact> allContacts()
{
    std::vector<Contact> contacts = castContacts();
    contacts[0].note = utf8("met at the bridge");
    contacts[0].birthday = utf8("-160358400.0"); // before 2001
    contacts[0].link = 1;
    contacts.push_back(fullContact());
    Contact linked; // the same person as the first, from another account
    linked.first = utf8("Ada");
    linked.last = utf8("Brückner");
    linked.link = 1;
    linked.values.push_back({Email, utf8("_$!<Work>!$_"), utf8("ada.brueckner@example.com"), {}});
    contacts.push_back(linked);
    Contact company;
    company.organization = utf8("Café Río");
    company.kind = 1;
    company.values.push_back({Phone, utf8("_$!<Main>!$_"), utf8("(206) 555-0150"), {}});
    contacts.push_back(company);
    Contact nameless;
    nameless.values.push_back({Email, utf8("_$!<Other>!$_"), utf8("no-name@example.net"), {}});
    contacts.push_back(nameless);
    return contacts;
}

/// Fills the tables of the address book.
class AddressBookWriter
{
public:
    AddressBookWriter(SqliteFile &file, const Generation &generation, SeededGenerator chance)
        : m_file(file), m_generation(generation), m_chance(chance)
    {
    }

    void add(const Contact &contact);

private:
    QString guid() { return QString::fromLatin1(m_chance.uuid() + ":ABPerson"); }
    qint64 keyOf(const char *table, const QString &value, QMap<QString, qint64> &known);
    void addValue(qint64 person, int identifier, const MultiValue &value);

    SqliteFile &m_file;
    const Generation &m_generation;
    SeededGenerator m_chance;
    QMap<QString, qint64> m_labels;
    QMap<QString, qint64> m_entryKeys;
    int m_rows = 0;
};

qint64 AddressBookWriter::keyOf(const char *table, const QString &value, QMap<QString, qint64> &known)
{
    if (!known.contains(value)) {
        Statement(m_file, QByteArray("insert into ") + table + "(value) values(?)").run(value);
        known[value] = m_file.lastInsertId();
    }
    return known[value];
}

void AddressBookWriter::add(const Contact &contact)
{
    const auto orNull = [](const QString &text) { return text.isEmpty() ? QString() : text; };
    const bool guids = m_generation.ios >= 7;
    const QByteArray sql =
        QByteArray(
            "insert into ABPerson(First, Last, Middle, Prefix, Suffix, Nickname, Organization, Department, "
            "JobTitle, Note, Birthday, Kind, PersonLink, CreationDate, ModificationDate, StoreID") +
        (guids ? ", guid) values(?1,?2,?3,?4,?5,?6,?7,?8,?9,?10,?11,?12,?13,?14,?15,0,?16)"
               : ") values(?1,?2,?3,?4,?5,?6,?7,?8,?9,?10,?11,?12,?13,?14,?15,0)");
    Statement insert(m_file, sql);
    if (guids)
        insert.bind(16, guid());
    const qint64 created = 300000000 + 1000 * ++m_rows;
    insert.run(orNull(contact.first), orNull(contact.last), orNull(contact.middle), orNull(contact.prefix),
               orNull(contact.suffix), orNull(contact.nickname), orNull(contact.organization),
               orNull(contact.department), orNull(contact.jobTitle), orNull(contact.note),
               orNull(contact.birthday), contact.kind, contact.link, created, created + 500);
    const qint64 person = m_file.lastInsertId();
    int identifier = 0;
    for (const MultiValue &value : contact.values)
        addValue(person, identifier++, value);
}

void AddressBookWriter::addValue(qint64 person, int identifier, const MultiValue &value)
{
    Statement insert(m_file, "insert into ABMultiValue(record_id, property, identifier, label, value) "
                             "values(?,?,?,?,?)");
    if (value.label.isEmpty())
        insert.run(person, value.property, identifier, nullptr, value.value);
    else
        insert.run(person, value.property, identifier, keyOf("ABMultiValueLabel", value.label, m_labels),
                   value.value.isEmpty() ? QString() : value.value);
    const qint64 uid = m_file.lastInsertId();
    for (const Entry &entry : value.entries)
        Statement(m_file, "insert into ABMultiValueEntry(parent_id, key, value) values(?,?,?)")
            .run(uid, keyOf("ABMultiValueEntryKey", entry.key, m_entryKeys), entry.value);
}

void addImages(SqliteFile &file, SeededGenerator chance)
{
    Statement thumbnail(file, "insert into ABThumbnailImage values(?,?,?,?)");
    Statement fullSize(file, "insert into ABFullSizeImage(record_id, crop_x, crop_y, crop_width, data) "
                             "values(?,0,0,320,?)");
    for (const int person : {1, 2, 9}) {
        thumbnail.run(person, 0, 0, picture("JPEG", 54, 54, chance));
        thumbnail.run(person, 5, 2, picture("JPEG", 110, 110, chance));
        fullSize.run(person, picture("JPEG", 320, 320, chance));
    }
    thumbnail.run(4, 0, 0, picture("PNG", 54, 54, chance)); // a thumbnail alone
}

void putImages(Making &making)
{
    const QString path = making.inScratch("AddressBookImages.sqlitedb");
    SqliteFile file(path);
    file.execute(addressBookImageTables(making.generation));
    addImages(file, making.chance.fork("contact pictures"));
    file.close(SqliteFile::Journal::Rollback);
    making.container.putFile(
        making.place("HomeDomain", QStringLiteral("Library/AddressBook/AddressBookImages.sqlitedb")), path);
}

} // namespace

void addContacts(Making &making)
{
    const QString path = making.inScratch("AddressBook.sqlitedb");
    SqliteFile file(path);
    file.execute(addressBookTables(making.generation));
    AddressBookWriter writer(file, making.generation, making.chance.fork("contacts"));
    for (const Contact &contact : allContacts())
        writer.add(contact);
    making.summary.counts.contacts = static_cast<int>(file.integer("select count(*) from ABPerson"));
    file.close(making.generation.ios >= 9 ? SqliteFile::Journal::Wal : SqliteFile::Journal::Rollback);
    FilePlace place = making.place("HomeDomain", QStringLiteral("Library/AddressBook/AddressBook.sqlitedb"));
    place.sizeDifference = -4096;
    making.container.putFile(place, path);
    putImages(making);
}

} // namespace sample

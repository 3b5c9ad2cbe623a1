#include "personal/ios_contacts_db.h"

#include "backup/device_database.h"
#include "base/apple_time.h"
#include "base/error.h"
#include "base/report.h"
#include "personal/contact_words.h"

#include <QHash>

#include <algorithm>
#include <vector>

namespace {
const SourceFile peopleFile{QStringLiteral("HomeDomain"),
                            QStringLiteral("Library/AddressBook/AddressBook.sqlitedb")};
const SourceFile imagesFile{QStringLiteral("HomeDomain"),
                            QStringLiteral("Library/AddressBook/AddressBookImages.sqlitedb")};

// What the device's ABMultiValue.property means here.
enum Property { Phone = 3, Email = 4, Address = 5, Date = 12, InstantMessage = 13, Url = 22, Related = 23 };

std::optional<ContactDataKind> kindOf(int property)
{
    switch (property) {
    case Phone:
        return ContactDataKind::Phone;
    case Email:
        return ContactDataKind::Email;
    case Address:
        return ContactDataKind::PostalAddress;
    case Date:
        return ContactDataKind::Event;
    case InstantMessage:
        return ContactDataKind::Im;
    case Url:
        return ContactDataKind::Website;
    case Related:
        return ContactDataKind::Relation;
    default:
        return std::nullopt;
    }
}

constexpr int birthdayType = 3;

// Beyond this a date has no year that could be written.
constexpr qint64 farthestSeconds = 200'000'000'000;

QString dateText(qint64 appleSecondsValue)
{
    const QDateTime date = QDateTime::fromSecsSinceEpoch(unixFromApple(appleSecondsValue), Qt::UTC);
    return date.toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss"));
}

QString imService(const QString &service)
{
    static const QHash<QString, int> numbers{
        {QStringLiteral("AIM"), 1},      {QStringLiteral("MSN"), 2},    {QStringLiteral("Yahoo"), 3},
        {QStringLiteral("Skype"), 4},    {QStringLiteral("QQ"), 5},     {QStringLiteral("GoogleTalk"), 6},
        {QStringLiteral("ICQ"), 7},      {QStringLiteral("Jabber"), 8}, {QStringLiteral("GaduGadu"), 10},
        {QStringLiteral("Facebook"), 11}};
    const auto found = numbers.constFind(service);
    return found == numbers.constEnd() ? QString() : QString::number(*found);
}

QHash<qint64, QString> readTexts(const Sqlite3DB &db, const QString &table)
{
    QHash<qint64, QString> texts;
    if (!db.hasTable(table))
        return texts;
    Sqlite3Cursor row = db.queryThrow(QStringLiteral("select rowid, value from %1").arg(table));
    while (row.moveNext())
        texts.insert(row.getInt64(0), row.getText(1));
    return texts;
}

/// What the key of a dictionary entry stands for, told once for each key and not for each entry.
struct EntryKey
{
    int addressColumn = 0; // 0: none
    bool isService = false;
    bool isUserName = false;
};

EntryKey entryKey(const QString &name)
{
    // Devices have written the keys in either case.
    static const QHash<QString, int> columns{{QStringLiteral("country"), 10},
                                             {QStringLiteral("state"), 8},
                                             {QStringLiteral("city"), 7},
                                             {QStringLiteral("street"), 4},
                                             {QStringLiteral("zip"), 9}};
    const QString key = name.toLower();
    return {columns.value(key), key == QLatin1String("service"), key == QLatin1String("username")};
}

struct DictionaryEntry
{
    qint64 parent; // UID of a multi-value
    EntryKey key;
    QString value;
};

/// The parts of addresses and messenger names, by the value that they belong to.
class Dictionaries
{
public:
    explicit Dictionaries(const Sqlite3DB &db)
    {
        if (!db.hasTable(QStringLiteral("ABMultiValueEntry")))
            return;
        QHash<qint64, EntryKey> keys;
        const QHash<qint64, QString> names = readTexts(db, QStringLiteral("ABMultiValueEntryKey"));
        for (auto name = names.constBegin(); name != names.constEnd(); ++name)
            keys.insert(name.key(), entryKey(name.value()));
        Sqlite3Cursor row = db.queryThrow(
            QStringLiteral("select parent_id, key, value from ABMultiValueEntry order by rowid"));
        while (row.moveNext()) {
            const auto key = keys.constFind(row.getInt64(1));
            if (key != keys.constEnd())
                m_entries.push_back({row.getInt64(0), *key, row.getText(2)});
        }
        std::stable_sort(m_entries.begin(), m_entries.end(),
                         [](const auto &a, const auto &b) { return a.parent < b.parent; });
    }

    template <typename Visit>
    void forEach(qint64 parent, Visit visit) const
    {
        auto entry = std::lower_bound(m_entries.begin(), m_entries.end(), parent,
                                      [](const auto &a, qint64 wanted) { return a.parent < wanted; });
        for (; entry != m_entries.end() && entry->parent == parent; ++entry)
            visit(*entry);
    }

private:
    std::vector<DictionaryEntry> m_entries;
};

void fillAddress(ContactDataRow &row, const Dictionaries &dictionaries, qint64 uid)
{
    dictionaries.forEach(uid, [&row](const DictionaryEntry &entry) {
        if (entry.key.addressColumn != 0)
            row.data(entry.key.addressColumn) = entry.value;
    });
    row.data(1) = composeAddress(row);
}

void fillInstantMessage(ContactDataRow &row, const Dictionaries &dictionaries, qint64 uid)
{
    dictionaries.forEach(uid, [&row](const DictionaryEntry &entry) {
        if (entry.key.isService)
            row.data(5) = imService(entry.value);
        else if (entry.key.isUserName)
            row.data(1) = entry.value;
    });
}

/// Type number and custom text of the labels, by row id; the few that there are stand on thousands of values.
class Labels
{
public:
    explicit Labels(const Sqlite3DB &db) : m_texts(readTexts(db, QStringLiteral("ABMultiValueLabel"))) {}

    /// Null when there is no such label.
    const std::pair<QString, QString> *find(ContactDataKind kind, qint64 rowid)
    {
        const auto text = m_texts.constFind(rowid);
        if (text == m_texts.constEnd())
            return nullptr;
        auto &ofKind = m_known[kind];
        auto known = ofKind.find(rowid);
        if (known == ofKind.end()) {
            QString custom;
            const QString type = QString::number(contactTypeOfLabel(kind, *text, custom));
            known = ofKind.insert(rowid, {type, custom});
        }
        return &*known;
    }

private:
    QHash<qint64, QString> m_texts;
    QMap<ContactDataKind, QHash<qint64, std::pair<QString, QString>>> m_known;
};

void addText(ContactRecord &record, ContactDataKind kind, const QString &text)
{
    if (text.isEmpty())
        return;
    ContactDataRow row;
    row.data(1) = text;
    record.rows[kind].append(std::move(row));
}
} // namespace

IOSContactsDb::IOSContactsDb(FileSource &source) : m_source(source) {}

void IOSContactsDb::open(Report &report)
{
    if (m_people.isOpen())
        return;
    if (!openDeviceDatabase(m_people, m_source, peopleFile))
        throw Error(QStringLiteral("Cannot find AddressBook.sqlitedb"), ErrorKind::NotFound);
    // People without pictures are better than no people.
    try {
        openDeviceDatabase(m_images, m_source, imagesFile);
    } catch (const Error &error) {
        report.add("IDS_ISSUE_DATABASE_DAMAGED", error);
    }
}

QList<ContactRecord> IOSContactsDb::readAll(Scope, Report &report)
{
    open(report);
    QList<Person> people = readPeople(report);
    readPhotos(people, report);
    readValues(people, report);
    QList<ContactRecord> records;
    records.reserve(people.size());
    for (Person &person : people)
        records.append(std::move(person.record));
    return records;
}

bool IOSContactsDb::fillDate(ContactDataRow &row, qint64 appleSecondsValue, Report &report)
{
    if (appleSecondsValue > farthestSeconds || appleSecondsValue < -farthestSeconds) {
        report.add({.kind = IssueKind::Damaged,
                    .what = "IDS_ISSUE_DATES_DAMAGED",
                    .where = peopleFile.display(),
                    .reason = QString::number(appleSecondsValue)});
        return false;
    }
    row.data(1) = dateText(appleSecondsValue);
    return true;
}

QList<IOSContactsDb::Person> IOSContactsDb::readPeople(Report &report)
{
    Sqlite3Cursor row =
        m_people.queryThrow(QStringLiteral("select rowid, * from Abperson order by rowid asc"));
    const auto column = [&row](const char *name) { return row.columnIndex(QLatin1String(name)); };
    const int first = column("first"), last = column("last"), middle = column("middle"),
              prefix = column("prefix"), suffix = column("suffix"), organization = column("organization"),
              department = column("department"), jobTitle = column("jobtitle"), note = column("note"),
              birthday = column("birthday"), nickname = column("nickname");
    QList<Person> people;
    while (row.moveNext()) {
        Person person{row.getInt64(0), {}};
        ContactRecord &record = person.record;
        record.src_id = QString::number(person.rowid);
        ContactDataRow name;
        name.data(2) = row.getText(first);
        name.data(3) = row.getText(last);
        name.data(4) = row.getText(middle);
        name.data(5) = row.getText(prefix);
        name.data(6) = row.getText(suffix);
        name.data(1) = composeDisplayName(name);
        record.rows[ContactDataKind::Name].append(std::move(name));
        ContactDataRow work;
        work.data(1) = row.getText(organization);
        work.data(4) = row.getText(jobTitle);
        work.data(5) = row.getText(department);
        if (work != ContactDataRow())
            record.rows[ContactDataKind::Organization].append(std::move(work));
        addText(record, ContactDataKind::Note, row.getText(note));
        // Zero stands for "none" on the device, and so does everything before it.
        if (const qint64 seconds = row.getInt64(birthday); seconds > 0) {
            ContactDataRow event;
            event.data(2) = QString::number(birthdayType);
            if (fillDate(event, seconds, report))
                record.rows[ContactDataKind::Event].append(std::move(event));
        }
        addText(record, ContactDataKind::Nickname, row.getText(nickname));
        people.append(std::move(person));
    }
    return people;
}

// A damaged database of pictures costs the pictures that can not be read, and no contact.
void IOSContactsDb::readPhotos(QList<Person> &people, Report &report)
{
    try {
        if (!m_images.isOpen() || !m_images.hasTable(QStringLiteral("ABFullSizeImage")))
            return;
        Sqlite3Cursor row =
            m_images.queryThrow(QStringLiteral("select data from ABFullSizeImage where record_id=? limit 1"));
        for (Person &person : people) {
            row.rebind(Sqlite3Sql().addInt64Param(person.rowid));
            try {
                if (!row.moveNext())
                    continue;
                ContactDataRow photo;
                photo.data15 = row.getBlob(0);
                person.record.rows[ContactDataKind::Photo].append(std::move(photo));
            } catch (const Error &error) {
                report.add("IDS_ISSUE_CONTACT_PICTURES_DAMAGED", error.at(imagesFile.display()));
            }
        }
    } catch (const Error &error) {
        report.add("IDS_ISSUE_DATABASE_DAMAGED", error);
    }
}

// One pass over each table: a statement for every person would walk the whole table again where it has no
// index.
void IOSContactsDb::readValues(QList<Person> &people, Report &report)
{
    if (!m_people.hasTable(QStringLiteral("ABMultiValue")))
        return;
    QHash<qint64, ContactRecord *> byRowid;
    byRowid.reserve(people.size());
    for (Person &person : people)
        byRowid.insert(person.rowid, &person.record);
    Labels labels(m_people);
    const Dictionaries dictionaries(m_people);
    Sqlite3Cursor row = m_people.queryThrow(
        QStringLiteral("select UID, record_id, property, label, value from ABMultiValue order by rowid"));
    while (row.moveNext()) {
        ContactRecord *record = byRowid.value(row.getInt64(1));
        const auto kind = kindOf(row.getInt(2));
        if (!record || !kind || row.isNull(3))
            continue;
        const auto *label = labels.find(*kind, row.getInt64(3));
        if (!label)
            continue;
        ContactDataRow value;
        value.data(2) = label->first;
        if (!label->second.isEmpty())
            value.data(3) = label->second;
        if (*kind == ContactDataKind::PostalAddress)
            fillAddress(value, dictionaries, row.getInt64(0));
        else if (*kind == ContactDataKind::Im)
            fillInstantMessage(value, dictionaries, row.getInt64(0));
        else if (*kind != ContactDataKind::Event)
            value.data(1) = row.getText(4);
        else if (!fillDate(value, row.getInt64(4), report))
            continue;
        record->rows[*kind].append(std::move(value));
    }
}

#include "personal/ios_contacts_db.h"

#include "backup/device_database.h"
#include "base/apple_time.h"
#include "base/error.h"
#include "base/report.h"
#include "personal/contact_side_tables.h"
#include "personal/contact_words.h"
#include "personal/stored_date.h"
#include "sqlite/read_rows.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace {
const SourceFile peopleFile{QStringLiteral("HomeDomain"),
                            QStringLiteral("Library/AddressBook/AddressBook.sqlitedb")};
const SourceFile imagesFile{QStringLiteral("HomeDomain"),
                            QStringLiteral("Library/AddressBook/AddressBookImages.sqlitedb")};

// What the device's ABMultiValue.property means here.
enum Property {
    Phone = 3,
    Email = 4,
    Address = 5,
    Date = 12,
    InstantMessage = 13,
    Url = 22,
    Related = 23,
    Profile = 46
};

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

/// False for what is no date, which is told; a null date is an absence.
bool fillDate(ContactDataRow &row, const std::optional<QDateTime> &date, Report &report)
{
    if (date)
        row.data(1) = date->toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss"));
    else
        noteBadDate(peopleFile.display(), report);
    return date.has_value();
}

void addText(ContactRecord &record, ContactDataKind kind, const QString &text)
{
    if (text.isEmpty())
        return;
    ContactDataRow row;
    row.data(1) = text;
    record.rows[kind].append(std::move(row));
}

/// Tells of rows that a reading leaves out; nothing of none.
void tellLeftOut(Report &report, IssueKind kind, const char *what, qint64 count,
                 const SourceFile &file = peopleFile)
{
    if (count > 0)
        report.add({.kind = kind, .what = what, .where = file.display(), .count = count});
}

TableRows expected(const char *table, QStringList columns)
{
    return {.table = QLatin1String(table), .columns = std::move(columns), .need = TableRows::Need::Expected};
}

// The columns of a person, by their place in the statement.
enum PersonColumn {
    First = 1,
    Last,
    Middle,
    Prefix,
    Suffix,
    Organization,
    Department,
    JobTitle,
    Note,
    Birthday,
    Nickname,
    FirstOfOtherNames, // those that have no place in a contact's rows
    EndOfOtherNames = FirstOfOtherNames + 4
};

const QStringList personColumns{
    QStringLiteral("First"),      QStringLiteral("Last"),     QStringLiteral("Middle"),
    QStringLiteral("Prefix"),     QStringLiteral("Suffix"),   QStringLiteral("Organization"),
    QStringLiteral("Department"), QStringLiteral("JobTitle"), QStringLiteral("Note"),
    QStringLiteral("Birthday"),   QStringLiteral("Nickname")};
const QStringList otherNames{QStringLiteral("FirstPhonetic"), QStringLiteral("MiddlePhonetic"),
                             QStringLiteral("LastPhonetic"), QStringLiteral("PreviousFamilyName")};

bool hasOtherName(const Sqlite3Cursor &row)
{
    for (int column = FirstOfOtherNames; column < EndOfOtherNames; ++column)
        if (!row.getText(column).isEmpty())
            return true;
    return false;
}

ContactRecord personOf(const Sqlite3Cursor &row)
{
    ContactRecord record;
    record.src_id = QString::number(row.getInt64(0));
    ContactDataRow name;
    name.data(2) = row.getText(First);
    name.data(3) = row.getText(Last);
    name.data(4) = row.getText(Middle);
    name.data(5) = row.getText(Prefix);
    name.data(6) = row.getText(Suffix);
    name.data(1) = composeDisplayName(name);
    record.rows[ContactDataKind::Name].append(std::move(name));
    ContactDataRow work;
    work.data(1) = row.getText(Organization);
    work.data(4) = row.getText(JobTitle);
    work.data(5) = row.getText(Department);
    if (work != ContactDataRow())
        record.rows[ContactDataKind::Organization].append(std::move(work));
    addText(record, ContactDataKind::Note, row.getText(Note));
    return record;
}

/// False for a birthday that is there and left out.
bool addBirthday(ContactRecord &record, const Sqlite3Cursor &row, Scope scope, Report &report)
{
    if (row.getText(Birthday).isEmpty())
        return true;
    // Zero stands for "none" on the device, and so does everything before it.
    const std::optional<QDateTime> date = storedDate(row, Birthday, Epoch::Apple);
    if (date && unixSeconds(*date) <= appleEpochUnix && scope == Scope::Usual)
        return false;
    ContactDataRow event;
    event.data(2) = QString::number(birthdayType);
    if (fillDate(event, date, report))
        record.rows[ContactDataKind::Event].append(std::move(event));
    return true;
}
} // namespace

IOSContactsDb::IOSContactsDb(FileSource &source) : m_source(source) {}

void IOSContactsDb::open(Report &report)
{
    if (!openDeviceDatabase(m_people, m_source, peopleFile, report))
        throw Error(QStringLiteral("Cannot find AddressBook.sqlitedb"), ErrorKind::NotFound);
    // People without pictures are better than no people.
    try {
        openDeviceDatabase(m_images, m_source, imagesFile, report);
    } catch (const Error &error) {
        report.add("IDS_ISSUE_DATABASE_DAMAGED", error);
    }
}

QList<ContactRecord> IOSContactsDb::readAll(Scope scope, Report &report)
{
    open(report);
    QList<ContactRecord> people = readPeople(scope, report);
    m_byRowid.clear();
    for (ContactRecord &person : people)
        m_byRowid.insert(person.src_id.toLongLong(), &person);
    if (m_images.isOpen())
        readPhotos(scope, report);
    readValues(scope, report);
    readGroups(scope, report);
    return people;
}

QList<ContactRecord> IOSContactsDb::readPeople(Scope scope, Report &report)
{
    std::vector<std::pair<qint64, ContactRecord>> people;
    qint64 birthdays = 0;
    qint64 withOtherNames = 0;
    readRows(m_people,
             {.table = QStringLiteral("ABPerson"), .columns = personColumns, .optional = otherNames}, report,
             [&](const Sqlite3Cursor &row) {
                 return [&] {
                     ContactRecord record = personOf(row);
                     birthdays += addBirthday(record, row, scope, report) ? 0 : 1;
                     addText(record, ContactDataKind::Nickname, row.getText(Nickname));
                     withOtherNames += hasOtherName(row) ? 1 : 0;
                     people.emplace_back(row.getInt64(0), std::move(record));
                 };
             });
    tellLeftOut(report, IssueKind::Hidden, "IDS_ISSUE_EARLY_BIRTHDAYS", birthdays);
    tellLeftOut(report, IssueKind::LeftOut, "IDS_ISSUE_PHONETIC_NAMES", withOtherNames);
    // Around damage the rows come in any order.
    std::stable_sort(people.begin(), people.end(),
                     [](const auto &a, const auto &b) { return a.first < b.first; });
    QList<ContactRecord> records;
    records.reserve(static_cast<qsizetype>(people.size()));
    for (auto &person : people)
        records.append(std::move(person.second));
    return records;
}

// A damaged database of pictures costs the pictures that can not be read, and no contact.
void IOSContactsDb::readPhotos(Scope scope, Report &report)
{
    qint64 further = 0;
    qint64 ofNobody = 0;
    const auto rows = expected("ABFullSizeImage", {QStringLiteral("record_id"), QStringLiteral("data")});
    try {
        readRows(m_images, rows, report, [&](const Sqlite3Cursor &row) {
            return [&] {
                ContactRecord *person = m_byRowid.value(row.getInt64(1));
                if (!person || person->rows.contains(ContactDataKind::Photo)) {
                    ++(person ? further : ofNobody);
                    return;
                }
                ContactDataRow photo;
                photo.data15 = row.getBlob(2);
                person->rows[ContactDataKind::Photo].append(std::move(photo));
            };
        });
        readThumbnails(scope, report);
    } catch (const Error &error) {
        report.add("IDS_ISSUE_DATABASE_DAMAGED", error);
    }
    tellLeftOut(report, IssueKind::LeftOut, "IDS_ISSUE_FURTHER_PICTURES", further, imagesFile);
    tellLeftOut(report, IssueKind::LeftOut, "IDS_ISSUE_PICTURES_OF_NOBODY", ofNobody, imagesFile);
}

// The small pictures are copies of the large ones, but for people who have no large one. The last is the
// best.
void IOSContactsDb::readThumbnails(Scope scope, Report &report)
{
    QHash<ContactRecord *, QByteArray> alone;
    TableRows rows = expected("ABThumbnailImage", {QStringLiteral("record_id"), QStringLiteral("data")});
    rows.need = TableRows::Need::Optional;
    readRows(m_images, rows, report, [&](const Sqlite3Cursor &row) {
        return [&] {
            ContactRecord *person = m_byRowid.value(row.getInt64(1));
            if (person && !person->rows.contains(ContactDataKind::Photo))
                alone.insert(person, scope == Scope::Everything ? row.getBlob(2) : QByteArray());
        };
    });
    if (scope == Scope::Usual)
        return tellLeftOut(report, IssueKind::Hidden, "IDS_ISSUE_SMALL_PICTURES", alone.size(), imagesFile);
    for (auto picture = alone.cbegin(); picture != alone.cend(); ++picture) {
        ContactDataRow photo;
        photo.data15 = picture.value();
        picture.key()->rows[ContactDataKind::Photo].append(std::move(photo));
    }
}

/// A row of the table of values, as it stands.
struct IOSContactsDb::Value
{
    qint64 rowid;
    qint64 uid;
    ContactRecord *person;
    int property;
    std::optional<qint64> label;
    QString text;
    std::optional<QDateTime> date; // of a property that is one
};

// One pass over each table: a statement for every person would walk the whole table again where it has no
// index.
void IOSContactsDb::readValues(Scope scope, Report &report)
{
    ContactLabels labels(m_people, report);
    ContactParts parts(m_people, scope, report);
    qint64 withoutLabel = 0;
    qint64 ofUnknownKind = 0;
    qint64 ofNobody = 0;
    const auto take = [&](const Value &value) {
        const auto kind = kindOf(value.property);
        const auto *label =
            value.label ? labels.find(kind.value_or(ContactDataKind::Website), *value.label) : nullptr;
        if (scope == Scope::Usual && (!kind || !label)) {
            ++(kind ? withoutLabel : ofUnknownKind);
            return;
        }
        ContactDataRow row;
        row.data(2) = label ? label->type : QStringLiteral("0");
        if (label && !label->custom.isEmpty())
            row.data(3) = label->custom;
        if (value.property == Profile)
            parts.fillProfile(row, value.uid);
        else if (kind == ContactDataKind::PostalAddress)
            parts.fillAddress(row, value.uid);
        else if (kind == ContactDataKind::Im)
            parts.fillInstantMessage(row, value.uid);
        else if (kind != ContactDataKind::Event)
            row.data(1) = value.text;
        else if (!fillDate(row, value.date, report))
            return;
        value.person->rows[kind.value_or(ContactDataKind::Website)].append(std::move(row));
    };

    std::vector<Value> values;
    const auto rows = expected("ABMultiValue", {QStringLiteral("UID"), QStringLiteral("record_id"),
                                                QStringLiteral("property"), QStringLiteral("label"),
                                                QStringLiteral("value")});
    readRows(m_people, rows, report, [&](const Sqlite3Cursor &row) {
        return [&] {
            ContactRecord *person = m_byRowid.value(row.getInt64(2));
            if (!person) {
                ++ofNobody;
                return;
            }
            const int property = row.getInt(3);
            values.push_back({row.getInt64(0), row.getInt64(1), person, property,
                              row.isNull(4) ? std::nullopt : std::optional(row.getInt64(4)), row.getText(5),
                              property == Date ? storedDate(row, 5, Epoch::Apple) : std::nullopt});
        };
    });
    // Around damage the rows come in any order.
    std::stable_sort(values.begin(), values.end(),
                     [](const Value &a, const Value &b) { return a.rowid < b.rowid; });
    for (const Value &value : values)
        take(value);
    tellLeftOut(report, IssueKind::Hidden, "IDS_ISSUE_VALUES_WITHOUT_LABEL", withoutLabel);
    tellLeftOut(report, IssueKind::Hidden, "IDS_ISSUE_VALUES_OF_UNKNOWN_KIND", ofUnknownKind);
    tellLeftOut(report, IssueKind::Damaged, "IDS_ISSUE_VALUES_OF_NOBODY", ofNobody);
    parts.reportLeftOut(peopleFile.display(), report);
}

void IOSContactsDb::readGroups(Scope scope, Report &report)
{
    constexpr int personType = 0;
    QHash<qint64, QString> names;
    readRows(m_people,
             {.table = QStringLiteral("ABGroup"),
              .columns = {QStringLiteral("Name")},
              .need = TableRows::Need::Optional},
             report, [&](const Sqlite3Cursor &row) {
                 return [&] { names.insert(row.getInt64(0), row.getText(1)); };
             });
    qint64 memberships = 0;
    qint64 ofOthers = 0;
    readRows(
        m_people,
        {.table = QStringLiteral("ABGroupMembers"),
         .columns = {QStringLiteral("group_id"), QStringLiteral("member_type"), QStringLiteral("member_id")},
         .need = TableRows::Need::Optional},
        report, [&](const Sqlite3Cursor &row) {
            return [&] {
                ContactRecord *person = m_byRowid.value(row.getInt64(3));
                if (!person || row.getInt(2) != personType) {
                    ++ofOthers;
                    return;
                }
                ++memberships;
                if (scope == Scope::Usual)
                    return;
                ContactDataRow group;
                group.data(1) = QString::number(row.getInt64(1));
                group.data(2) = names.value(row.getInt64(1));
                person->rows[ContactDataKind::GroupMembership].append(std::move(group));
            };
        });
    if (scope == Scope::Usual)
        tellLeftOut(report, IssueKind::Hidden, "IDS_ISSUE_GROUP_MEMBERSHIPS", memberships);
    tellLeftOut(report, IssueKind::LeftOut, "IDS_ISSUE_GROUPS_IN_GROUPS", ofOthers);
}

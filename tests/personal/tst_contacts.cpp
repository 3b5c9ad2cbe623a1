#include "address_book.h"

#include "base/error.h"
#include "base/report.h"
#include "personal/contact_words.h"
#include "personal/ios_contacts_db.h"
#include "personal/local_contacts_db.h"
#include "resources/resources.h"

#include <QTest>

using Kind = ContactDataKind;

namespace {
Report heard; // what the readers tell, in tests that do not ask for it
} // namespace

class TestContacts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void readsEveryKind();
    void leavesOutWhatHasNoLabel();
    void everythingBringsInWhatIsLeftOut();
    void readsAroundADamagedPage();
    void birthdayBeforeTheEpochIsNone();
    void displayName_data();
    void displayName();
    void address_data();
    void address();
    void hostileValues();
    void damagedAddressBooks_data();
    void damagedAddressBooks();
    void missingLabelsCostNoNumbers();
    void damagedPictures();
    void sameNameIsMerged();
    void mergeRules_data();
    void mergeRules();
    void namelessContactsStayApart();
    void wildcardsInAName();
    void groupsAreMadeOnce();
    void numbersWithoutEnd();
    void removeLeavesNothing();
    void rollbackLeavesTheStore();

private:
    static ContactDataRow row(std::initializer_list<std::pair<int, const char *>> columns);
    static ContactRecord person(const char *name, Kind kind, const ContactDataRow &row);
    static LocalContactsDb::Saved save(LocalContactsDb &db, const ContactRecord &record);
};

ContactDataRow TestContacts::row(std::initializer_list<std::pair<int, const char *>> columns)
{
    ContactDataRow row;
    for (const auto &[column, text] : columns)
        row.data(column) = QString::fromUtf8(text);
    return row;
}

ContactRecord TestContacts::person(const char *name, Kind kind, const ContactDataRow &row)
{
    ContactRecord record;
    ContactDataRow nameRow;
    nameRow.data(1) = nameRow.data(2) = QString::fromUtf8(name);
    record.rows[Kind::Name] = {nameRow};
    record.rows[kind].append(row);
    return record;
}

LocalContactsDb::Saved TestContacts::save(LocalContactsDb &db, const ContactRecord &record)
{
    db.begin();
    const auto saved = db.save(record, IOSContactCombineRule());
    db.commit();
    return saved;
}

void TestContacts::readsEveryKind()
{
    ScratchSource source;
    source.putDatabase(
        AddressBook::file,
        AddressBook::schema() +
            QStringLiteral("insert into ABPerson values(7,'Ada','King','Byron','Engine Ltd','Looms','likes "
                           "'||char(10)||'numbers',"
                           "'378691200','Analyst','Countess','Lady','PhD');"
                           "insert into ABMultiValueLabel "
                           "values('_$!<Mobile>!$_'),('_$!<Other>!$_'),('Boat'),('_$!<Home>!$_'),"
                           "('_$!<Anniversary>!$_'),('_$!<HomePage>!$_'),('_$!<Sister>!$_');"
                           "insert into ABMultiValueEntryKey "
                           "values('Street'),('ZIP'),('City'),('Country'),('State'),('service'),('username');"
                           "insert into ABMultiValue values(1,7,3,0,1,'+44 7700 "
                           "900123'),(2,7,3,1,2,'1'),(3,7,3,2,3,'2'),(4,7,4,0,4,'a@b.c'),"
                           "(5,7,5,0,4,null),(6,7,12,0,5,'-978307200'),(7,7,13,0,4,null),(8,7,22,0,6,'http://"
                           "x'),(9,7,23,0,7,'Allegra'),"
                           "(10,7,46,0,4,'profile');"
                           "insert into ABMultiValueEntry values(5,1,'1 "
                           "Main'),(5,2,'N1'),(5,3,'London'),(5,4,'UK'),(7,6,'GoogleTalk'),(7,7,'ada');"));
    source.putDatabase(AddressBook::images,
                       QStringLiteral("create table ABFullSizeImage(record_id INTEGER, data BLOB); insert "
                                      "into ABFullSizeImage values(7,x'ffd8'),(8,x'00');"));

    IOSContactsDb db(source);
    const QList<ContactRecord> all = db.readAll(Scope::Usual, heard);
    QCOMPARE(all.size(), 1);
    const ContactRecord &ada = all.first();
    QCOMPARE(ada.src_id, QStringLiteral("7"));
    QCOMPARE(displayNameOf(ada), QStringLiteral("Lady Ada Byron King PhD"));
    QCOMPARE(ada.rows.value(Kind::Phone),
             (QList{row({{1, "+44 7700 900123"}, {2, "2"}}), row({{1, "1"}, {2, "0"}}),
                    row({{1, "2"}, {2, "0"}, {3, "Boat"}})}));
    QCOMPARE(ada.rows.value(Kind::Email), (QList{row({{1, "a@b.c"}, {2, "1"}})}));
    QCOMPARE(ada.rows.value(Kind::PostalAddress), (QList{row({{1, "1 Main\nLondon, N1\nUK"},
                                                              {2, "1"},
                                                              {4, "1 Main"},
                                                              {7, "London"},
                                                              {9, "N1"},
                                                              {10, "UK"}})}));
    QCOMPARE(ada.rows.value(Kind::Event), (QList{row({{1, "2013-01-01T00:00:00"}, {2, "3"}}),
                                                 row({{1, "1970-01-01T00:00:00"}, {2, "1"}})}));
    QCOMPARE(ada.rows.value(Kind::Im), (QList{row({{1, "ada"}, {2, "1"}, {5, "6"}})}));
    QCOMPARE(ada.rows.value(Kind::Website), (QList{row({{1, "http://x"}, {2, "1"}})}));
    QCOMPARE(ada.rows.value(Kind::Relation), (QList{row({{1, "Allegra"}, {2, "13"}})}));
    QCOMPARE(ada.rows.value(Kind::Organization),
             (QList{row({{1, "Engine Ltd"}, {4, "Analyst"}, {5, "Looms"}})}));
    QCOMPARE(ada.rows.value(Kind::Note), (QList{row({{1, "likes \nnumbers"}})}));
    QCOMPARE(ada.rows.value(Kind::Nickname), (QList{row({{1, "Countess"}})}));
    QCOMPARE(ada.rows.value(Kind::Photo).first().data15, QByteArray("\xff\xd8"));
}

void TestContacts::leavesOutWhatHasNoLabel()
{
    ScratchSource source;
    source.putDatabase(
        AddressBook::file,
        AddressBook::schema() +
            QStringLiteral(
                "insert into ABPerson(ROWID,First) values(1,'A'); insert into ABMultiValueLabel values('x');"
                "insert into ABMultiValue "
                "values(1,1,3,0,null,'1'),(2,1,3,0,99,'2'),(3,1,3,0,1,'3'),(4,55,3,0,1,'4');"));
    Report report;
    const auto phones = IOSContactsDb(source).readAll(Scope::Usual, report).first().rows.value(Kind::Phone);
    QCOMPARE(phones, (QList{row({{1, "3"}, {2, "0"}, {3, "x"}})}));
    QCOMPARE(report.count("IDS_ISSUE_VALUES_WITHOUT_LABEL"), 2);
    QCOMPARE(report.count("IDS_ISSUE_VALUES_OF_NOBODY"), 1);
    QCOMPARE(report.count(IssueKind::Damaged), 1);
}

// What the rules leave out is counted, and comes in when everything is asked for.
void TestContacts::everythingBringsInWhatIsLeftOut()
{
    ScratchSource source;
    source.putDatabase(
        AddressBook::file,
        AddressBook::schema() +
            QStringLiteral(
                "insert into ABPerson(ROWID,First,Birthday) values(1,'A','-86400'),(2,'B','0'),(3,'C','');"
                "insert into ABMultiValueLabel values('_$!<Home>!$_');"
                "insert into ABMultiValueEntryKey values('service'),('username'),('CountryCode'),('badge');"
                "insert into ABMultiValue values(1,1,3,0,null,'1'),(2,1,46,0,1,null),(3,1,99,0,1,'odd'),"
                "(4,1,5,0,1,null);"
                "insert into ABMultiValueEntry values(2,1,'Chat'),(2,2,'ada'),(4,3,'gb'),(4,4,'b');"
                "insert into ABMultiValue values(5,2,13,0,1,null); "
                "insert into ABMultiValueEntry values(5,1,'Chat'),(5,2,'bo');"
                "alter table ABPerson add column LastPhonetic TEXT;"
                "update ABPerson set LastPhonetic='bee' where ROWID=2;"
                "create table ABGroup(ROWID INTEGER PRIMARY KEY, Name TEXT);"
                "insert into ABGroup values(7,'Friends');"
                "create table ABGroupMembers(UID INTEGER PRIMARY KEY, group_id, member_type, member_id);"
                "insert into ABGroupMembers values(1,7,0,1),(2,7,1,1),(3,7,0,55);"));
    source.putDatabase(AddressBook::images,
                       QStringLiteral("create table ABFullSizeImage(record_id INTEGER, data BLOB);"
                                      "create table ABThumbnailImage(record_id INTEGER, data BLOB);"
                                      "insert into ABFullSizeImage values(2,x'02'),(2,x'22'),(9,x'09');"
                                      "insert into ABThumbnailImage values(1,x'01'),(1,x'11'),(2,x'33');"));
    IOSContactsDb db(source);
    Report usual;
    const ContactRecord bare = db.readAll(Scope::Usual, usual).first();
    QCOMPARE(bare.rows.keys(), (QList{Kind::Name, Kind::PostalAddress}));
    const QList<std::pair<const char *, int>> hidden{
        {"IDS_ISSUE_EARLY_BIRTHDAYS", 2},        {"IDS_ISSUE_VALUES_WITHOUT_LABEL", 1},
        {"IDS_ISSUE_VALUES_OF_UNKNOWN_KIND", 2}, {"IDS_ISSUE_COUNTRY_CODES", 1},
        {"IDS_ISSUE_GROUP_MEMBERSHIPS", 1},      {"IDS_ISSUE_SMALL_PICTURES", 1}};
    for (const auto &[what, count] : hidden)
        QVERIFY2(usual.count(what) == count, what);
    QCOMPARE(usual.count(IssueKind::Hidden), 8);
    const QList<std::pair<const char *, int>> leftOut{
        {"IDS_ISSUE_FURTHER_PICTURES", 1}, {"IDS_ISSUE_PICTURES_OF_NOBODY", 1},
        {"IDS_ISSUE_PARTS_OF_VALUES", 1},  {"IDS_ISSUE_IM_SERVICES", 1},
        {"IDS_ISSUE_PHONETIC_NAMES", 1},   {"IDS_ISSUE_GROUPS_IN_GROUPS", 2}};
    for (const auto &[what, count] : leftOut)
        QVERIFY2(usual.count(what) == count, what);
    QCOMPARE(usual.count(IssueKind::LeftOut), 7);

    Report everything;
    const ContactRecord whole = db.readAll(Scope::Everything, everything).first();
    QCOMPARE(everything.count(IssueKind::Hidden), 0);
    QCOMPARE(everything.count(IssueKind::LeftOut), 7);
    QCOMPARE(whole.rows.value(Kind::Phone), (QList{row({{1, "1"}, {2, "0"}})}));
    QCOMPARE(whole.rows.value(Kind::Event), (QList{row({{1, "2000-12-31T00:00:00"}, {2, "3"}})}));
    QCOMPARE(whole.rows.value(Kind::Website),
             (QList{row({{1, "ada"}, {2, "4"}, {3, "Chat"}}), row({{1, "odd"}, {2, "4"}})}));
    QCOMPARE(whole.rows.value(Kind::PostalAddress).first().data(11), QStringLiteral("gb"));
    QCOMPARE(whole.rows.value(Kind::GroupMembership), (QList{row({{1, "7"}, {2, "Friends"}})}));
    QCOMPARE(whole.rows.value(Kind::Photo).first().data15, QByteArray("\x11"));
}

void TestContacts::readsAroundADamagedPage()
{
    ScratchSource source;
    source.putDatabase(
        AddressBook::file,
        AddressBook::schema() +
            QStringLiteral(
                "insert into ABMultiValueLabel values('x');"
                "with recursive n(i) as (values(1) union all select i+1 from n where i<600)"
                "insert into ABPerson(ROWID,First,Note) select i, 'P'||i, hex(randomblob(40)) from n;"
                "insert into ABMultiValue select ROWID, ROWID, 3, 0, 1, '0171'||ROWID from ABPerson;"));
    Sqlite3DB db;
    db.openThrow(source.pathOf(AddressBook::file));
    Sqlite3Cursor last = db.queryThrow(QStringLiteral("select pageno from dbstat where name='ABPerson' and "
                                                      "pagetype='leaf' order by pageno limit 1 offset 3"));
    const qint64 page = last.moveNext() ? last.getInt64(0) : 0;
    QVERIFY(page > 0);
    last.reset();
    db.close();
    QFile file(source.pathOf(AddressBook::file));
    QVERIFY(file.open(QIODevice::ReadWrite) && file.seek((page - 1) * 4096));
    QCOMPARE(file.write(QByteArray(4096, '\xEE')), 4096);
    file.close();
    Report report;
    const QList<ContactRecord> people = IOSContactsDb(source).readAll(Scope::Usual, report);
    QVERIFY(people.size() > 500 && people.size() < 600);
    QVERIFY(report.isFailure());
    qint64 before = 0;
    for (const ContactRecord &person : people) {
        QVERIFY(person.src_id.toLongLong() > before);
        before = person.src_id.toLongLong();
        QCOMPARE(person.rows.value(Kind::Phone).size(), 1);
    }
}

void TestContacts::birthdayBeforeTheEpochIsNone()
{
    ScratchSource source;
    source.putDatabase(
        AddressBook::file,
        AddressBook::schema() +
            QStringLiteral("insert into ABPerson(ROWID,First,Birthday) "
                           "values(1,'A','-1'),(2,'B','0'),(3,'C','1.9'),(4,'D','9000000000000000000');"));
    Report report;
    const auto all = IOSContactsDb(source).readAll(Scope::Usual, report);
    QVERIFY(!all.at(0).rows.contains(Kind::Event));
    QVERIFY(!all.at(1).rows.contains(Kind::Event));
    QCOMPARE(all.at(2).rows.value(Kind::Event).first().data(1), QStringLiteral("2001-01-01T00:00:01"));
    QVERIFY(!all.at(3).rows.contains(Kind::Event));
    QCOMPARE(problemsOf(report).size(), 1);
}

void TestContacts::displayName_data()
{
    QTest::addColumn<ContactDataRow>("name");
    QTest::addColumn<QString>("expected");
    QTest::newRow("prefix and last") << row({{5, "Dr"}, {3, "No"}}) << "Dr No";
    QTest::newRow("first alone") << row({{2, "Cher"}}) << "Cher";
    QTest::newRow("nothing") << ContactDataRow() << "";
    QTest::newRow("all") << row({{5, "a"}, {2, "b"}, {4, "c"}, {3, "d"}, {6, "e"}}) << "a b c d e";
}

void TestContacts::displayName()
{
    QFETCH(ContactDataRow, name);
    QTEST(composeDisplayName(name), "expected");
}

void TestContacts::address_data()
{
    QTest::addColumn<ContactDataRow>("row");
    QTest::addColumn<QString>("expected");
    QTest::newRow("whole") << row({{4, "1 A St"}, {7, "B"}, {8, "C"}, {9, "9"}, {10, "D"}})
                           << "1 A St\nB, C 9\nD";
    QTest::newRow("ZIP without city and state") << row({{4, "1 A St"}, {9, "9"}, {10, "D"}}) << "1 A St\nD";
    QTest::newRow("city alone") << row({{7, "B"}}) << "B";
    QTest::newRow("state and ZIP") << row({{4, "S"}, {8, "C"}, {9, "9"}}) << "S\n C 9";
}

void TestContacts::address()
{
    QFETCH(ContactDataRow, row);
    QTEST(composeAddress(row), "expected");
}

void TestContacts::hostileValues()
{
    ScratchSource source;
    source.putDatabase(
        AddressBook::file,
        AddressBook::schema() +
            QStringLiteral(
                "create temp table h as select 'A'||char(0)||'b'||char(13,10)||'%_'';<&>' as t;"
                "insert into ABPerson select 1,t,t,t,t,t,t,null,t,t,t,t from h;"
                "insert into ABPerson(ROWID, First) values(2, 'A'),(3, replace(hex(zeroblob(5000)), "
                "'00', 'xy'));"
                "insert into ABMultiValueLabel select t from h; insert into ABMultiValueEntryKey "
                "select t from h union all select 'Street';"
                "insert into ABMultiValue select null,1,p.column1,0,1,t from h, (values(3),(4),(5),(12),"
                "(13),(22),(23)) as p;"
                "insert into ABMultiValueEntry select UID, k.ROWID, h.t from ABMultiValue, h, "
                "ABMultiValueEntryKey as k;"));
    source.putDatabase(AddressBook::images,
                       QStringLiteral("create table ABFullSizeImage(record_id INTEGER, data BLOB); insert "
                                      "into ABFullSizeImage values(2,zeroblob(30000000)),(1,null);"));
    IOSContactsDb reader(source);
    const QList<ContactRecord> all = reader.readAll(Scope::Usual, heard);
    QCOMPARE(all.size(), 3);
    const QString hostile = QString::fromLatin1("A\0b\r\n%_';<&>", 12);
    QCOMPARE(all.at(0).rows.value(Kind::Phone), (QList{[&] {
                 ContactDataRow phone = row({{2, "0"}});
                 phone.data(1) = phone.data(3) = hostile;
                 return phone;
             }()}));
    QCOMPARE(all.at(1).rows.value(Kind::Photo).first().data15.size(), 30000000);
    QCOMPARE(displayNameOf(all.at(2)).size(), 10000);

    QTemporaryDir folder;
    LocalContactsDb store(folder.path());
    store.open();
    for (const bool again : {false, true})
        for (const ContactRecord &contact : all)
            QCOMPARE(save(store, contact).merged, again); // "A" and "A\0..." are two people
    const QList<ContactRecord> kept = store.readAll(heard);
    QCOMPARE(kept.size(), 3);
    for (int i = 0; i < 3; ++i)
        for (auto kind = all.at(i).rows.constBegin(); kind != all.at(i).rows.constEnd(); ++kind) {
            QList<ContactDataRow> rows = kept.at(i).rows.value(kind.key());
            for (ContactDataRow &row : rows)
                row.id = 0;
            if (kind.key() != Kind::Photo || i == 1) // a picture of nothing is not kept
                QCOMPARE(rows, kind.value());
        }
}

void TestContacts::damagedAddressBooks_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<int>("contacts"); // -1: an Error
    QTest::newRow("no tables of values")
        << "create table ABPerson(First TEXT); insert into ABPerson values('A')" << 1;
    QTest::newRow("no table of people") << "create table x(y)" << -1;
    QTest::newRow("no labels") << "create table ABPerson(First TEXT); insert into ABPerson values('A');"
                                  "create table ABMultiValue(UID, record_id, property, label, value);"
                                  "insert into ABMultiValue values(1,1,3,1,'5')"
                               << 1;
}

// A label that is lost costs no number.
void TestContacts::missingLabelsCostNoNumbers()
{
    ScratchSource source;
    source.putDatabase(
        AddressBook::file,
        AddressBook::schema() +
            QStringLiteral("drop table ABMultiValueLabel; insert into ABPerson(First) values('A');"
                           "insert into ABMultiValue values(1,1,3,0,1,'5'),(2,1,3,0,null,'6')"));
    Report report;
    const auto people = IOSContactsDb(source).readAll(Scope::Usual, report);
    QCOMPARE(people.first().rows.value(Kind::Phone), (QList{row({{1, "5"}, {2, "0"}})}));
    QCOMPARE(report.count(IssueKind::Damaged), 1);
    QCOMPARE(report.count("IDS_ISSUE_VALUES_WITHOUT_LABEL"), 1);
}

void TestContacts::damagedAddressBooks()
{
    QFETCH(QString, script);
    QFETCH(int, contacts);
    ScratchSource source;
    try {
        IOSContactsDb(source).readAll(Scope::Usual, heard);
        QFAIL("read without an address book");
    } catch (const Error &error) {
        QCOMPARE(error.sentence(), QStringLiteral("Cannot find AddressBook.sqlitedb"));
    }
    source.putDatabase(AddressBook::file, script);
    source.put(AddressBook::images, "this is no database");
    IOSContactsDb db(source);
    if (contacts < 0)
        QVERIFY_EXCEPTION_THROWN(db.readAll(Scope::Usual, heard), Error);
    else
        QCOMPARE(db.readAll(Scope::Usual, heard).size(), contacts);
}

void TestContacts::damagedPictures()
{
    ScratchSource source;
    source.putDatabase(AddressBook::file,
                       QStringLiteral("create table ABPerson(First TEXT); insert into ABPerson values('A')"));
    source.putDatabase(AddressBook::images,
                       QStringLiteral("create table ABFullSizeImage(record_id INTEGER)"));
    Report withoutColumn;
    QCOMPARE(IOSContactsDb(source).readAll(Scope::Usual, withoutColumn).size(), 1);
    QVERIFY(withoutColumn.isFailure());

    source.putDatabase(AddressBook::images,
                       QStringLiteral("create table ABFullSizeImage(record_id INTEGER, data BLOB);"
                                      "insert into ABFullSizeImage values(1, zeroblob(9000))"));
    QFile images(source.pathOf(AddressBook::images));
    QVERIFY(images.open(QIODevice::ReadWrite) && images.seek(4096));
    QCOMPARE(images.write(QByteArray(4096, '\xEE')), 4096);
    images.close();
    Report overwritten;
    QCOMPARE(IOSContactsDb(source).readAll(Scope::Usual, overwritten).size(), 1);
    QVERIFY(overwritten.isFailure());
}

void TestContacts::sameNameIsMerged()
{
    QTemporaryDir folder;
    LocalContactsDb db(folder.path());
    db.open();
    const ContactRecord ada = person("Ada King", Kind::Phone, row({{1, "1"}, {2, "2"}}));
    QVERIFY(!save(db, ada).merged);
    QVERIFY(save(db, ada).merged);
    QCOMPARE(db.readAll(heard).first().rows.value(Kind::Phone).size(), 1);
    QVERIFY(save(db, person("aDA KING", Kind::Phone, row({{1, "9"}}))).merged);
    QCOMPARE(db.count(), 1);
    QCOMPARE(db.readAll(heard).first().rows.value(Kind::Phone).size(), 2);
    QVERIFY(!save(db, person("\xc3\x84"
                             "da",
                             Kind::Note, row({{1, "n"}})))
                 .merged);
    QVERIFY(!save(db, person("\xc3\xa4"
                             "da",
                             Kind::Note, row({{1, "n"}})))
                 .merged); // LIKE folds ASCII alone
    QCOMPARE(db.count(), 3);
}

void TestContacts::mergeRules_data()
{
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<ContactDataRow>("stored");
    QTest::addColumn<ContactDataRow>("incoming");
    QTest::addColumn<QList<ContactDataRow>>("expected");
    QTest::addColumn<qint64>("replaced");
    QTest::newRow("a changed note replaces the one note")
        << Kind::Note << row({{1, "old"}}) << row({{1, "new"}}) << QList{row({{1, "new"}})} << qint64(1);
    QTest::newRow("an empty label does not erase one")
        << Kind::Phone << row({{1, "5"}, {2, "0"}, {3, "Boat"}}) << row({{1, "5"}, {2, "2"}})
        << QList{row({{1, "5"}, {2, "2"}, {3, "Boat"}})} << qint64(1);
    QTest::newRow("anniversary and birthday on one day")
        << Kind::Event << row({{1, "d"}, {2, "1"}}) << row({{1, "d"}, {2, "3"}})
        << QList{row({{1, "d"}, {2, "1"}}), row({{1, "d"}, {2, "3"}})} << qint64(0);
    QTest::newRow("one name on two services")
        << Kind::Im << row({{1, "ada"}, {5, "4"}}) << row({{1, "ada"}, {5, "7"}})
        << QList{row({{1, "ada"}, {5, "4"}}), row({{1, "ada"}, {5, "7"}})} << qint64(0);
    QTest::newRow("a row of nothing is not written")
        << Kind::Email << row({{1, "a@b"}}) << ContactDataRow() << QList{row({{1, "a@b"}})} << qint64(0);
    QTest::newRow("an organisation keeps what the new one lacks")
        << Kind::Organization << row({{1, "Co"}, {5, "Looms"}}) << row({{1, "Co"}, {4, "Boss"}})
        << QList{row({{1, "Co"}, {4, "Boss"}, {5, "Looms"}})} << qint64(0);
    ContactDataRow face = row({{4, ""}});
    face.data15 = "face";
    ContactDataRow other = face;
    other.data15 = "other";
    QTest::newRow("a picture in the place of another")
        << Kind::Photo << face << other << QList{other} << qint64(1);
}

void TestContacts::mergeRules()
{
    QFETCH(Kind, kind);
    QFETCH(ContactDataRow, stored);
    QFETCH(ContactDataRow, incoming);
    QTemporaryDir folder;
    LocalContactsDb db(folder.path());
    db.open();
    save(db, person("A", kind, stored));
    QTEST(save(db, person("A", kind, incoming)).replaced, "replaced");
    QList<ContactDataRow> rows = db.readAll(heard).first().rows.value(kind);
    for (ContactDataRow &row : rows)
        row.id = 0;
    QTEST(rows, "expected");
}

void TestContacts::namelessContactsStayApart()
{
    QTemporaryDir folder;
    {
        LocalContactsDb db(folder.path());
        db.open();
        QVERIFY(!save(db, person("", Kind::Organization, row({{1, "Co"}}))).merged);
        QVERIFY(!save(db, person("", Kind::Phone, row({{1, "5"}}))).merged);
        QVERIFY(!save(db, person("", Kind::Note, row({{1, "nobody"}}))).merged);
    }
    LocalContactsDb db(folder.path());
    db.open();
    QVERIFY(save(db, person("", Kind::Organization, row({{1, "co"}}))).merged);
    QVERIFY(save(db, person("", Kind::Phone, row({{1, "5"}}))).merged);
    QVERIFY(!save(db, person("", Kind::Phone, row({{1, "6"}}))).merged);
    QVERIFY(!save(db, person("", Kind::Note, row({{1, "nobody"}}))).merged);
    QCOMPARE(db.count(), 5);
}

void TestContacts::wildcardsInAName()
{
    QTemporaryDir folder;
    LocalContactsDb db(folder.path());
    db.open();
    save(db, person("Anna", Kind::Note, row({{1, "n"}})));
    QVERIFY(save(db, person("A%", Kind::Note, row({{1, "n"}}))).merged);
    QVERIFY(!save(db, person("B_b", Kind::Note, row({{1, "n"}}))).merged);
    QVERIFY(!save(db, person("Bob", Kind::Note, row({{1, "n"}}))).merged);
    QVERIFY(save(db, person("b_B", Kind::Note, row({{1, "n"}}))).merged);
    const QByteArray tooLongForLike(60'000, '%');
    QVERIFY(!save(db, person(tooLongForLike.constData(), Kind::Note, row({{1, "n"}}))).merged);
    QVERIFY(save(db, person(tooLongForLike.constData(), Kind::Note, row({{1, "n"}}))).merged);
}

void TestContacts::groupsAreMadeOnce()
{
    QTemporaryDir folder;
    LocalContactsDb db(folder.path());
    db.open();
    for (const char *name : {"A", "B", "A"})
        save(db, person(name, Kind::GroupMembership, row({{2, "Friends"}})));
    const auto all = db.readAll(heard);
    QCOMPARE(all.size(), 2);
    for (const ContactRecord &contact : all) {
        QCOMPARE(contact.rows.value(Kind::GroupMembership).size(), 1);
        QCOMPARE(contact.rows.value(Kind::GroupMembership).first().data(1), QStringLiteral("1"));
    }
}

// What this takes grows with the numbers and not with their square, or the test does not end in time.
void TestContacts::numbersWithoutEnd()
{
    constexpr int numbers = 150'000;
    ContactRecord endless = person("A", Kind::Phone, row({{1, "0"}, {2, "2"}}));
    for (int i = 1; i < numbers; ++i) {
        ContactDataRow number = row({{2, "2"}});
        number.data(1) = QString::number(i % (numbers - 1));
        endless.rows[Kind::Phone].append(number);
    }
    QTemporaryDir folder;
    LocalContactsDb db(folder.path());
    db.open();
    save(db, endless);
    QVERIFY(save(db, endless).merged);
    QCOMPARE(db.readAll(heard).first().rows.value(Kind::Phone).size(), numbers - 1);
}

void TestContacts::removeLeavesNothing()
{
    QTemporaryDir folder;
    LocalContactsDb db(folder.path());
    db.open();
    const qint64 id = save(db, person("A", Kind::Phone, row({{1, "5"}}))).id;
    QVERIFY(db.remove(id));
    QVERIFY(!db.remove(id));
    QVERIFY(!db.read(id));
    QCOMPARE(db.readAll(heard).size(), 0);
    QVERIFY(!save(db, person("A", Kind::Phone, row({{1, "5"}}))).merged);
}

void TestContacts::rollbackLeavesTheStore()
{
    QTemporaryDir folder;
    {
        LocalContactsDb db(folder.path());
        db.open();
        db.begin();
        db.save(person("A", Kind::Phone, row({{1, "5"}})), IOSContactCombineRule());
        db.rollback();
    }
    LocalContactsDb db(folder.path());
    QVERIFY(db.openExisting());
    QCOMPARE(db.count(), 0);
    QTemporaryDir empty;
    QVERIFY(!LocalContactsDb(empty.path()).openExisting());
}

QTEST_APPLESS_MAIN(TestContacts)
#include "tst_contacts.moc"

#include "address_book.h"
#include "personal/contact_functions.h"
#include "personal/country_lib_db.h"
#include "personal/home_country.h"
#include "personal/ios_contacts_mem_db.h"
#include "resources/resources.h"

#include <QLocale>
#include <QTest>

namespace {
QString withoutCountry(const QString &number, const QString &)
{
    return CountryLibDb::normalise(number, {});
}

QString nameOf(const IOSContactsMemDb &names, const char *number)
{
    const std::optional<ContactName> contact = names.find(QString::fromLatin1(number));
    return contact ? contact->name : QStringLiteral("-");
}

/// Two people whose numbers end alike, one with pictures, one with nothing but an address.
void putPeople(const ScratchSource &source)
{
    source.putDatabase(
        AddressBook::file,
        AddressBook::schema() +
            QStringLiteral("insert into ABPerson(ROWID, First, Middle, Last) values"
                           "(7, 'Grace', '', 'Hopper'), (3, 'Ada', 'Augusta', 'King'), (9, NULL, NULL, NULL);"
                           "insert into ABMultiValue(record_id, property, value) values"
                           "(7, 3, '(0171) 123-4567'), (3, 3, '+49 171 1234567'), (3, 3, '+49 171 1234567'),"
                           "(7, 3, '22000'), (9, 3, '+1 (415) 555-0132'), (3, 4, 'ada@example.org'),"
                           "(7, 3, NULL), (404, 3, '+1 212 555 0100'), (3, 3, '+44 7700 900123'),"
                           "(9, 13, '7700900123'), (7, 3, '07700 900123'), (3, 3, '0800-FLOWERS');"));
}
} // namespace

class TestContactNames : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void personNames_data();
    void personNames();
    void suffixes_data();
    void suffixes();
    void missingValuesInStatements();
    void lookUps_data();
    void lookUps();
    void oneNumberHasOneName_data() { lookUps_data(); }
    void oneNumberHasOneName();
    void homeCountry_data();
    void homeCountry();
    void pictures();
    void brokenPicturesLeaveTheNames();
    void numbersAreNormalisedForTheDefaultCountry();
    void tokenizerThatIsUnknown();
    void failures_data();
    void failures();
};

void TestContactNames::initTestCase()
{
    initResources();
}

void TestContactNames::personNames_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("middle");
    QTest::addColumn<QString>("last");
    QTest::addColumn<QString>("expected");
    QTest::newRow("all") << "Ada"
                         << "Augusta"
                         << "King"
                         << "Ada Augusta King";
    QTest::newRow("no middle name") << "Ada"
                                    << ""
                                    << "King"
                                    << "Ada King";
    QTest::newRow("last name alone") << ""
                                     << ""
                                     << "King"
                                     << "King";
    QTest::newRow("first name alone") << "Ada"
                                      << ""
                                      << ""
                                      << "Ada";
    QTest::newRow("no name") << ""
                             << ""
                             << ""
                             << "";
    QTest::newRow("beyond ASCII") << "Zoë"
                                  << "😀"
                                  << "家"
                                  << "Zoë 😀 家";
}

void TestContactNames::personNames()
{
    QFETCH(QString, first);
    QFETCH(QString, middle);
    QFETCH(QString, last);
    Sqlite3DB db;
    db.openThrow(QStringLiteral(":memory:"), SqliteOpen::ReadWriteCreate);
    registerContactFunctions(db);
    Sqlite3Cursor cursor = db.queryThrow(Sqlite3Sql(QStringLiteral("select person_name(?, ?, ?)"))
                                             .addTextParam(first)
                                             .addTextParam(middle)
                                             .addTextParam(last));
    QVERIFY(cursor.moveNext());
    QTEST(cursor.getText(0), "expected");
}

void TestContactNames::suffixes_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("expected");
    QTest::newRow("three digits") << "112"
                                  << "112";
    QTest::newRow("nine digits") << "123456789"
                                 << "123456789";
    QTest::newRow("ten digits") << "0123456789"
                                << "123456789";
    QTest::newRow("country code and punctuation") << "+1 (415) 555-0132"
                                                  << "155550132";
    QTest::newRow("the same without") << "4155550132"
                                      << "155550132";
    QTest::newRow("letters") << "0800-FLOWERS 1"
                             << "0800-FLOWERS 1";
    QTest::newRow("punctuation alone") << "+-()"
                                       << "";
    QTest::newRow("digits of another script are none") << "٣٣12"
                                                       << "12";
}

void TestContactNames::suffixes()
{
    QFETCH(QString, value);
    Sqlite3DB db;
    db.openThrow(QStringLiteral(":memory:"), SqliteOpen::ReadWriteCreate);
    registerContactFunctions(db);
    Sqlite3Cursor cursor =
        db.queryThrow(Sqlite3Sql(QStringLiteral("select number_suffix(?)")).addTextParam(value));
    QVERIFY(cursor.moveNext());
    QTEST(cursor.getText(0), "expected");
}

void TestContactNames::missingValuesInStatements()
{
    Sqlite3DB db;
    db.openThrow(QStringLiteral(":memory:"), SqliteOpen::ReadWriteCreate);
    registerContactFunctions(db);
    Sqlite3Cursor cursor = db.queryThrow(QStringLiteral(
        "select person_name(NULL, NULL, 'King'), number_suffix(NULL), number_suffix(14155550132)"));
    QVERIFY(cursor.moveNext());
    QCOMPARE(cursor.getText(0), QStringLiteral("King"));
    QCOMPARE(cursor.getText(1), QString());
    QCOMPARE(cursor.getText(2), QStringLiteral("155550132"));
}

void TestContactNames::lookUps_data()
{
    QTest::addColumn<QByteArray>("number");
    QTest::addColumn<QString>("expected");
    QTest::newRow("exactly as kept") << QByteArray("+491711234567") << "Ada Augusta King";
    QTest::newRow("exact match before a like ending") << QByteArray("01711234567") << "Grace Hopper";
    QTest::newRow("like ending, of several the one stored last")
        << QByteArray("00491711234567") << "Ada Augusta King";
    QTest::newRow("like ending, no other kind of value") << QByteArray("00447700900123") << "Grace Hopper";
    QTest::newRow("letters") << QByteArray("0800-flowers") << "Ada Augusta King";
    QTest::newRow("short number") << QByteArray("22000") << "Grace Hopper";
    QTest::newRow("short numbers are not alike") << QByteArray("+4922000") << "-";
    QTest::newRow("person without a name") << QByteArray("+14155550132") << "";
    QTest::newRow("number of nobody") << QByteArray("+12125550100") << "-";
    QTest::newRow("e-mail address") << QByteArray("ada@example.org") << "-";
    QTest::newRow("stranger") << QByteArray("+15005550000") << "-";
    QTest::newRow("empty") << QByteArray() << "-";
}

void TestContactNames::lookUps()
{
    QFETCH(QByteArray, number);
    ScratchSource source;
    putPeople(source);
    Report report;
    const IOSContactsMemDb names(source, withoutCountry, report);
    QTEST(nameOf(names, number.constData()), "expected");
    QVERIFY(report.isEmpty());
}

// Calls and messages show the same person for the same number.
void TestContactNames::oneNumberHasOneName()
{
    QFETCH(QByteArray, number);
    QFETCH(QString, expected);
    ScratchSource source;
    putPeople(source);
    Report report;
    const NumberNames names(source, withoutCountry, report);
    const QString text = QString::fromLatin1(number);
    if (text.contains(QLatin1Char('@')))
        expected = QStringLiteral("Ada Augusta King"); // an address is a name of calls alone
    QCOMPARE(names.nameOfNumber(text), expected == QLatin1String("-") ? QString() : expected);
}

void TestContactNames::homeCountry_data()
{
    QTest::addColumn<QByteArray>("sim");
    QTest::addColumn<QString>("messages");
    QTest::addColumn<QString>("expected");
    const QByteArray german =
        "<plist version=\"1.0\"><dict><key>PersonalWallet</key><dict><key>8949</key><dict>"
        "<key>CarrierEntitlements</key><dict><key>lastGoodImsi</key><string>262011234567890</string></dict></"
        "dict>"
        "</dict></dict></plist>";
    const QString handles = QStringLiteral(
        "create table handle(country); insert into handle values('fr'), ('GB'), (''), (null), ('gb')");
    QTest::newRow("SIM card before messages") << german << handles << "DE";
    QTest::newRow("most handles") << QByteArray() << handles << "GB";
    QTest::newRow("most members of older conversations")
        << QByteArray() << "create table group_member(country); insert into group_member values('it')"
        << "IT";
    QTest::newRow("damaged SIM file") << QByteArray("bplist00") << handles << "GB";
    QTest::newRow("nothing in the backup: this computer") << QByteArray() << ""
                                                          << "CH";
    QTest::newRow("no country that there is")
        << QByteArray() << "create table handle(country); insert into handle values('zz')"
        << "CH";
}

void TestContactNames::homeCountry()
{
    QFETCH(QByteArray, sim);
    QFETCH(QString, messages);
    ScratchSource source;
    if (!sim.isEmpty())
        source.put({QStringLiteral("WirelessDomain"),
                    QStringLiteral("Library/Preferences/com.apple.commcenter.plist")},
                   sim);
    if (!messages.isEmpty())
        source.putDatabase({QStringLiteral("HomeDomain"), QStringLiteral("Library/SMS/sms.db")}, messages);
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Switzerland));
    const SourceNumbers numbers = numbersOf(&source);
    QLocale::setDefault(before);
    QTEST(numbers.defaultCountry, "expected");
    if (numbers.defaultCountry == QLatin1String("DE"))
        QCOMPARE(numbers.normalise(QStringLiteral("0171 1234567"), {}), QStringLiteral("+491711234567"));
}

void TestContactNames::pictures()
{
    ScratchSource source;
    putPeople(source);
    source.putDatabase(AddressBook::images,
                       QStringLiteral("create table ABThumbnailImage(record_id, format, data);"
                                      "insert into ABThumbnailImage values(3, 0, x'01'), (3, 5, x'0203')"));
    Report report;
    const IOSContactsMemDb names(source, withoutCountry, report);
    QCOMPARE(names.find(QStringLiteral("+491711234567"))->photo, QByteArray("\x02\x03"));
    QCOMPARE(names.find(QStringLiteral("22000"))->photo, QByteArray());
}

void TestContactNames::brokenPicturesLeaveTheNames()
{
    ScratchSource source;
    putPeople(source);
    source.put(AddressBook::images, QByteArray(4096, 'x'));
    Report report;
    const IOSContactsMemDb names(source, withoutCountry, report);
    QCOMPARE(nameOf(names, "22000"), QStringLiteral("Grace Hopper"));
    QCOMPARE(report.count(IssueKind::Damaged), 1);
    QCOMPARE(report.issues().first().where, AddressBook::images.display());

    source.putDatabase(AddressBook::images,
                       QStringLiteral("create table ABThumbnailImage(record_id, format, data);"
                                      "insert into ABThumbnailImage values(7, 0, zeroblob(9000))"));
    QFile images(source.pathOf(AddressBook::images));
    QVERIFY(images.open(QIODevice::ReadWrite) && images.resize(2 * 4096));
    images.close();
    Report ofOne;
    const IOSContactsMemDb cut(source, withoutCountry, ofOne);
    QCOMPARE(nameOf(cut, "22000"), QStringLiteral("Grace Hopper"));
    QVERIFY(ofOne.isFailure());
}

void TestContactNames::numbersAreNormalisedForTheDefaultCountry()
{
    ScratchSource source;
    source.putDatabase(AddressBook::file,
                       AddressBook::schema() +
                           QStringLiteral("insert into ABPerson(ROWID, First) values(1, 'Ada');"
                                          "insert into ABMultiValue(record_id, property, value) "
                                          "values(1, 3, '020-7946')"));
    QStringList countries;
    Report report;
    const auto normalise = [&](const QString &number, const QString &iso) {
        countries.append(iso);
        return QStringLiteral("+44") + number.right(4);
    };
    const IOSContactsMemDb names(source, normalise, report);
    QCOMPARE(countries, QStringList(QString()));
    QCOMPARE(nameOf(names, "+447946"), QStringLiteral("Ada"));
}

void TestContactNames::tokenizerThatIsUnknown()
{
    ScratchSource source;
    putPeople(source);
    Sqlite3DB db;
    db.openThrow(source.pathOf(AddressBook::file), SqliteOpen::ReadWrite);
    QVERIFY(db.exec(QStringLiteral("create virtual table Search using fts4(name, tokenize=porter)")));
    db.close();
    QFile file(source.pathOf(AddressBook::file));
    QVERIFY(file.open(QIODevice::ReadWrite));
    const QByteArray bytes = file.readAll().replace("tokenize=porter", "tokenize=device");
    file.seek(0);
    QCOMPARE(file.write(bytes), bytes.size());
    file.close();
    db.openThrow(source.pathOf(AddressBook::file));
    QVERIFY_EXCEPTION_THROWN(db.queryThrow(QStringLiteral("select * from Search")), Error);
    db.close();
    Report report;
    const IOSContactsMemDb names(source, withoutCountry, report);
    QCOMPARE(nameOf(names, "22000"), QStringLiteral("Grace Hopper"));
}

void TestContactNames::failures_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isFailure");
    QTest::newRow("missing") << QByteArray() << false;
    QTest::newRow("no database") << QByteArray(4096, 'x') << true;
    QTest::newRow("without tables") << QByteArray("SQLite format 3\0", 16) << true;
}

void TestContactNames::failures()
{
    QFETCH(QByteArray, content);
    ScratchSource source;
    if (!content.isEmpty())
        source.put(AddressBook::file, content);
    Report report;
    const IOSContactsMemDb names(source, withoutCountry, report);
    QCOMPARE(nameOf(names, "+491711234567"), QStringLiteral("-"));
    QTEST(report.isFailure(), "isFailure");
    for (const Issue &issue : report.issues())
        QCOMPARE(issue.where, AddressBook::file.display());
}

QTEST_GUILESS_MAIN(TestContactNames)
#include "tst_contact_names.moc"

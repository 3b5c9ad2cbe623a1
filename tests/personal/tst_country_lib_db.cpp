#include "base/app_folders.h"
#include "personal/country_lib_db.h"
#include "resources/resources.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <map>

namespace {
QString copyPath()
{
    return appDataFolder().filePath(QStringLiteral("countries.db"));
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

QByteArray shipped()
{
    return contentOf(QStringLiteral(":/res/countries.db"));
}
} // namespace

class TestCountryLibDb : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void normalises_data();
    void normalises();
    void rulesOfOneCountry_data();
    void rulesOfOneCountry();
    void lookUps();
    void missGivesTheDefault();
    void goodCopyIsUsedAsItStands();
    void damagedCopyIsReplaced_data();
    void damagedCopyIsReplaced();
    void folderThatCannotBeWritten();
    void rowsFitTogether();
    void patternsCompile();

private:
    std::unique_ptr<QTemporaryDir> m_home;
};

void TestCountryLibDb::initTestCase()
{
    initResources();
}

void TestCountryLibDb::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    qputenv("HOME", m_home->path().toLocal8Bit());
    forgetAppDataFolder();
}

void TestCountryLibDb::normalises_data()
{
    QTest::addColumn<QString>("country");
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("expected");
    QTest::newRow("e-mail address") << "gb"
                                    << "Anna@Example.org"
                                    << "anna@example.org";
    QTest::newRow("sender's name") << "gb"
                                   << "0800BANK"
                                   << "0800bank";
    QTest::newRow("international already") << "gb"
                                           << "+1 (202) 555-0123"
                                           << "+12025550123";
    QTest::newRow("trunk zero") << "gb"
                                << "07700 900123"
                                << "+447700900123";
    QTest::newRow("no trunk zero") << "gb"
                                   << "7400123456"
                                   << "+447400123456";
    QTest::newRow("dialling code without plus") << "gb"
                                                << "44 7400 123456"
                                                << "+447400123456";
    QTest::newRow("short code") << "gb"
                                << "60-777"
                                << "60777";
    QTest::newRow("landline") << "gb"
                              << "020 7946 0123"
                              << "02079460123";
    QTest::newRow("digits of other scripts are dropped") << "gb" << QStringLiteral("٠١٢3") << "3";
    QTest::newRow("United States") << "us"
                                   << "(202) 555-0123"
                                   << "+12025550123";
    QTest::newRow("United States with 1") << "us"
                                          << "1-202-555-0123"
                                          << "+12025550123";
    QTest::newRow("Germany, 11 digits") << "de"
                                        << "01512 3456789"
                                        << "+4915123456789";
    QTest::newRow("Germany, 10 digits") << "de"
                                        << "0170 1234567"
                                        << "+491701234567";
    QTest::newRow("France") << "fr"
                            << "06 12 34 56 78"
                            << "+33612345678";
    QTest::newRow("Italy, mobile") << "it"
                                   << "312 345 6789"
                                   << "+393123456789";
    QTest::newRow("Italy, landline keeps its zero") << "it"
                                                    << "06 1234 5678"
                                                    << "0612345678";
    QTest::newRow("Italy, landline that looks like a mobile") << "it"
                                                              << "0321 234567"
                                                              << "0321234567";
    QTest::newRow("Ivory Coast, zero is part of the number") << "ci"
                                                             << "0123456789"
                                                             << "+2250123456789";
    QTest::newRow("India") << "in"
                           << "098765 43210"
                           << "+919876543210";
    QTest::newRow("Brazil") << "br"
                            << "(11) 96123-4567"
                            << "+5511961234567";
    QTest::newRow("China") << "cn"
                           << "131 2345 6789"
                           << "+8613123456789";
    QTest::newRow("Russia") << "ru"
                            << "912 345-67-89"
                            << "+79123456789";
    QTest::newRow("Russia with 7") << "ru"
                                   << "7 912 345 67 89"
                                   << "+79123456789";
    QTest::newRow("Australia") << "au"
                               << "0412 345 678"
                               << "+61412345678";
    QTest::newRow("unknown country: the default one's rules") << "zz"
                                                              << "0170 1234567"
                                                              << "+491701234567";
    QTest::newRow("no country: the default one's rules") << ""
                                                         << "0170 1234567"
                                                         << "+491701234567";
}

void TestCountryLibDb::normalises()
{
    CountryLibDb db;
    db.setDefaultMobileCountryCode(QStringLiteral("262"));
    db.open();
    QFETCH(QString, country);
    QFETCH(QString, number);
    QTEST(db.normaliseFor(number, country), "expected");
}

void TestCountryLibDb::rulesOfOneCountry_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("expected");
    QTest::newRow("valid length and pattern") << "^7\\d{4}$"
                                              << "71234"
                                              << "+9971234";
    QTest::newRow("pattern holds for the whole number") << "^7\\d{3}$"
                                                        << "71234"
                                                        << "71234";
    QTest::newRow("length that is not listed") << "^7\\d*$"
                                               << "712345"
                                               << "712345";
    QTest::newRow("zero before a mobile number") << "^7\\d{4}$"
                                                 << "071234"
                                                 << "+9971234";
    QTest::newRow("zero before another number") << "^7\\d{4}$"
                                                << "081234"
                                                << "081234";
    QTest::newRow("dialling code needs no pattern") << "^7\\d{4}$"
                                                    << "9912345"
                                                    << "+9912345";
    QTest::newRow("dialling code before a wrong length") << "^7\\d{4}$"
                                                         << "99123456"
                                                         << "99123456";
    QTest::newRow("no pattern: nothing is mobile") << ""
                                                   << "71234"
                                                   << "71234";
    QTest::newRow("nothing left") << "^7\\d{4}$"
                                  << "(-)"
                                  << "";
    QTest::newRow("plus without a digit") << "^7\\d{4}$"
                                          << "+ (+)"
                                          << "";
    QTest::newRow("plus in the middle stays") << "^7\\d{4}$"
                                              << "7+123"
                                              << "7+123";
}

void TestCountryLibDb::rulesOfOneCountry()
{
    QFETCH(QString, pattern);
    QFETCH(QString, number);
    CountryInfo country;
    country.pnum = QStringLiteral("99");
    country.numc = QStringLiteral("4,5");
    country.mobilePattern.setPattern(pattern);
    QTEST(CountryLibDb::normalise(number, country), "expected");
}

void TestCountryLibDb::lookUps()
{
    CountryLibDb db;
    db.setDefaultMobileCountryCode(QStringLiteral("310"));
    db.open();
    QCOMPARE(db.defaultCountry().sn, QStringLiteral("US"));

    const auto britain = db.byMobileCountryCode(QStringLiteral("235"));
    QVERIFY(britain.found);
    QCOMPARE(britain.country.sn, QStringLiteral("GB"));
    QCOMPARE(britain.country.n, QStringLiteral("United Kingdom"));
    QCOMPARE(britain.country.ln, QStringLiteral("United Kingdom"));
    QCOMPARE(britain.country.pnum, QStringLiteral("44"));
    QCOMPARE(britain.country.mmc, QStringLiteral("234,235"));
    QCOMPARE(britain.country.numc, QStringLiteral("10"));

    for (const char *code : {"gb", "GB", "Gb", "gb"}) {
        const auto again = db.byIsoCode(QLatin1String(code));
        QVERIFY(again.found);
        QCOMPARE(again.country, britain.country);
    }
    QCOMPARE(db.byIsoCode(QStringLiteral("at")).country.ln, QStringLiteral("Österreich"));
}

void TestCountryLibDb::missGivesTheDefault()
{
    CountryLibDb db;
    db.setDefaultMobileCountryCode(QStringLiteral("262"));
    db.open();
    for (int run = 0; run < 2; ++run) {
        const auto byIso = db.byIsoCode(QStringLiteral("zz"));
        QVERIFY(!byIso.found);
        QCOMPARE(byIso.country.sn, QStringLiteral("DE"));
        const auto byMmc = db.byMobileCountryCode(QStringLiteral("999"));
        QVERIFY(!byMmc.found);
        QCOMPARE(byMmc.country.sn, QStringLiteral("DE"));
    }
    CountryLibDb without;
    without.setDefaultMobileCountryCode(QStringLiteral("000"));
    without.open();
    QCOMPARE(without.byIsoCode(QStringLiteral("zz")).country, CountryInfo());
    QCOMPARE(without.normaliseFor(QStringLiteral("0170 1234567"), QString()), QStringLiteral("01701234567"));
}

void TestCountryLibDb::goodCopyIsUsedAsItStands()
{
    CountryLibDb().open();
    QCOMPARE(contentOf(copyPath()), shipped());
    {
        Sqlite3DB copy;
        copy.openThrow(copyPath(), SqliteOpen::ReadWrite);
        copy.executeThrow(QStringLiteral("update countries set ln='here' where sn='FR'"));
    }
    CountryLibDb db;
    db.open();
    QCOMPARE(db.byIsoCode(QStringLiteral("FR")).country.ln, QStringLiteral("here"));
}

void TestCountryLibDb::damagedCopyIsReplaced_data()
{
    QTest::addColumn<QByteArray>("damaged");
    const QByteArray whole = shipped();
    QByteArray overwritten = whole;
    overwritten.replace(4096, 4096, QByteArray(4096, '\xff'));
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no database") << QByteArray("countries");
    QTest::newRow("half a page") << whole.first(2048);
    QTest::newRow("half a file") << whole.first(whole.size() / 2);
    QTest::newRow("one page overwritten") << overwritten;
}

void TestCountryLibDb::damagedCopyIsReplaced()
{
    QFETCH(QByteArray, damaged);
    writeFile(copyPath(), damaged);
    CountryLibDb db;
    db.open();
    QVERIFY(db.byIsoCode(QStringLiteral("ZW")).found);
    QCOMPARE(contentOf(copyPath()), shipped());
    QCOMPARE(appDataFolder().entryList(QDir::Files), QStringList(QStringLiteral("countries.db")));
}

// A file where the folder should be: nothing can be made below it, whoever runs the test.
void TestCountryLibDb::folderThatCannotBeWritten()
{
    QVERIFY(QDir(m_home->path()).mkpath(QStringLiteral("AppData/Roaming")));
    writeFile(roamingFolder().filePath(QStringLiteral("Quillbarrow")), "in the way");
    CountryLibDb db;
    db.setDefaultMobileCountryCode(QStringLiteral("262"));
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression(QStringLiteral("^can not create .*countries\\.db\\. .+")));
    db.open();
    QCOMPARE(db.defaultCountry().sn, QStringLiteral("DE"));
    QCOMPARE(db.byIsoCode(QStringLiteral("it")).country.pnum, QStringLiteral("39"));
}

void TestCountryLibDb::rowsFitTogether()
{
    CountryLibDb().open();
    Sqlite3DB db;
    db.openThrow(copyPath());
    std::map<QString, QString> countryOfCode;
    Sqlite3Cursor codes = db.queryThrow(QStringLiteral("select mmc, sn from mmc_sn"));
    while (codes.moveNext())
        countryOfCode[codes.getText(0)] = codes.getText(1);
    QCOMPARE(countryOfCode.size(), std::size_t(235));

    std::map<QString, QStringList> codesOfCountry;
    Sqlite3Cursor countries = db.queryThrow(QStringLiteral("select sn, mmc from countries"));
    while (countries.moveNext())
        codesOfCountry[countries.getText(0)] = countries.getText(1).split(u',', Qt::SkipEmptyParts);
    QCOMPARE(codesOfCountry.size(), std::size_t(242));

    for (const auto &[code, country] : countryOfCode)
        QVERIFY2(codesOfCountry[country].contains(code), qPrintable(code));
    for (const auto &[country, list] : codesOfCountry)
        for (const QString &code : list)
            QVERIFY2(countryOfCode.contains(code), qPrintable(country + u' ' + code));
}

void TestCountryLibDb::patternsCompile()
{
    CountryLibDb db;
    db.open();
    Sqlite3DB file;
    file.openThrow(copyPath());
    static const QRegularExpression lengths(QStringLiteral("^[1-9]\\d?(,[1-9]\\d?)*$"));
    static const QRegularExpression diallingCode(QStringLiteral("^[1-9]\\d{0,2}$"));
    Sqlite3Cursor row = file.queryThrow(QStringLiteral("select sn from countries"));
    while (row.moveNext()) {
        const CountryInfo country = db.byIsoCode(row.getText(0)).country;
        QVERIFY2(country.mobilePattern.isValid(), qPrintable(country.sn));
        QVERIFY2(country.mobilePattern.pattern().size() > 4, qPrintable(country.sn));
        QVERIFY2(lengths.match(country.numc).hasMatch(), qPrintable(country.sn));
        QVERIFY2(diallingCode.match(country.pnum).hasMatch(), qPrintable(country.sn));
        QVERIFY2(!country.n.isEmpty() && !country.ln.isEmpty(), qPrintable(country.sn));
    }
}

QTEST_GUILESS_MAIN(TestCountryLibDb)
#include "tst_country_lib_db.moc"

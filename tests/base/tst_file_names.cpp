#include "base/contained_path.h"
#include "base/file_names.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class TestFileNames : public QObject
{
    Q_OBJECT

private slots:
    void safeName_data();
    void safeName();
    void freeName();
    void contained_data();
    void contained();
    void landings_data();
    void landings();
    void below_data();
    void below();
    void linkLeadsOutside();
};

void TestFileNames::safeName_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("device name") << "con.txt"
                                 << "$$con$$.txt";
    QTest::newRow("device name drops the middle") << "Aux.a.b"
                                                  << "$$Aux$$.b";
    QTest::newRow("device name alone") << "clock$"
                                       << "$$clock$$$";
    QTest::newRow("last of the list") << "LPT1"
                                      << "$$LPT1$$";
    QTest::newRow("behind the list") << "LPT2"
                                     << "LPT2";
    QTest::newRow("forbidden characters and blanks") << "  a/b:c\\*?\"<>|\n\r\td  "
                                                     << "abcd";
    QTest::newRow("nothing left") << " /:"
                                  << "";
    QTest::newRow("any script") << QStringLiteral("Ünï 家") << QStringLiteral("Ünï 家");
}

void TestFileNames::safeName()
{
    QFETCH(QString, text);
    QTEST(safeFileName(text), "expected");
}

void TestFileNames::freeName()
{
    QTemporaryDir folder;
    const auto at = [&](const char *name) { return folder.filePath(QLatin1String(name)); };
    const auto make = [&](const char *name) { QVERIFY(QFile(at(name)).open(QIODevice::WriteOnly)); };
    QCOMPARE(freeFileName(at("report.html")), at("report.html"));
    make("report.html");
    make("report(1).html");
    QCOMPARE(freeFileName(at("report.html")), at("report(2).html"));
    make("a.b.c");
    QCOMPARE(freeFileName(at("a.b.c")), at("a(1).c"));
    make("plain");
    QCOMPARE(freeFileName(at("plain")), at("plain(1)"));
    QVERIFY(QFile::link(at("nowhere"), at("dangling")));
    QCOMPARE(freeFileName(at("dangling")), at("dangling(1)"));
}

void TestFileNames::contained_data()
{
    QTest::addColumn<QString>("relative");
    QTest::addColumn<QString>("expected");
    QTest::newRow("plain") << "Library/SMS/sms.db"
                           << "/t/Library/SMS/sms.db";
    QTest::newRow("dots inside names") << "a..b/...c"
                                       << "/t/a..b/...c";
    QTest::newRow("characters a desktop forbids") << "ab:c/d?e"
                                                  << "/t/ab_c/d_e";
    QTest::newRow("trailing dot") << "a./b "
                                  << "/t/a_/b_";
    QTest::newRow("climbs") << "a/../../b"
                            << "";
    QTest::newRow("climbs with a backslash") << "a\\..\\..\\b"
                                             << "";
    QTest::newRow("absolute") << "/etc/passwd"
                              << "";
    QTest::newRow("drive letter") << "C:/x"
                                  << "";
    QTest::newRow("empty component") << "a//b"
                                     << "";
    QTest::newRow("own folder") << "a/./b"
                                << "";
    QTest::newRow("device name") << "a/NUL.txt/b"
                                 << "";
    QTest::newRow("device name beyond COM9") << "lpt9"
                                             << "";
    QTest::newRow("NUL character") << QStringLiteral("a") + QChar(0) + QStringLiteral("b") << "";
    QTest::newRow("empty") << ""
                           << "";
}

void TestFileNames::contained()
{
    QFETCH(QString, relative);
    QString why;
    QTEST(containedPath(QStringLiteral("/t"), relative, &why).value_or(QString()), "expected");
    QFETCH(QString, expected);
    QCOMPARE(why.isEmpty(), !expected.isEmpty());
}

void TestFileNames::landings_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("onUnix");
    QTest::addColumn<QString>("onWindows");
    const auto row = [](const char *situation, const QString &name, const QString &onUnix,
                        const QString &onWindows) {
        QTest::newRow(situation) << name << onUnix << onWindows;
    };
    row("plain", u"sms.db"_s, u"sms.db"_s, u"sms.db"_s);
    row("blank at the end", u"Notes "_s, u"Notes "_s, u"Notes_"_s);
    row("dot at the end", u"a."_s, u"a."_s, u"a_"_s);
    row("what a desktop forbids", u"a:b\\c?\n"_s, u"a:b\\c?\n"_s, u"a_b_c__"_s);
    row("device", u"con.tar.gz"_s, u"con.tar.gz"_s, u"$$con$$.tar.gz"_s);
    row("NUL", u"a"_s + QChar(0), u"a_"_s, u"a_"_s);
    row("255 bytes", QString(255, u'x'), QString(255, u'x'), QString(255, u'x'));
    row("256 bytes", QString(252, u'x') + u".jpg"_s, QString(251, u'x') + u".jpg"_s, QString(251, u'x') + u".jpg"_s);
    row("characters of several bytes", QString(100, QChar(0x20AC)), QString(85, QChar(0x20AC)),
        QString(85, QChar(0x20AC)));
}

void TestFileNames::landings()
{
    QFETCH(QString, name);
    QTEST(landingName(name, NameRules::Unix), "onUnix");
    QTEST(landingName(name, NameRules::Windows), "onWindows");
}

void TestFileNames::below_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("onUnix");
    QTest::addColumn<bool>("onWindows");
    const auto row = [](const QString &path, bool onUnix, bool onWindows) {
        QTest::addRow("\"%s\"", qPrintable(path)) << path << onUnix << onWindows;
    };
    row(u"a/b"_s, true, true);
    row(u""_s, false, false);
    row(u"/a"_s, false, false);
    row(u"a/../b"_s, false, false);
    row(u"a//b"_s, false, false);
    row(u"a/."_s, false, false);
    row(u"..\\b"_s, true, false);
    row(u"\\b"_s, true, false);
    row(u"C:/b"_s, true, false);
    row(u"aux/NUL"_s, true, true);
}

void TestFileNames::below()
{
    QFETCH(QString, path);
    QTEST(whyNotBelow(path, NameRules::Unix).isEmpty(), "onUnix");
    QTEST(whyNotBelow(path, NameRules::Windows).isEmpty(), "onWindows");
}

void TestFileNames::linkLeadsOutside()
{
    QTemporaryDir inside;
    QTemporaryDir outside;
    QVERIFY(QFile::link(outside.path(), inside.filePath(QStringLiteral("link"))));
    QVERIFY(staysBelow(inside.path(), inside.filePath(QStringLiteral("new/file"))));
    QVERIFY(!staysBelow(inside.path(), inside.filePath(QStringLiteral("link/new/file"))));
}

QTEST_APPLESS_MAIN(TestFileNames)
#include "tst_file_names.moc"

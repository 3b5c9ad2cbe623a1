#include "export/free_names.h"
#include "sample_messages.h"

#include <QTemporaryDir>
#include <QTest>

class TestFreeNames : public QObject
{
    Q_OBJECT

private slots:
    void names_data();
    void names();
    void longNamesFitAndKeepTheirEnd_data();
    void longNamesFitAndKeepTheirEnd();
    void manyOfOneNameAreQuick();
    void portable_data();
    void portable();
};

void TestFreeNames::names_data()
{
    QTest::addColumn<QStringList>("there");
    QTest::addColumn<QStringList>("wanted");
    QTest::addColumn<QStringList>("given");
    QTest::newRow("free") << QStringList{} << QStringList{"a.jpg"} << QStringList{"a.jpg"};
    QTest::newRow("the middle part is dropped")
        << QStringList{} << QStringList{"a.b.jpg", "a.b.jpg", "a.c.jpg"}
        << QStringList{"a.b.jpg", "a(1).jpg", "a.c.jpg"};
    QTest::newRow("no suffix") << QStringList{"a"} << QStringList{"a", "a"} << QStringList{"a(1)", "a(2)"};
    QTest::newRow("suffix alone") << QStringList{} << QStringList{".x", ".x"} << QStringList{".x", "(1).x"};
    QTest::newRow("numbers that are taken are passed over")
        << QStringList{"a.b", "a(2).b"} << QStringList{"a.b", "a.b"} << QStringList{"a(1).b", "a(3).b"};
    QTest::newRow("case does not count")
        << QStringList{"IMG.JPG"} << QStringList{"img.jpg"} << QStringList{"img(1).jpg"};
    QTest::newRow("a composed accent is the same as a separate one")
        << QStringList{} << QStringList{QString::fromUtf8("\u00E9.a"), QString::fromUtf8("e\u0301.a")}
        << QStringList{QString::fromUtf8("\u00E9.a"), QString::fromUtf8("e\u0301(1).a")};
}

void TestFreeNames::names()
{
    QFETCH(QStringList, there);
    QFETCH(QStringList, wanted);
    QTemporaryDir folder;
    for (const QString &name : there)
        QVERIFY(QFile(folder.filePath(name)).open(QIODevice::WriteOnly));
    FreeNames names(folder.path());
    QStringList given;
    for (const QString &name : wanted)
        given += names.take(name);
    QTEST(given, "given");
}

void TestFreeNames::longNamesFitAndKeepTheirEnd_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("end");
    QTest::addColumn<int>("bytes"); // of the first name given
    QTest::newRow("255 bytes stay") << QString(251, 'x') + ".jpg"
                                    << ".jpg" << 255;
    QTest::newRow("256 bytes are cut") << QString(252, 'x') + ".jpg"
                                       << ".jpg" << 255;
    QTest::newRow("two bytes a letter") << QString(200, QChar(0xE4)) + ".html"
                                        << ".html" << 255;
    QTest::newRow("four bytes a letter: on a boundary") << QString::fromUtf8("😀").repeated(100) + ".html"
                                                        << ".html" << 253;
    QTest::newRow("a family is one character")
        << QString::fromUtf8("👨‍👩‍👧").repeated(20) + ".html"
        << ".html" << 5 + 18 * 13;
    QTest::newRow("a long end is no extension") << "a." + QString(300, 'x') << "x" << 255;
}

void TestFreeNames::longNamesFitAndKeepTheirEnd()
{
    QFETCH(QString, name);
    QFETCH(QString, end);
    QTemporaryDir folder;
    FreeNames names(folder.path());
    const QString first = names.take(name);
    const QString second = names.take(name);
    QTEST(int(first.toUtf8().size()), "bytes");
    QVERIFY(first.endsWith(end));
    QVERIFY(!first.toUtf8().contains("\xEF\xBF\xBD"));
    QVERIFY2(second.contains(QLatin1String("(1)")), qPrintable(second));
    QVERIFY(second.toUtf8().size() <= 255);
    QVERIFY(QFile(folder.filePath(first)).open(QIODevice::WriteOnly));
}

void TestFreeNames::manyOfOneNameAreQuick()
{
    QTemporaryDir folder;
    FreeNames names(folder.path());
    QSet<QString> given;
    for (int i = 0; i < 20000; ++i)
        given += names.take(QStringLiteral("image.png"));
    QCOMPARE(given.size(), 20000);
    QVERIFY(given.contains(QStringLiteral("image(19999).png")));
}

void TestFreeNames::portable_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("plain") << "IMG 1.jpg"
                           << "IMG 1.jpg";
    QTest::newRow("climbing") << "../../etc/passwd"
                              << "....etcpasswd";
    QTest::newRow("dots alone") << ".."
                                << "fallback";
    QTest::newRow("dots and blanks at the end") << "a. . "
                                                << "a";
    QTest::newRow("forbidden alone") << "???"
                                     << "fallback";
    QTest::newRow("control characters") << QStringLiteral("a\u0001\u007Fb") + QChar(0) << "ab";
    QTest::newRow("device") << "con.html"
                            << "$$con$$.html";
    QTest::newRow("device with a suffix that climbs") << "nul./../x"
                                                      << "$$nul$$.x";
    QTest::newRow("empty") << ""
                           << "fallback";
}

void TestFreeNames::portable()
{
    QFETCH(QString, text);
    QTEST(portableFileName(text, QStringLiteral("fallback")), "expected");
}

QTEST_GUILESS_MAIN(TestFreeNames)
#include "tst_free_names.moc"

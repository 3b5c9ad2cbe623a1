#include "backup/cf_type.h"

#include <QTest>
#include <QTimeZone>

#include <limits>

namespace {
QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

CFType again(const CFType &value, CFType::Format format)
{
    return CFType::parse(value.serialise(format));
}
} // namespace

class TestCFType : public QObject
{
    Q_OBJECT

private slots:
    void roundTrip_data();
    void roundTrip();
    void integerOfWidth_data();
    void integerOfWidth();
    void otherKindGivesDefault();
    void asText_data();
    void asText();
    void dates_data();
    void dates();
    void uidInXml();
    void valueOutlivesItsContainer();
    void namesAsTheyAreInXml();
};

void TestCFType::roundTrip_data()
{
    QTest::addColumn<CFType::Format>("format");
    QTest::newRow("XML") << CFType::Format::Xml;
    QTest::newRow("binary") << CFType::Format::Binary;
}

void TestCFType::roundTrip()
{
    QFETCH(CFType::Format, format);
    const QString names = text("Ünï & <family> 👩‍👩‍👧 \"quoted\"\n");
    const QByteArray bytes = QByteArray("\0\xff\x80", 3) + QByteArray(300, 'x');
    CFType inner = CFType::newArray();
    inner.append(CFType::fromDouble(-0.1));
    inner.append(CFType::fromString(QString()));
    CFType value = CFType::newDictionary();
    value.set(names, CFType::fromString(names));
    value.set(text("data"), CFType::fromByteArray(bytes));
    value.set(text("no data"), CFType::fromByteArray({}));
    value.set(text("least"), CFType::fromInt(std::numeric_limits<qint64>::min()));
    value.set(text("greatest"), CFType::fromInt(std::numeric_limits<qint64>::max()));
    value.set(text("flag"), CFType::fromBool(true));
    value.set(text("uid"), CFType::fromUid(std::numeric_limits<quint32>::max()));
    value.set(text("inner"), inner);

    const CFType read = again(value, format);
    QVERIFY(read.isDictionary());
    QCOMPARE(read.keys(), value.keys());
    QCOMPARE(read.get(names).toString(), names);
    QCOMPARE(read.get(text("data")).toByteArray(), bytes);
    QVERIFY(read.get(text("no data")).isData());
    QCOMPARE(read.get(text("least")).toInt64(), std::numeric_limits<qint64>::min());
    QCOMPARE(read.get(text("greatest")).toInt64(), std::numeric_limits<qint64>::max());
    QVERIFY(read.get(text("flag")).toBool());
    QCOMPARE(read.get(text("uid")).uid(), std::numeric_limits<quint32>::max());
    QCOMPARE(read.get(text("inner")).count(), 2);
    QCOMPARE(read.get(text("inner")).at(0).toDouble(), -0.1);
    QVERIFY(read.get(text("inner")).at(1).isString());
}

void TestCFType::integerOfWidth_data()
{
    QTest::addColumn<qint64>("value");
    QTest::addColumn<int>("as16");
    QTest::addColumn<int>("as32");
    QTest::newRow("fits all") << qint64{-32768} << -32768 << -32768;
    QTest::newRow("one too many for 16 bits") << qint64{32768} << 7 << 32768;
    QTest::newRow("one too few for 32 bits") << qint64{-2147483649} << 7 << 7;
}

void TestCFType::integerOfWidth()
{
    QFETCH(qint64, value);
    const CFType number = CFType::fromInt(value);
    QCOMPARE(number.toInt64(), value);
    QTEST(int{number.toInt16(7)}, "as16");
    QTEST(number.toInt32(7), "as32");
}

void TestCFType::otherKindGivesDefault()
{
    const CFType string = CFType::fromString(text("12"));
    QCOMPARE(string.toInt16(5), qint16{5});
    QCOMPARE(string.toDouble(0.5), 0.5);
    QCOMPARE(string.toByteArray("x"), QByteArray("x"));
    QVERIFY(string.toBool(true));
    QVERIFY(!string.toDateTime().isValid());
    QCOMPARE(string.uid(3), 3U);
    QVERIFY(string.get(text("a")).isEmpty());
    QVERIFY(string.at(0).isEmpty());
    QCOMPARE(string.count(), 0);
    QCOMPARE(CFType::fromInt(1).toString(text("none")), text("none"));
    QCOMPARE(CFType::fromDouble(1e300).toInt64(9), 9);
    QCOMPARE(CFType::fromDouble(2.9).toInt64(), 2);
    const CFType absent = CFType::newDictionary().get(text("absent"));
    QVERIFY(absent.isEmpty());
    QCOMPARE(absent.toString(), QString());
    QCOMPARE(absent.serialise(CFType::Format::Xml), QByteArray());
    CFType array = CFType::newArray();
    array.append(absent);
    QVERIFY(array.at(-1).isEmpty() && array.at(0).isEmpty());
}

void TestCFType::asText_data()
{
    QTest::addColumn<CFType>("value");
    QTest::addColumn<QString>("expected");
    QTest::newRow("integer") << CFType::fromInt(-12) << text("-12");
    QTest::newRow("real") << CFType::fromDouble(16.1) << text("16.1");
    QTest::newRow("boolean") << CFType::fromBool(true) << text("true");
    QTest::newRow("data") << CFType::fromByteArray("hi") << text("aGk=");
    QTest::newRow("date") << CFType::fromDateTime(QDateTime::fromSecsSinceEpoch(0, Qt::UTC))
                          << text("1970-01-01T00:00:00Z");
    QTest::newRow("string") << CFType::fromString(text("16.1")) << text("16.1");
    QTest::newRow("container") << CFType::newArray() << QString();
}

void TestCFType::asText()
{
    QFETCH(CFType, value);
    QTEST(value.toText(), "expected");
}

void TestCFType::dates_data()
{
    QTest::addColumn<QString>("iso");
    QTest::newRow("beginning of the calendar") << text("0001-01-01T00:00:00Z");
    QTest::newRow("before 1970") << text("1969-07-20T20:17:40Z");
    QTest::newRow("summer, when the local zone is two hours ahead") << text("2021-07-01T12:00:00Z");
    QTest::newRow("beyond 32 bits of seconds") << text("4001-01-01T00:00:00Z");
}

void TestCFType::dates()
{
    QFETCH(QString, iso);
    const QDateTime date = QDateTime::fromString(iso, Qt::ISODate);
    const QDateTime elsewhere = date.toTimeZone(QTimeZone(-5 * 3600));
    for (const CFType::Format format : {CFType::Format::Binary, CFType::Format::Xml}) {
        const QDateTime read = again(CFType::fromDateTime(elsewhere), format).toDateTime();
        QCOMPARE(read, date);
        QCOMPARE(read.timeSpec(), Qt::UTC);
    }
}

void TestCFType::uidInXml()
{
    const QByteArray xml = "<plist><dict><key>CF$UID</key><integer>5</integer></dict></plist>";
    const CFType uid = CFType::parse(xml);
    QVERIFY(uid.isUid() && !uid.isDictionary());
    QCOMPARE(uid.uid(), 5U);
    CFType dictionary = CFType::newDictionary();
    dictionary.set(text("CF$UID"), CFType::fromInt(5));
    QVERIFY(again(dictionary, CFType::Format::Binary).isDictionary());
}

void TestCFType::valueOutlivesItsContainer()
{
    CFType kept;
    {
        CFType dictionary = CFType::newDictionary();
        dictionary.set(text("a"), CFType::fromString(text("first")));
        kept = dictionary.get(text("a"));
        const CFType copy = dictionary;
        dictionary.set(text("a"), CFType::fromString(text("second")));
        QCOMPARE(copy.get(text("a")).toString(), text("second"));
    }
    const CFType another = kept;
    kept = CFType();
    QCOMPARE(another.toString(), text("first"));
}

void TestCFType::namesAsTheyAreInXml()
{
    const QByteArray xml = "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://x/y.dtd\">\n"
                           "<plist version=\"1.0\"><dict><!-- <dict> --><key>a&amp;b</key>"
                           "<string>x<![CDATA[<y>]]>&#x1F600;</string></dict></plist>";
    QCOMPARE(CFType::parse(xml).get(text("a&b")).toString(), text("x<y>😀"));
}

QTEST_APPLESS_MAIN(TestCFType)
#include "tst_cf_type.moc"

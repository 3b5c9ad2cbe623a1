#include "base/apple_time.h"
#include "base/byte_reader.h"
#include "base/error.h"

#include <QTest>

class TestBytesAndTime : public QObject
{
    Q_OBJECT

private slots:
    void integersOfBothOrders();
    void shortReadsMoveNothing();
    void appleSeconds_data();
    void appleSeconds();
    void isoUtc();
    void localClockAgreesWithQt();
};

void TestBytesAndTime::integersOfBothOrders()
{
    const QByteArray bytes = QByteArray::fromHex("01020304050607080102030405060708ff");
    ByteReader reader(bytes);
    QCOMPARE(reader.u64be(), 0x0102030405060708ULL);
    QCOMPARE(reader.u16le(), 0x0201);
    QCOMPARE(reader.u32le(), 0x06050403U);
    QCOMPARE(reader.bigEndian(2), 0x0708ULL);
    QCOMPARE(reader.u8(), 0xff);
    QVERIFY(reader.atEnd());
}

void TestBytesAndTime::shortReadsMoveNothing()
{
    const QByteArray bytes("abc");
    ByteReader reader(bytes);
    reader.skip(1);
    QVERIFY_EXCEPTION_THROWN(reader.u32be(), Error);
    QVERIFY_EXCEPTION_THROWN(reader.slice(3), Error);
    QVERIFY_EXCEPTION_THROWN(reader.slice(-1), Error);
    QVERIFY_EXCEPTION_THROWN(reader.skip(std::numeric_limits<qsizetype>::max()), Error);
    QVERIFY_EXCEPTION_THROWN(reader.seek(4), Error);
    QCOMPARE(reader.position(), 1);
    QCOMPARE(reader.slice(2).toByteArray(), QByteArray("bc"));
    reader.seek(3);
    QVERIFY(reader.atEnd());
}

void TestBytesAndTime::appleSeconds_data()
{
    QTest::addColumn<qint64>("stored");
    QTest::addColumn<bool>("nanoseconds");
    QTest::addColumn<qint64>("expected");
    QTest::newRow("seconds") << qint64(347068800) << false << qint64(347068800);
    QTest::newRow("nanoseconds") << qint64(347068800999999999) << true << qint64(347068800);
    QTest::newRow("nanoseconds in a column of seconds")
        << qint64(347068800000000000) << false << qint64(347068800);
    QTest::newRow("rounds toward zero") << qint64(-1500000000) << true << qint64(-1);
    QTest::newRow("largest number of seconds")
        << qint64(1000000000000000) << false << qint64(1000000000000000);
}

void TestBytesAndTime::appleSeconds()
{
    QFETCH(qint64, stored);
    QFETCH(bool, nanoseconds);
    QTEST(qint64(::appleSeconds(stored, nanoseconds)), "expected");
}

void TestBytesAndTime::isoUtc()
{
    QCOMPARE(::isoUtc(unixFromApple(347068800)), QStringLiteral("2012-01-01T00:00:00Z"));
    QCOMPARE(::isoUtc(951868799), QStringLiteral("2000-02-29T23:59:59Z"));
    QCOMPARE(::isoUtc(-62135596800), QStringLiteral("0001-01-01T00:00:00Z"));
    QCOMPARE(::isoUtc(253402300799), QStringLiteral("9999-12-31T23:59:59Z"));
    QVERIFY(::isoUtc(253402300800).isEmpty());
    QCOMPARE(::isoUtc(-1), QStringLiteral("1969-12-31T23:59:59Z"));
    QVERIFY(::isoUtc(std::numeric_limits<qint64>::max()).isEmpty());
    QVERIFY(::isoUtc(std::numeric_limits<qint64>::min()).isEmpty());
}

void TestBytesAndTime::localClockAgreesWithQt()
{
    // Around both changes of the year in the test's zone, before 1970, and zones' odd offsets of old times.
    const LocalClock clock;
    for (const qint64 around : {1332637200LL, 1351386000LL, -1LL, -2000000000LL, 4102444800LL}) {
        for (qint64 t = around - 7200; t <= around + 7200; t += 59) {
            std::int64_t day = 0;
            int second = 0;
            clock.split(t, day, second);
            const QDateTime qt = QDateTime::fromSecsSinceEpoch(t, Qt::LocalTime);
            QCOMPARE(QDate(1970, 1, 1).addDays(day), qt.date());
            QCOMPARE(QTime::fromMSecsSinceStartOfDay(second * 1000), qt.time());
        }
    }
}

QTEST_APPLESS_MAIN(TestBytesAndTime)
#include "tst_bytes_and_time.moc"

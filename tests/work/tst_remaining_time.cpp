#include "base/texts.h"
#include "resources/resources.h"
#include "work/remaining_time.h"

#include <QTest>

class TestRemainingTime : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void guess();
    void restart();
    void text_data();
    void text();
};

void TestRemainingTime::initTestCase()
{
    initResources();
    installTexts();
}

void TestRemainingTime::guess()
{
    RemainingTime time;
    QVERIFY(!time.secondsLeft(0, 1000));
    QVERIFY2(!time.secondsLeft(40, 5999), "before five seconds there is nothing to tell");
    QCOMPARE(time.secondsLeft(50, 6000), std::optional<qint64>(5));
    QCOMPARE(time.secondsLeft(75, 16000), std::optional<qint64>(5));
    QVERIFY2(!time.secondsLeft(100, 20000), "nothing is left at the end");

    RemainingTime slow;
    QVERIFY(!slow.secondsLeft(0, 0));
    QVERIFY2(!slow.secondsLeft(1, 60000), "one percent shows no speed");
}

void TestRemainingTime::restart()
{
    RemainingTime time;
    time.secondsLeft(0, 0);
    QVERIFY(time.secondsLeft(90, 9000));
    QVERIFY2(!time.secondsLeft(10, 10000), "a falling percentage is another piece of work");
    QVERIFY(!time.secondsLeft(20, 14000));
    QCOMPARE(time.secondsLeft(20, 20000), std::optional<qint64>(80));
}

void TestRemainingTime::text_data()
{
    QTest::addColumn<qint64>("seconds");
    QTest::addColumn<QString>("expected");
    QTest::newRow("never nothing") << qint64(0) << "About 5 seconds left";
    QTest::newRow("rounded up") << qint64(21) << "About 25 seconds left";
    QTest::newRow("last in seconds") << qint64(89) << "About 90 seconds left";
    QTest::newRow("first in minutes") << qint64(90) << "About 2 minutes left";
    QTest::newRow("last in minutes") << qint64(5399) << "About 90 minutes left";
    QTest::newRow("first in hours") << qint64(5400) << "About 2 hours left";
}

void TestRemainingTime::text()
{
    QFETCH(qint64, seconds);
    QTEST(remainingText(seconds), "expected");
}

QTEST_GUILESS_MAIN(TestRemainingTime)
#include "tst_remaining_time.moc"

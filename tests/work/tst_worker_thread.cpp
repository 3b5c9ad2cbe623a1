#include "base/error.h"
#include "recording_receiver.h"
#include "scripted_worker.h"

#include <QTest>

class TestWorkerThread : public QObject
{
    Q_OBJECT

private slots:
    void ends_data();
    void ends();
    void cancelIsSilent();
    void reportsAreThinnedAndTheLastArrives();
    void tipHoldsTheWorker();
    void letGoWorkerIsNotHeard();
    void waitForLetGoEndsThem();
};

void TestWorkerThread::ends_data()
{
    QTest::addColumn<ScriptedWorker::Job>("job");
    QTest::addColumn<QString>("expected");
    using W = ScriptedWorker;
    QTest::newRow("success") << W::Job([](Progress &, W &) { return QStringLiteral("all 3"); })
                             << "done: all 3";
    QTest::newRow("success without a text") << W::Job([](Progress &, W &) { return QString(); }) << "done: ";
    QTest::newRow("failure") << W::Job([](Progress &, W &) -> QString {
        throw Error(QStringLiteral("no größe"));
    }) << QStringLiteral("error: no größe");
    QTest::newRow("foreign exception")
        << W::Job([](Progress &, W &) -> QString { throw std::out_of_range("beyond"); }) << "error: beyond";
    QTest::newRow("no memory") << W::Job([](Progress &, W &) -> QString { throw std::bad_alloc(); })
                               << "error: IDS_OUT_OF_MEMORY";
}

void TestWorkerThread::ends()
{
    QFETCH(ScriptedWorker::Job, job);
    QFETCH(QString, expected);
    RecordingReceiver receiver;
    ScriptedWorker worker(job);
    ProgressLink link;
    link.receiver = &receiver;
    worker.setLink(link);
    worker.start();
    QTRY_VERIFY(receiver.ended());
    QVERIFY(worker.wait());
    QCOMPARE(receiver.lines, QStringList(expected));
}

void TestWorkerThread::cancelIsSilent()
{
    RecordingReceiver receiver;
    QSemaphore begun;
    QSemaphore goOn;
    ScriptedWorker worker([&](Progress &progress, ScriptedWorker &) {
        progress.check();
        begun.release();
        goOn.acquire();
        progress.check();
        return QStringLiteral("too far");
    });
    ProgressLink link;
    link.receiver = &receiver;
    worker.setLink(link);
    worker.start();
    begun.acquire();
    *link.cancelled = true;
    goOn.release();
    QVERIFY(worker.wait());
    QCoreApplication::processEvents();
    QCOMPARE(receiver.lines, QStringList());
}

void TestWorkerThread::reportsAreThinnedAndTheLastArrives()
{
    RecordingReceiver receiver;
    ScriptedWorker worker([](Progress &progress, ScriptedWorker &) {
        progress.report(QStringLiteral("Counting"), 0, {});
        for (int i = 0; i < 100000; ++i)
            progress.report({}, i / 1000, {});
        progress.report({}, -1, {});
        return QString();
    });
    ProgressLink link;
    link.receiver = &receiver;
    worker.setLink(link);
    worker.start();
    QTRY_VERIFY(receiver.ended());
    QVERIFY(worker.wait());
    QVERIFY2(receiver.reports < 1000, qPrintable(QString::number(receiver.reports)));
    QCOMPARE(receiver.lastPercent, 99);
}

void TestWorkerThread::tipHoldsTheWorker()
{
    RecordingReceiver receiver;
    ProgressLink link;
    link.receiver = &receiver;
    connect(&receiver, &RecordingReceiver::tipShown, this, [&link] { *link.tipPending = false; });
    ScriptedWorker worker([](Progress &, ScriptedWorker &self) {
        self.tipsWait(QStringLiteral("unlock the phone"));
        return QStringLiteral("after");
    });
    worker.setLink(link);
    worker.start();
    QTRY_COMPARE(receiver.lines,
                 QStringList({QStringLiteral("tip: unlock the phone"), QStringLiteral("done: after")}));
    QVERIFY(worker.wait());
}

void TestWorkerThread::letGoWorkerIsNotHeard()
{
    RecordingReceiver receiver;
    QSemaphore begun;
    QSemaphore goOn;
    auto worker = std::make_unique<ScriptedWorker>([&](Progress &progress, ScriptedWorker &) {
        begun.release();
        goOn.acquire();
        progress.report(QStringLiteral("still here"), 50, {});
        return progress.isCancelled() ? QStringLiteral("told to stop") : QStringLiteral("not told");
    });
    ProgressLink link;
    link.receiver = &receiver;
    worker->setLink(link);
    worker->start();
    begun.acquire();
    QPointer<WorkerThread> watched(worker.get());
    WorkerThread::letGo(std::move(worker));
    QVERIFY(*link.cancelled);
    goOn.release();
    QTRY_VERIFY2(!watched, "a worker that was let go destroys itself");
    QCOMPARE(receiver.lines, QStringList());
    QCOMPARE(receiver.reports, 0);
}

void TestWorkerThread::waitForLetGoEndsThem()
{
    QSemaphore goOn;
    auto worker = std::make_unique<ScriptedWorker>([&](Progress &, ScriptedWorker &) {
        goOn.acquire();
        return QString();
    });
    worker->setLink({});
    worker->start();
    WorkerThread::letGo(std::move(worker));
    QVERIFY(!WorkerThread::waitForLetGo(10));
    goOn.release();
    QVERIFY(WorkerThread::waitForLetGo(10000));
}

QTEST_GUILESS_MAIN(TestWorkerThread)
#include "tst_worker_thread.moc"

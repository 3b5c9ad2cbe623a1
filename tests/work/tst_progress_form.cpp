#include "base/error.h"
#include "base/texts.h"
#include "resources/resources.h"
#include "scripted_worker.h"
#include "support/modal.h"
#include "work/message_boxes.h"
#include "work/progress_form.h"
#include "work/run_job.h"

#include <QLabel>
#include <QMetaMethod>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

namespace {
QString textOf(const ProgressForm &form, const char *name)
{
    return form.findChild<QLabel *>(QLatin1String(name))->text();
}

QPushButton *cancelButton(const ProgressForm &form)
{
    return form.findChild<QPushButton *>(QStringLiteral("btnCancel"));
}
} // namespace

class TestProgressForm : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void metaObjectKeepsItsOrder();
    void updates();
    void cancelAnsweredNo();
    void cancelAnsweredYes();
    void escapeAsksToo();
    void endWhileTheQuestionIsOpen();
    void errorEndsCancelled();
    void errorTextIsEscaped();
    void successOffersTheResult();
    void tipClearsItsFlag();
    void jobSucceeds();
    void jobFails();
    void cancelledJobThatDoesNotListen();
    void killableStretchIsKilled();
};

void TestProgressForm::initTestCase()
{
    initResources();
    installTexts();
}

void TestProgressForm::metaObjectKeepsItsOrder()
{
    const QMetaObject &meta = ProgressForm::staticMetaObject;
    QByteArrayList own;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        own << meta.method(i).methodSignature();
    QCOMPARE(own,
             QByteArrayList({"userCacel()", "updateProgress(QString,int,QString)", "errorOccurred(QString)",
                             "succeed(QString)", "onFinish(int)", "tipsWait(QString)", "cancel()"}));
}

void TestProgressForm::updates()
{
    ProgressForm form(QStringLiteral("Exporting"));
    const auto *bar = form.findChild<QProgressBar *>();
    QCOMPARE(form.windowTitle(), QStringLiteral("Exporting"));
    QCOMPARE(textOf(form, "lbTitle"), QStringLiteral("Exporting"));
    QVERIFY(form.windowFlags().testFlag(Qt::FramelessWindowHint));
    QCOMPARE(cancelButton(form)->focusPolicy(), Qt::NoFocus);

    form.updateProgress(QStringLiteral("Copying"), 40, QStringLiteral("2/5"));
    QCOMPARE(textOf(form, "lbTitle"), QStringLiteral("Copying"));
    QCOMPARE(textOf(form, "lbDetail"), QStringLiteral("2/5"));
    form.updateProgress({}, -1, {});
    QCOMPARE(textOf(form, "lbTitle"), QStringLiteral("Copying"));
    QCOMPARE(bar->value(), 40);
    QCOMPARE(textOf(form, "lbDetail"), QStringLiteral("Progress:40%"));
}

void TestProgressForm::cancelAnsweredNo()
{
    ProgressForm form({});
    QSignalSpy cancelled(&form, &ProgressForm::userCacel);
    form.show();
    const AnswerBox no(QMessageBox::No);
    QTest::mouseClick(cancelButton(form), Qt::LeftButton);
    QCOMPARE(no.text(), QStringLiteral("Are You Sure You Want To Cancel?"));
    QCOMPARE(cancelled.count(), 0);
    QVERIFY(!form.isCancelled());
    QVERIFY(form.isVisible());
}

void TestProgressForm::cancelAnsweredYes()
{
    ProgressForm form({});
    QSignalSpy cancelled(&form, &ProgressForm::userCacel);
    QSignalSpy finished(&form, &QDialog::finished);
    form.show();
    const AnswerBox yes(QMessageBox::Yes);
    QTest::mouseClick(cancelButton(form), Qt::LeftButton);
    QCOMPARE(cancelled.count(), 1);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(form.result(), 0);
    QVERIFY(form.isCancelled());
    QVERIFY(!form.isVisible());
    form.succeed(QStringLiteral("comes too late and opens no box"));
    QCOMPARE(form.result(), 0);
}

void TestProgressForm::escapeAsksToo()
{
    ProgressForm form({});
    form.show();
    const OnModal<MessageBox> escape([](MessageBox &box) { QTest::keyClick(&box, Qt::Key_Escape); });
    QTest::keyClick(&form, Qt::Key_Escape);
    QVERIFY(escape.wasShown());
    QVERIFY(form.isVisible());
    QVERIFY(!form.isCancelled());
}

void TestProgressForm::endWhileTheQuestionIsOpen()
{
    ProgressForm form({});
    form.show();
    const OnModal<MessageBox> jobEnds([&form](MessageBox &) { form.succeed({}); });
    form.cancel();
    QCOMPARE(form.result(), 1);
    QVERIFY(!form.isCancelled());
}

void TestProgressForm::errorEndsCancelled()
{
    ProgressForm form({});
    form.show();
    const AnswerBox box;
    form.errorOccurred(QStringLiteral("the disk is full"));
    QVERIFY(box.text().contains(QStringLiteral("the disk is full")));
    QCOMPARE(form.result(), 0);
    QVERIFY(form.isCancelled());
}

void TestProgressForm::errorTextIsEscaped()
{
    const AnswerBox box;
    showErrorBox(QStringLiteral("<b>a&b\nc"));
    QCOMPARE(box.text(),
             QStringLiteral("<nobr><b>Quillbarrow (x64) v3.1.36</b></nobr><br/><br/>An Error Occurred. "
                            "<br/><br/>&lt;b&gt;a&amp;b<br/>c<br/><br/> Or you can contact "
                            "support@quillbarrow.example for help."));
}

void TestProgressForm::successOffersTheResult()
{
    ProgressForm form({});
    form.setResultToOpen(QStringLiteral("/nowhere"));
    form.show();
    bool offered = false;
    const OnModal<MessageBox> answer([&offered](MessageBox &box) {
        offered = box.findChild<QPushButton *>(QStringLiteral("btnOpenResult")) != nullptr;
        QTest::mouseClick(box.button(QMessageBox::Ok), Qt::LeftButton);
    });
    form.succeed(QStringLiteral("Successfully extracted 3 Messages."));
    QVERIFY(offered);
    QCOMPARE(form.result(), 1);
    QVERIFY(!form.isCancelled());
}

void TestProgressForm::tipClearsItsFlag()
{
    ProgressForm form({});
    form.show();
    *form.link().tipPending = true;
    const AnswerBox ok;
    form.tipsWait(QStringLiteral("read me"));
    QVERIFY(!*form.link().tipPending);
    QVERIFY(form.isVisible());
}

void TestProgressForm::jobSucceeds()
{
    auto worker = std::make_unique<ScriptedWorker>([](Progress &progress, ScriptedWorker &) {
        progress.report(QStringLiteral("Working"), 100, {});
        return QString();
    });
    QVERIFY(runJob(QString(), worker, nullptr));
    QVERIFY(worker && worker->isFinished());
}

void TestProgressForm::jobFails()
{
    auto worker = std::make_unique<ScriptedWorker>(
        [](Progress &, ScriptedWorker &) -> QString { throw Error(QStringLiteral("no")); });
    const AnswerBox ok;
    QVERIFY(!runJob(QString(), worker, nullptr));
    QVERIFY(worker && worker->isFinished());
}

void TestProgressForm::cancelledJobThatDoesNotListen()
{
    QSemaphore goOn;
    std::atomic<bool> cancelled = true;
    ScriptedWorker worker([&goOn](Progress &, ScriptedWorker &) {
        goOn.acquire();
        return QString();
    });
    worker.start();
    QVERIFY2(!awaitWorker(worker, cancelled, 20), "a deaf worker is not killed in the middle of its work");
    QVERIFY(worker.isRunning());
    goOn.release();
    QVERIFY(worker.wait());
}

void TestProgressForm::killableStretchIsKilled()
{
    std::atomic<bool> cancelled = true;
    QSemaphore begun;
    ScriptedWorker worker([&begun](Progress &, ScriptedWorker &) -> QString {
        const WorkerThread::Killable killable;
        begun.release();
        for (;;)
            QThread::msleep(5);
    });
    worker.start();
    begun.acquire();
    QVERIFY(awaitWorker(worker, cancelled, 200));
    QVERIFY(worker.isFinished());
}

QTEST_MAIN(TestProgressForm)
#include "tst_progress_form.moc"

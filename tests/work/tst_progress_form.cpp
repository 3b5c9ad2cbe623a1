#include "base/error.h"
#include "base/report.h"
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
#include <QScreen>
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
    void boxesStandInTheMiddle_data();
    void boxesStandInTheMiddle();
    void endWhileTheQuestionIsOpen();
    void errorEndsCancelled();
    void errorTextIsEscaped();
    void longTextsFitTheScreen_data();
    void longTextsFitTheScreen();
    void successOffersTheResult();
    void successWithFailuresWarns_data();
    void successWithFailuresWarns();
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
    QString asked;
    bool looksPressed = true;
    const OnModal<MessageBox> no([&](MessageBox &box) {
        asked = box.text();
        looksPressed = cancelButton(form)->isDown();
        QTest::mouseClick(box.button(QMessageBox::No), Qt::LeftButton);
    });
    QTest::mouseClick(cancelButton(form), Qt::LeftButton);
    QCOMPARE(asked, QStringLiteral("Are You Sure You Want To Cancel?"));
    QVERIFY2(!looksPressed, "the mouse goes up over the question");
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

void TestProgressForm::boxesStandInTheMiddle_data()
{
    QTest::addColumn<QRect>("window");
    QTest::newRow("of a large window") << QRect(100, 60, 600, 500);
    QTest::newRow("of a small window") << QRect(300, 200, 200, 100);
}

void TestProgressForm::boxesStandInTheMiddle()
{
    QFETCH(QRect, window);
    QWidget parent;
    parent.setGeometry(window);
    parent.show();
    QVERIFY(QTest::qWaitForWindowExposed(&parent));
    ProgressForm form({}, &parent);
    form.show();
    const auto distance = [&parent](const QWidget &box) {
        return (box.frameGeometry().center() - parent.geometry().center()).manhattanLength();
    };
    QVERIFY2(distance(form) <= 2, qPrintable(QString::number(distance(form))));
    int away = 100;
    const OnModal<MessageBox> look([&](MessageBox &box) {
        away = distance(box);
        QTest::mouseClick(box.button(QMessageBox::Ok), Qt::LeftButton);
    });
    form.succeed(QStringLiteral("Successfully extracted 3 Messages."));
    QVERIFY2(away <= 2, qPrintable(QString::number(away)));
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

void TestProgressForm::longTextsFitTheScreen_data()
{
    const QString hostile = QStringLiteral("<img src=\"file:///etc/hostname\">");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isCut");
    QTest::newRow("a name without a blank") << QString(1500, QLatin1Char('n')) << false;
    QTest::newRow("a text of a megabyte") << hostile.repeated(30'000) << true;
    QTest::newRow("a thousand lines") << QString(hostile + QLatin1Char('\n')).repeated(1000) << true;
}

void TestProgressForm::longTextsFitTheScreen()
{
    QFETCH(QString, text);
    QFETCH(bool, isCut);
    for (void (*show)(const QString &) : {showErrorBox, showWarningBox}) {
        QSize size;
        QString shown;
        QString whole;
        const OnModal<MessageBox> look([&](MessageBox &box) {
            size = box.frameSize();
            shown = box.text();
            whole = box.detailedText();
            QTest::mouseClick(box.button(QMessageBox::Ok), Qt::LeftButton);
        });
        show(text);
        const QSize screen = QGuiApplication::primaryScreen()->availableSize();
        QVERIFY2(size.width() <= screen.width() && size.height() <= screen.height(),
                 qPrintable(QStringLiteral("%1 x %2").arg(size.width()).arg(size.height())));
        QVERIFY(shown.size() < 20'000 && (show == showWarningBox || !shown.contains(QStringLiteral("<img"))));
        QCOMPARE(whole, isCut ? text : QString());
    }
}

void TestProgressForm::successOffersTheResult()
{
    ProgressForm form({});
    form.setResultToOpen(QStringLiteral("/nowhere"));
    form.show();
    bool offered = false;
    bool isClosed = false;
    const OnModal<MessageBox> answer([&](MessageBox &box) {
        offered = box.findChild<QPushButton *>(QStringLiteral("btnOpenResult")) != nullptr;
        QTest::keyClick(&box, Qt::Key_Escape);
        isClosed = !box.isVisible();
        QTest::mouseClick(box.button(QMessageBox::Ok), Qt::LeftButton);
    });
    form.succeed(QStringLiteral("Successfully extracted 3 Messages."));
    QVERIFY(offered);
    QVERIFY2(isClosed, "Escape does nothing to the box");
    QCOMPARE(form.result(), 1);
    QVERIFY(!form.isCancelled());
}

void TestProgressForm::successWithFailuresWarns_data()
{
    QTest::addColumn<IssueKind>("kind");
    QTest::addColumn<BoxIcon>("icon");
    QTest::newRow("a damaged row") << IssueKind::Damaged << BoxIcon::Warning;
    QTest::newRow("left out by a rule") << IssueKind::Hidden << BoxIcon::Information;
}

void TestProgressForm::successWithFailuresWarns()
{
    QFETCH(IssueKind, kind);
    QFETCH(BoxIcon, icon);
    Report report;
    report.add({.kind = kind, .what = "IDS_ISSUE_SYSTEM_ITEMS", .count = 2});
    auto worker = std::make_unique<ScriptedWorker>(
        [&report](Progress &, ScriptedWorker &self) { return self.endText(QStringLiteral("done"), report); });
    QString text;
    QImage picture;
    const OnModal<MessageBox> look([&](MessageBox &box) {
        text = box.text();
        picture = box.iconPixmap().toImage();
        QTest::mouseClick(box.button(QMessageBox::Ok), Qt::LeftButton);
    });
    QVERIFY(runJob(QString(), worker, nullptr));
    QVERIFY2(text.startsWith(QStringLiteral("done\n")) && text.contains(QStringLiteral("2 system items")),
             qPrintable(text));
    QCOMPARE(picture, boxPicture(icon, 1).toImage());
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

#include "app/item_model_bk.h"
#include "app/main_window.h"
#include "backup/cache_folder.h"
#include "base/app_folders.h"
#include "base/file_names.h"
#include "base/texts.h"
#include "resources/resources.h"
#include "support/modal.h"
#include "support/sample_backup.h"
#include "support/web_test_main.h"
#include "views/passcode_dlg.h"
#include "views/sms_main_form.h"
#include "work/progress_form.h"

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTreeView>

using namespace Qt::StringLiterals;

namespace {
QTreeView *treeOf(const MainWindow &window)
{
    return window.findChild<QTreeView *>(u"treeSources"_s);
}

int backupCount(const MainWindow &window)
{
    const QAbstractItemModel *model = treeOf(window)->model();
    return model->rowCount(model->index(0, 0));
}

/// A listed backup, or the node of one of its classes.
QModelIndex backupNode(const MainWindow &window, const QString &beginning = {})
{
    const QAbstractItemModel *model = treeOf(window)->model();
    const QModelIndex backup = model->index(0, 0, model->index(0, 0));
    for (int row = 0; !beginning.isEmpty() && row < model->rowCount(backup); ++row)
        if (model->index(row, 0, backup).data().toString().startsWith(beginning))
            return model->index(row, 0, backup);
    return beginning.isEmpty() ? backup : QModelIndex();
}

QAction *action(const MainWindow &window, const char *name)
{
    return window.findChild<QAction *>(QLatin1String(name));
}

SampleOptions encrypted()
{
    SampleOptions options;
    options.password = u"open sesame"_s;
    options.dpic = 50;
    options.iter = 20;
    return options;
}

/// The user clicks a node with the mouse.
void click(const MainWindow &window, const QModelIndex &node, Qt::MouseButton button = Qt::LeftButton)
{
    treeOf(window)->scrollTo(node);
    QTest::mouseClick(treeOf(window)->viewport(), button, {}, treeOf(window)->visualRect(node).center());
}

void giveThePassword(PasscodeDlg &dialog)
{
    dialog.findChild<QLineEdit *>(u"edPassword"_s)->setText(u"open sesame"_s);
    dialog.btnOKPressed();
}
} // namespace

class TestListedBackups : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void comesBackAtTheNextStart();
    void lockedAsksOnlyWhenOpened();
    void stoppedCountIsDoneAgain();
    void loadingFails();
    void vanishedBackup();
    void backupInTheMaking();
    void unlisted();
    void stoppedLoadKeepsNothing();
    void clearAll();
    void clearOne();
    void keepMessages();

private:
    std::unique_ptr<QTemporaryDir> m_home;
};

void TestListedBackups::initTestCase()
{
    initResources();
    installTexts();
}

void TestListedBackups::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    qputenv("HOME", m_home->path().toUtf8());
    forgetAppDataFolder();
}

void TestListedBackups::comesBackAtTheNextStart()
{
    const SampleBackup sample;
    const QString messages = u"SMS(%1)"_s.arg(sample.summary().counts.joinedMessages);
    {
        MainWindow window({});
        window.show();
        QVERIFY(window.loadBackup(sample.folder()));
    }
    MainWindow window({});
    window.show();
    QCOMPARE(backupCount(window), 1);
    QVERIFY(treeOf(window)->isExpanded(backupNode(window)));
    QCOMPARE(treeOf(window)->currentIndex(), backupNode(window));
    QVERIFY2(window.findChild<QPushButton *>(u"btnStartSample"_s)->isHidden(), "nobody needs a sample now");
    QVERIFY2(backupNode(window, messages).isValid(), "the counts of the last time");
    const auto node = static_cast<ItemModelBK *>(treeOf(window)->model())->bkNode(backupNode(window));
    QVERIFY2(!node->backup()->manifest().hasIndex(), "nothing is read before somebody looks");
    treeOf(window)->setCurrentIndex(backupNode(window, messages));
    QTRY_VERIFY(window.findChild<SMSMainForm *>());
    QTRY_VERIFY(action(window, "IDS_EXPORT")->isEnabled());
    const AnswerBox refused;
    QVERIFY2(!window.loadBackup(sample.folder()), "it is there already");
}

void TestListedBackups::lockedAsksOnlyWhenOpened()
{
    const SampleBackup sample(encrypted());
    {
        MainWindow window({});
        window.show();
        const OnModal<PasscodeDlg> unlock(giveThePassword);
        QVERIFY(window.loadBackup(sample.folder()));
    }
    MainWindow window({});
    window.show();
    QCOMPARE(backupCount(window), 1);
    {
        const OnModal<PasscodeDlg> unasked([](PasscodeDlg &dialog) { dialog.reject(); });
        for (int row = 0; row < 5; ++row)
            QTest::keyClick(treeOf(window), Qt::Key_Down);
        click(window, backupNode(window, u"Notes"_s), Qt::RightButton);
        QCoreApplication::processEvents();
        QVERIFY(!unasked.wasShown());
        QCOMPARE(treeOf(window)->currentIndex(), backupNode(window, u"Notes"_s));
        QVERIFY(window.findChild<QLabel *>(u"lbBKName"_s)->isVisible());
        QVERIFY(window.findChild<QLabel *>(u"lbStatus"_s)->text().startsWith(u"Locked."_s));
    }
    {
        const OnModal<PasscodeDlg> giveUp([](PasscodeDlg &dialog) { dialog.reject(); });
        click(window, backupNode(window, u"Notes"_s));
        QTRY_VERIFY(giveUp.wasShown());
        QTRY_COMPARE(treeOf(window)->currentIndex(), backupNode(window));
    }
    treeOf(window)->setCurrentIndex(backupNode(window, u"SMS"_s));
    const OnModal<PasscodeDlg> unlock(giveThePassword);
    QTest::keyClick(treeOf(window), Qt::Key_Return);
    QTRY_VERIFY(window.findChild<SMSMainForm *>());
    QCOMPARE(treeOf(window)->currentIndex(), backupNode(window, u"SMS"_s));
}

void TestListedBackups::stoppedCountIsDoneAgain()
{
    const SampleBackup sample;
    BackupList().addBackup(backupUid(sample.folder()), sample.folder());
    MainWindow window({});
    window.show();
    const OpenBackupPtr backup =
        static_cast<ItemModelBK *>(treeOf(window)->model())->bkNode(backupNode(window))->backup();
    NoProgress nobody;
    backup->manifest().buildIndex(nobody);
    {
        const BackupUse turn(*backup, nobody); // keeps the worker from counting before it is stopped
        const OnModal<ProgressForm> stop([](ProgressForm &progress) {
            const AnswerBox yes(QMessageBox::Yes);
            progress.cancel();
        });
        treeOf(window)->setCurrentIndex(backupNode(window, u"Contacts"_s));
        QTRY_VERIFY(stop.wasShown());
        QTRY_COMPARE(treeOf(window)->currentIndex(), backupNode(window));
    }
    QVERIFY(backupNode(window, u"Contacts(\u2026)"_s).isValid());
    treeOf(window)->setCurrentIndex(backupNode(window, u"Contacts"_s));
    QTRY_VERIFY(backupNode(window, u"Contacts(%1)"_s.arg(sample.summary().counts.contacts)).isValid());
}

void TestListedBackups::loadingFails()
{
    const SampleBackup sample;
    {
        MainWindow window({});
        window.show();
        QVERIFY(window.loadBackup(sample.folder()));
    }
    QFile catalogue(sample.folder() + u"/Manifest.db"_s);
    QVERIFY(catalogue.open(QIODevice::WriteOnly) && catalogue.write(QByteArray(5000, 'x')) > 0);
    catalogue.close();
    MainWindow window({});
    window.show();
    const AnswerBox error;
    treeOf(window)->setCurrentIndex(backupNode(window, u"Notes"_s));
    QTRY_VERIFY(error.text().contains(u"Manifest.db"_s));
    QTRY_COMPARE(treeOf(window)->currentIndex(), backupNode(window));
}

// Its disk may be plugged in again: it stays, with its cache, until the user takes it off the list.
void TestListedBackups::vanishedBackup()
{
    const SampleBackup sample;
    const QString cache = cacheFolderPath(backupUid(sample.folder()));
    const QString elsewhere = sample.folder() + u".elsewhere"_s;
    {
        MainWindow window({});
        window.show();
        QVERIFY(window.loadBackup(sample.folder()));
    }
    QVERIFY(QFile::rename(sample.folder(), elsewhere));
    {
        MainWindow window({});
        window.show();
        QCOMPARE(backupCount(window), 1);
        QVERIFY(backupNode(window).data().toString().endsWith(u"(folder not found)"_s));
        QVERIFY(backupNode(window).data(Qt::ForegroundRole).isValid());
        const AnswerBox error;
        QVERIFY(!window.loadBackup(sample.folder()));
        QVERIFY(QFile::exists(cache));
        QVERIFY(QFile::rename(elsewhere, sample.folder()));
        click(window, backupNode(window));
        QTRY_VERIFY(!backupNode(window).data(Qt::ForegroundRole).isValid());
        QCOMPARE(backupCount(window), 1);
    }
    QVERIFY(QFile::rename(sample.folder(), elsewhere));
    {
        MainWindow window({});
        window.show();
        action(window, "IDS_MI_UNMOUNT_BACKUP")->trigger();
        QCOMPARE(backupCount(window), 0);
    }
    QVERIFY(QFile::rename(elsewhere, sample.folder()));
    QVERIFY(WorkerThread::waitForLetGo(5000));
    QVERIFY(!QFile::exists(cache));
    QCOMPARE(backupCount(MainWindow({})), 0);
}

void TestListedBackups::backupInTheMaking()
{
    const SampleBackup sample;
    {
        MainWindow window({});
        window.show();
        QVERIFY(window.loadBackup(sample.folder()));
    }
    const QString manifest = sample.folder() + u"/Manifest.plist"_s;
    QVERIFY(QFile::rename(manifest, manifest + u".new"_s));
    {
        MainWindow window({});
        QVERIFY(backupNode(window).data().toString().endsWith(u"(cannot be read)"_s));
        QVERIFY(backupNode(window).data(Qt::ToolTipRole).toString().contains(u"Manifest.plist"_s));
        // Whoever loads it by hand when it is whole has it once.
        QVERIFY(QFile::rename(manifest + u".new"_s, manifest));
        window.show();
        QVERIFY(window.loadBackup(sample.folder()));
        QCOMPARE(backupCount(window), 1);
    }
    QCOMPARE(backupCount(MainWindow({})), 1);
}

void TestListedBackups::unlisted()
{
    const SampleBackup sample;
    {
        MainWindow window({});
        window.show();
        QVERIFY(window.loadBackup(sample.folder()));
        treeOf(window)->setCurrentIndex(backupNode(window, u"SMS"_s));
        QTRY_VERIFY(action(window, "IDS_EXPORT")->isEnabled());
        QVERIFY(cacheSizeOf(backupUid(sample.folder())) > 0);
        action(window, "IDS_MI_UNMOUNT_BACKUP")->trigger();
        QCOMPARE(backupCount(window), 0);
        QCOMPARE(cacheSizeOf(backupUid(sample.folder())), 0);
    }
    QVERIFY(WorkerThread::waitForLetGo(5000));
    QVERIFY(!QFile::exists(cacheFolderPath(backupUid(sample.folder()))));
    QCOMPARE(backupCount(MainWindow({})), 0);
}

void TestListedBackups::stoppedLoadKeepsNothing()
{
    const SampleBackup sample(encrypted());
    MainWindow window({});
    window.show();
    const OnModal<PasscodeDlg> giveUp([](PasscodeDlg &dialog) { dialog.reject(); });
    QVERIFY(!window.loadBackup(sample.folder()));
    QVERIFY(!QFile::exists(cacheFolderPath(backupUid(sample.folder()))));
}

void TestListedBackups::clearAll()
{
    const SampleBackup sample;
    MainWindow window({});
    window.show();
    QVERIFY(window.loadBackup(sample.folder()));
    treeOf(window)->setCurrentIndex(backupNode(window, u"Contacts"_s));
    QTRY_VERIFY(action(window, "IDS_EXPORT")->isEnabled());
    const QString another = cacheFolderPath(u"another"_s);
    QVERIFY(QDir().mkpath(another + u"/Library/SMS"_s));
    {
        const AnswerBox no(QMessageBox::No);
        action(window, "IDS_MI_CLEAR_CACHES")->trigger();
        QVERIFY(no.text().contains(QLocale().formattedDataSize(cacheSize())));
        QVERIFY(QFile::exists(another));
    }
    std::unique_ptr<AnswerBox> done;
    const OnModal<MessageBox> yes([&done](MessageBox &box) {
        done = std::make_unique<AnswerBox>();
        QTest::mouseClick(box.button(QMessageBox::Yes), Qt::LeftButton);
    });
    action(window, "IDS_MI_CLEAR_CACHES")->trigger();
    QVERIFY(done && done->text() == u"Successfully cleared cache files."_s);
    QCOMPARE(cacheSize(), 0);
    QVERIFY(!QFile::exists(another));
    {
        const AnswerBox nothingLeft;
        action(window, "IDS_MI_CLEAR_CACHES")->trigger();
        QCOMPARE(nothingLeft.text(), u"Successfully cleared cache files."_s);
    }
    action(window, "IDS_RELOAD")->trigger();
    QTRY_VERIFY(cacheSize() > 0);
    QCOMPARE(backupCount(MainWindow({})), 1);
}

void TestListedBackups::clearOne()
{
    const SampleBackup sample;
    const SampleBackup other;
    MainWindow window({});
    window.show();
    QVERIFY(window.loadBackup(other.folder()));
    QVERIFY(window.loadBackup(sample.folder()));
    const qint64 bytes = cacheSizeOf(backupUid(sample.folder()));
    QVERIFY(bytes > 0);
    std::unique_ptr<AnswerBox> done;
    QString question;
    const OnModal<MessageBox> yes([&](MessageBox &box) {
        question = box.text();
        done = std::make_unique<AnswerBox>();
        QTest::mouseClick(box.button(QMessageBox::Yes), Qt::LeftButton);
    });
    action(window, "IDS_MI_CLEAR_CACHE_OF_BACKUP")->trigger();
    QVERIFY(question.contains(QLocale().formattedDataSize(bytes)));
    QVERIFY(done && done->text() == u"Successfully cleared cache files."_s);
    QCOMPARE(cacheSizeOf(backupUid(sample.folder())), 0);
    QVERIFY(cacheSizeOf(backupUid(other.folder())) > 0);
}

void TestListedBackups::keepMessages()
{
    const SampleBackup sample;
    MainWindow window({});
    window.show();
    QVERIFY(window.loadBackup(sample.folder()));
    const QString attachments = cacheFolderPath(backupUid(sample.folder())) + u"/Library/SMS/Attachments"_s;
    QVERIFY2(!QFile::exists(attachments), "loading copies no attachment");
    action(window, "IDS_MI_CACHE_MESSAGES")->trigger();
    QVERIFY(QFile::exists(attachments));
}

QB_WEB_TEST_MAIN(TestListedBackups)
#include "tst_listed_backups.moc"

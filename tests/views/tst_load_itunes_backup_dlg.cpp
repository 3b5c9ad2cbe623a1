#include "base/app_folders.h"
#include "base/texts.h"
#include "resources/resources.h"
#include "support/modal.h"
#include "support/sample_backup.h"
#include "views/load_itunes_backup_dlg.h"
#include "work/make_sample_thread.h"

#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QTest>

namespace {
QListView *listOf(const LoadItunesBackupDlg &dialog)
{
    return dialog.findChild<QListView *>(QStringLiteral("listBackups"));
}

QPushButton *button(const LoadItunesBackupDlg &dialog, const char *name)
{
    return dialog.findChild<QPushButton *>(QLatin1String(name));
}
} // namespace

class TestLoadItunesBackupDlg : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void listsAndLoads();
    void nothingSelected();
    void loadedAlready();
    void backupThatCannotBeReadIsTold();
    void addOther();
    void emptyOffersASample();
};

void TestLoadItunesBackupDlg::initTestCase()
{
    initResources();
    installTexts();
}

void TestLoadItunesBackupDlg::listsAndLoads()
{
    const SampleBackup sample;
    QVERIFY(QDir(sample.parentFolder()).mkdir(QStringLiteral("no backup")));
    LoadItunesBackupDlg dialog({QStringLiteral("/nowhere"), sample.parentFolder()}, {});
    dialog.show();
    QCOMPARE(listOf(dialog)->model()->rowCount(), 1);
    QVERIFY(listOf(dialog)->isVisible());
    QTest::mouseClick(button(dialog, "btnLoad"), Qt::LeftButton);
    QCOMPARE(dialog.result(), static_cast<int>(QDialog::Accepted));
    QCOMPARE(dialog.selectedFolder(), sample.folder());
}

void TestLoadItunesBackupDlg::nothingSelected()
{
    const SampleBackup sample;
    LoadItunesBackupDlg dialog({sample.parentFolder()}, {});
    dialog.show();
    listOf(dialog)->setCurrentIndex({});
    const AnswerBox box;
    dialog.btnLoadClicked();
    QCOMPARE(box.text(), QStringLiteral("Need to select an iTunes Backup to continue."));
    QVERIFY(dialog.isVisible());
    QTest::mouseClick(button(dialog, "btnCancel"), Qt::LeftButton);
    QCOMPARE(dialog.result(), static_cast<int>(QDialog::Rejected));
}

void TestLoadItunesBackupDlg::loadedAlready()
{
    const SampleBackup sample;
    LoadItunesBackupDlg dialog({sample.parentFolder()}, {backupUid(sample.folder())});
    dialog.show();
    const AnswerBox load;
    dialog.btnLoadClicked();
    QCOMPARE(load.text(), QStringLiteral("This iTunes Backup has been listed on the left."));
    const AnswerBox add;
    dialog.addFolder(sample.folder());
    QCOMPARE(add.text(), load.text());
    QVERIFY(dialog.isVisible());
    QCOMPARE(listOf(dialog)->model()->rowCount(), 1);
}

void TestLoadItunesBackupDlg::backupThatCannotBeReadIsTold()
{
    SampleOptions options;
    options.password = QStringLiteral("pw");
    const SampleBackup sample(options);
    QFile description(sample.folder() + QStringLiteral("/Manifest.plist"));
    QVERIFY(description.open(QIODevice::WriteOnly) && description.write("no list") > 0);
    description.close();
    LoadItunesBackupDlg dialog({sample.parentFolder()}, {});
    dialog.show();
    QCOMPARE(listOf(dialog)->model()->rowCount(), 0);
    const auto *notice = dialog.findChild<QLabel *>(QStringLiteral("lbNotice"));
    QVERIFY(notice->isVisible());
    QVERIFY2(notice->text().remove(QChar(0x200b)).contains(sample.folder()), qPrintable(notice->text()));
}

void TestLoadItunesBackupDlg::addOther()
{
    const SampleBackup sample;
    const SampleBackup other({}, QStringLiteral("other"));
    LoadItunesBackupDlg dialog({sample.parentFolder()}, {});
    dialog.show();
    dialog.addFolder(other.folder());
    QCOMPARE(listOf(dialog)->model()->rowCount(), 2);
    QCOMPARE(listOf(dialog)->currentIndex().row(), 1);
    dialog.addFolder(sample.parentFolder());
    QVERIFY2(listOf(dialog)->model()->rowCount() == 2, "the folder above leads to the backup that is listed");
    QCOMPARE(listOf(dialog)->currentIndex().row(), 0);

    QTemporaryDir empty;
    const AnswerBox refused;
    dialog.addFolder(empty.path());
    QVERIFY(refused.text().contains(empty.path()));
    QCOMPARE(listOf(dialog)->model()->rowCount(), 2);
    QVERIFY(dialog.selectedMessageFile().isEmpty());

    QFile messages(empty.filePath(QStringLiteral("chat.db")));
    QVERIFY(messages.open(QIODevice::WriteOnly));
    dialog.addFolder(empty.path());
    QCOMPARE(dialog.selectedMessageFile(), messages.fileName());
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
}

void TestLoadItunesBackupDlg::emptyOffersASample()
{
    QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    forgetAppDataFolder();
    const auto titleOf = [](const LoadItunesBackupDlg &dialog) {
        return dialog.findChild<QLabel *>(QStringLiteral("lbStateTitle"))->text();
    };
    LoadItunesBackupDlg dialog({sampleBackupsFolder()}, {});
    dialog.show();
    QVERIFY(!listOf(dialog)->isVisible());
    QCOMPARE(titleOf(dialog), QStringLiteral("No iTunes Backup was found."));
    const LoadItunesBackupDlg another({sampleBackupsFolder()}, {QStringLiteral("one that is open")});
    QCOMPARE(titleOf(another), QStringLiteral("No other iTunes Backup was found."));
    QPushButton *offer = button(dialog, "btnStateAction");
    QVERIFY(offer->isVisible());
    QTest::mouseClick(offer, Qt::LeftButton);
    QTRY_COMPARE(listOf(dialog)->model()->rowCount(), 1);
    QVERIFY(listOf(dialog)->isVisible());
    QTest::mouseClick(button(dialog, "btnLoad"), Qt::LeftButton);
    QVERIFY(dialog.selectedFolder().startsWith(home.path()));
    QVERIFY(isBackupFolder(dialog.selectedFolder()));
    forgetAppDataFolder();
}

QTEST_MAIN(TestLoadItunesBackupDlg)
#include "tst_load_itunes_backup_dlg.moc"

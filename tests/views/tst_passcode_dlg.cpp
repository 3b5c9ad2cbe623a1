#include "base/texts.h"
#include "resources/resources.h"
#include "support/modal.h"
#include "support/sample_backup.h"
#include "views/passcode_dlg.h"
#include "work/worker_thread.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

namespace {
const QString password = QStringLiteral("Füße 1");

SampleOptions encryptedOptions()
{
    SampleOptions options;
    options.password = password;
    options.dpic = 50;
    options.iter = 20;
    return options;
}

struct Widgets
{
    explicit Widgets(PasscodeDlg &dialog)
        : edit(dialog.findChild<QLineEdit *>(QStringLiteral("edPassword"))),
          message(dialog.findChild<QLabel *>(QStringLiteral("lbMessage"))),
          ok(dialog.findChild<QPushButton *>(QStringLiteral("btnOK")))
    {
    }
    void enter(const QString &text) const
    {
        edit->setText(text);
        QTest::mouseClick(ok, Qt::LeftButton);
    }
    QLineEdit *edit;
    QLabel *message;
    QPushButton *ok;
};

void overwrite(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}
} // namespace

class TestPasscodeDlg : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void emptyWrongRight();
    void cancelWhileChecking();
    void damagedKeybagAndCatalogue();
};

void TestPasscodeDlg::initTestCase()
{
    initResources();
    installTexts();
}

void TestPasscodeDlg::emptyWrongRight()
{
    const SampleBackup sample(encryptedOptions());
    const OpenBackupPtr backup = sample.described();
    PasscodeDlg dialog(backup);
    const Widgets widgets(dialog);
    dialog.show();
    QCOMPARE(widgets.edit->echoMode(), QLineEdit::Password);

    widgets.enter({});
    QCOMPARE(widgets.message->text(), QStringLiteral("Password is required."));
    widgets.enter(QStringLiteral("wrong"));
    QVERIFY2(!widgets.ok->isEnabled(), "one try at a time");
    QTRY_COMPARE(widgets.message->text(), QStringLiteral("Invalid password."));
    QVERIFY(dialog.isVisible());
    QVERIFY(!backup->manifest().isUnlocked());
    QTest::keyClick(widgets.edit, Qt::Key_X);
    QCOMPARE(widgets.message->text(), QString());
    widgets.enter(password);
    QTRY_VERIFY(!dialog.isVisible());
    QCOMPARE(dialog.result(), static_cast<int>(QDialog::Accepted));
    QVERIFY(backup->manifest().isUnlocked());
}

void TestPasscodeDlg::cancelWhileChecking()
{
    const SampleBackup sample(encryptedOptions());
    {
        PasscodeDlg dialog(sample.described());
        const Widgets widgets(dialog);
        dialog.show();
        widgets.enter(password);
        QTest::mouseClick(dialog.findChild<QPushButton *>(QStringLiteral("btnCancel")), Qt::LeftButton);
        QVERIFY(!dialog.isVisible());
        QCOMPARE(dialog.result(), static_cast<int>(QDialog::Rejected));
    }
    QVERIFY(WorkerThread::waitForLetGo(10000));
    QVERIFY2(!QFile::exists(sample.folder() + QStringLiteral("/Manifest-decrypted.db")),
             "what the forgotten try decrypted is gone");
}

// Three ends, three messages: a wrong password is told above, these two are no question of the password.
void TestPasscodeDlg::damagedKeybagAndCatalogue()
{
    const SampleBackup sample(encryptedOptions());
    QStringList told;
    const auto tryPassword = [&told](const OpenBackupPtr &backup) {
        PasscodeDlg dialog(backup);
        const Widgets widgets(dialog);
        dialog.show();
        const AnswerBox box;
        widgets.enter(password);
        QTRY_VERIFY(!dialog.isVisible());
        QCOMPARE(dialog.result(), static_cast<int>(QDialog::Rejected));
        told << box.text();
    };
    overwrite(sample.folder() + QStringLiteral("/Manifest.db"), QByteArray(4096, 'x'));
    tryPassword(sample.described());

    const QString plist = sample.folder() + QStringLiteral("/Manifest.plist");
    QFile file(plist);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QByteArray bytes = file.readAll();
    file.close();
    const qsizetype salt = bytes.indexOf("SALT");
    QVERIFY(salt > 0);
    bytes.replace(salt, 4, "TLAS");
    overwrite(plist, bytes);
    tryPassword(sample.described());

    QVERIFY(!told.at(0).isEmpty() && !told.at(1).isEmpty());
    QVERIFY(told.at(0) != told.at(1));
    QVERIFY(told.at(0).contains(QStringLiteral("Manifest.db")));
    QVERIFY(!told.join(QString()).contains(QStringLiteral("Invalid password")));
}

QTEST_MAIN(TestPasscodeDlg)
#include "tst_passcode_dlg.moc"

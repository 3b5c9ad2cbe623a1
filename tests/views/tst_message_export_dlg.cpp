#include "base/texts.h"
#include "resources/resources.h"
#include "support/modal.h"
#include "views/message_export_dlg.h"

#include <QLineEdit>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>

class TestMessageExportDlg : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void proposedName();
    void formatChangesTheTarget();
    void refuses_data();
    void refuses();
    void replacesOnlyWhenAsked();
};

void TestMessageExportDlg::initTestCase()
{
    initResources();
    installTexts();
}

void TestMessageExportDlg::proposedName()
{
    QCOMPARE(proposedExportName(QDateTime(QDate(2024, 1, 31), QTime(23, 5, 9))),
             QStringLiteral("mms(20240131-230509)"));
}

void TestMessageExportDlg::formatChangesTheTarget()
{
    MessageExportDlg dialog(QStringLiteral("Export 2 conversations"));
    QVERIFY(dialog.choice().format == MessageFormat::Html);
    dialog.setChoice({MessageFormat::Html, QStringLiteral("/tmp/mms(1.2)")});
    const auto pick = [&dialog](const QString &text) {
        for (QRadioButton *button : dialog.findChildren<QRadioButton *>())
            if (button->text() == text)
                button->setChecked(true);
    };
    pick(QStringLiteral("Plain text"));
    QCOMPARE(dialog.choice().target, QStringLiteral("/tmp/mms(1.2).txt"));
    pick(QStringLiteral("Table (CSV)"));
    QCOMPARE(dialog.choice().target, QStringLiteral("/tmp/mms(1.2).csv"));
    QVERIFY(dialog.choice().format == MessageFormat::Csv);
    pick(QStringLiteral("Web pages (HTML)"));
    QCOMPARE(dialog.choice().target, QStringLiteral("/tmp/mms(1.2)"));
}

void TestMessageExportDlg::refuses_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("nothing") << "  ";
    QTest::newRow("no absolute path") << "mms.txt";
    QTest::newRow("a folder where a file is asked for") << QDir::tempPath();
}

void TestMessageExportDlg::refuses()
{
    QFETCH(QString, target);
    MessageExportDlg dialog({});
    dialog.show();
    dialog.setChoice({MessageFormat::Text, {}});
    dialog.findChild<QLineEdit *>(QStringLiteral("edTarget"))->setText(target);
    const AnswerBox warning;
    dialog.accept();
    QVERIFY(warning.wasShown());
    QVERIFY(dialog.isVisible());
}

void TestMessageExportDlg::replacesOnlyWhenAsked()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("old.txt")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    MessageExportDlg dialog({});
    dialog.show();
    dialog.setChoice({MessageFormat::Text, file.fileName()});
    {
        const AnswerBox no(QMessageBox::No);
        dialog.accept();
        QVERIFY(no.text().contains(file.fileName()));
        QVERIFY(dialog.isVisible());
    }
    const AnswerBox yes(QMessageBox::Yes);
    dialog.accept();
    QVERIFY(!dialog.isVisible());
    QCOMPARE(dialog.result(), static_cast<int>(QDialog::Accepted));
}

QTEST_MAIN(TestMessageExportDlg)
#include "tst_message_export_dlg.moc"

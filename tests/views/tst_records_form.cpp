#include "base/texts.h"
#include "personal/personal_source.h"
#include "resources/resources.h"
#include "support/modal.h"
#include "support/sample_backup.h"
#include "views/item_model_bookmarks.h"
#include "views/item_model_records.h"
#include "views/record_roles.h"
#include "views/records_main_form.h"
#include "views/safe_text_browser.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QCalendarWidget>
#include <QFile>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QTreeView>

namespace {
QTreeView *listOf(const RecordsMainForm &form)
{
    return form.findChild<QTreeView *>(QStringLiteral("listRecords"));
}

constexpr DataClass viewedClasses[] = {DataClass::Contacts, DataClass::Calls, DataClass::Notes,
                                       DataClass::Calendar, DataClass::Bookmarks};
} // namespace

/// The views of contacts, calls, notes, calendar and bookmarks.
class TestRecordsForm : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void models_data() { classRows(); }
    void models();
    void durations();
    void filterAndDetail();
    void monthSelectsDays();
    void exports();
    void emptySource();
    void saveShowAndDelete_data() { classRows(); }
    void saveShowAndDelete();
    void richTextFetchesNothing();

private:
    static void classRows();
};

void TestRecordsForm::initTestCase()
{
    initResources();
    installTexts();
}

void TestRecordsForm::classRows()
{
    QTest::addColumn<DataClass>("dataClass");
    for (const DataClass dataClass : viewedClasses)
        QTest::newRow(qPrintable(dataClassName(dataClass))) << dataClass;
}

void TestRecordsForm::models()
{
    QFETCH(DataClass, dataClass);
    const SampleBackup sample;
    NoProgress progress;
    const RecordsPtr records = readRecords({sample.opened(), {}}, dataClass, progress);
    std::unique_ptr<QAbstractItemModel> model;
    if (dataClass == DataClass::Bookmarks)
        model = std::make_unique<ItemModelBookmarks>(records);
    else
        model = std::make_unique<ItemModelRecords>(makeRecordTable(dataClass, records));
    const QAbstractItemModelTester tester(model.get(),
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    QVERIFY(model->rowCount() > 1);
    for (int column = 0; column < model->columnCount(); ++column)
        QVERIFY(!model->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString().isEmpty());
    QVERIFY(!model->index(0, 0).data(RecordRole::Detail).toString().isEmpty());
}

void TestRecordsForm::durations()
{
    QCOMPARE(durationText(0), QStringLiteral("0:00"));
    QCOMPARE(durationText(125), QStringLiteral("2:05"));
    QCOMPARE(durationText(7200), QStringLiteral("120:00"));
}

void TestRecordsForm::filterAndDetail()
{
    const SampleBackup sample;
    RecordsMainForm form({sample.opened(), {}}, DataClass::Contacts);
    form.show();
    QVERIFY2(!form.exportAction()->isEnabled(), "nothing to export while it loads");
    QTRY_VERIFY(listOf(form)->isVisible());
    const int all = listOf(form)->model()->rowCount();
    QVERIFY(all > 3);
    auto *detail = form.findChild<SafeTextBrowser *>();
    QVERIFY(detail->toPlainText().contains(listOf(form)->model()->index(0, 0).data().toString()));
    QVERIFY(form.saveAction());
    QVERIFY(!form.removeAction());
    form.filterEdit()->setText(QStringLiteral("nobody is called this"));
    QCOMPARE(listOf(form)->model()->rowCount(), 0);
    form.filterEdit()->setText(QStringLiteral("example.org"));
    QVERIFY(listOf(form)->model()->rowCount() > 0 && listOf(form)->model()->rowCount() < all);
}

void TestRecordsForm::monthSelectsDays()
{
    const SampleBackup sample;
    RecordsMainForm form({sample.opened(), {}}, DataClass::Calendar);
    form.show();
    QTRY_VERIFY(listOf(form)->isVisible());
    auto *month = form.findChild<QCalendarWidget *>();
    const auto records = listOf(form)->model();
    const QModelIndex last = records->index(records->rowCount() - 1, 0);
    const QDate day = last.sibling(last.row(), 2).data(RecordRole::Sort).toDateTime().toLocalTime().date();
    QVERIFY(month->dateTextFormat(day).fontWeight() == QFont::Bold);
    month->setSelectedDate(day);
    emit month->clicked(day);
    QVERIFY(listOf(form)->selectionModel()->isRowSelected(last.row(), {}));
}

void TestRecordsForm::exports()
{
    const SampleBackup sample;
    RecordsMainForm form({sample.opened(), {}}, DataClass::Calls);
    form.show();
    QTRY_VERIFY(listOf(form)->isVisible());
    listOf(form)->selectAll();
    QTemporaryDir target;
    const QString path = target.filePath(QStringLiteral("calls.csv"));
    const AnswerBox done;
    QVERIFY(form.exportTo(QStringLiteral("csv"), path));
    QVERIFY(done.text().startsWith(QStringLiteral("Successfully extracted ")));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll().count('\n'), listOf(form)->model()->rowCount() + 1);
}

void TestRecordsForm::emptySource()
{
    QTemporaryDir folder;
    RecordsMainForm form({nullptr, folder.path()}, DataClass::Notes);
    form.show();
    QTRY_COMPARE(form.status(), QStringLiteral("There are no notes here."));
    QVERIFY(!form.exportAction()->isEnabled());
    QVERIFY(!form.saveAction());
}

void TestRecordsForm::saveShowAndDelete()
{
    QFETCH(DataClass, dataClass);
    const SampleBackup sample;
    QTemporaryDir parent;
    const QString folder = parent.filePath(QStringLiteral("Family"));
    RecordsMainForm form({sample.opened(), {}}, dataClass);
    form.show();
    QTRY_VERIFY(listOf(form)->isVisible());
    QSignalSpy changed(&form, &RecordsMainForm::storeChanged);
    for (int run = 0; run < 2; ++run) {
        const AnswerBox done;
        QVERIFY(form.saveInto(folder));
        QVERIFY(done.text().startsWith(QStringLiteral("Successfully backup ")));
    }
    QCOMPARE(changed.size(), 2);
    const qint64 saved = openLocalRecords(folder)->count(dataClass);
    QVERIFY(saved > 1);

    RecordsMainForm local({nullptr, folder}, dataClass);
    local.show();
    QTRY_VERIFY(listOf(local)->isVisible());
    listOf(local)->selectionModel()->clear();
    listOf(local)->setCurrentIndex(listOf(local)->model()->index(0, 0));
    QVERIFY(local.removeAction()->isEnabled());
    {
        const AnswerBox no(QMessageBox::No);
        local.removeAction()->trigger();
        QVERIFY(no.wasShown());
        QCOMPARE(openLocalRecords(folder)->count(dataClass), saved);
    }
    // First the question, then the box that says it is done.
    QStringList boxes;
    QTimer answers;
    connect(&answers, &QTimer::timeout, this, [&boxes] {
        if (auto *box = qobject_cast<MessageBox *>(QApplication::activeModalWidget())) {
            boxes.append(box->text());
            QTest::mouseClick(box->buttons().first(), Qt::LeftButton);
        }
    });
    answers.start(1);
    local.removeAction()->trigger();
    QCOMPARE(boxes.size(), 2);
    QVERIFY(openLocalRecords(folder)->count(dataClass) < saved);
}

void TestRecordsForm::richTextFetchesNothing()
{
    QTemporaryDir folder;
    QFile secret(folder.filePath(QStringLiteral("secret.txt")));
    QVERIFY(secret.open(QIODevice::WriteOnly));
    class Probe : public SafeTextBrowser
    {
    public:
        using SafeTextBrowser::loadResource;
    } browser;
    const auto load = [&](const QString &address) {
        return browser.loadResource(QTextDocument::ImageResource, QUrl(address));
    };
    QVERIFY(!load(QStringLiteral("http://server/p.png")).isValid());
    QVERIFY(!load(QUrl::fromLocalFile(secret.fileName()).toString()).isValid());
    QVERIFY(!load(QStringLiteral("qrc:/res/help.png")).isValid());
    browser.setHtml(QStringLiteral("<script>alert(1)</script><a href=\"file:///etc\">x</a>"));
    QVERIFY(!browser.toPlainText().contains(QStringLiteral("alert")));
    QVERIFY(!browser.openLinks());
}

QTEST_MAIN(TestRecordsForm)
#include "tst_records_form.moc"

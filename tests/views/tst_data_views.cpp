#include "base/app_folders.h"
#include "base/apple_time.h"
#include "base/texts.h"
#include "resources/resources.h"
#include "sqlite/sqlite3_db.h"
#include "support/modal.h"
#include "support/sample_backup.h"
#include "support/web_test_main.h"
#include "views/bk_desc_form.h"
#include "views/conversation_summary.h"
#include "views/conversation_view.h"
#include "views/date_range_edit.h"
#include "views/file_sys_main_form.h"
#include "views/item_model_messages.h"
#include "views/item_model_sms.h"
#include "views/message_export_dlg.h"
#include "views/photos_main_form.h"
#include "views/sms_main_form.h"
#include "views/state_stack.h"
#include "work/load_bk_thread.h"
#include "work/progress_form.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDirIterator>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPrinter>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <QTreeView>

namespace {
QTreeView *listOf(const SMSMainForm &form)
{
    return form.findChild<QTreeView *>(QStringLiteral("listConversations"));
}

bool isLoaded(const SMSMainForm &form)
{
    return listOf(form)->isVisible();
}

QString labelText(const QWidget &form, const char *name)
{
    const auto *label = form.findChild<QLabel *>(QLatin1String(name));
    return label ? label->text() : QString();
}

QString contentPath(const SampleBackup &sample)
{
    const QString id =
        sample.summary().file(QStringLiteral("HomeDomain"), QStringLiteral("Library/SMS/sms.db"))->fileId;
    return QStringLiteral("%1/%2/%3").arg(sample.folder(), id.left(2), id);
}

QDate dayOf(qint64 appleSeconds)
{
    return QDateTime::fromSecsSinceEpoch(unixFromApple(appleSeconds)).date();
}

/// The day with most messages, which is not the only one, and how many are of it.
std::pair<QDate, qint64> busiestDay(const SampleBackup &sample)
{
    NoProgress nobody;
    const LoadedMessagesPtr messages = loadMessages({sample.opened()}, nobody);
    QMap<QDate, QSet<qint64>> byDay;
    for (const MessageRef &ref : messages->database->select({}, INT64_MIN, INT64_MAX))
        byDay[dayOf(ref.message->date)].insert(ref.message->rowid);
    const auto busiest = std::max_element(byDay.begin(), byDay.end(), [](const auto &one, const auto &other) {
        return one.size() < other.size();
    });
    if (byDay.size() < 2 || busiest->size() < 2)
        qFatal("the sample has too few messages");
    return {busiest.key(), busiest->size()};
}

QString conversationsText(int count)
{
    return QStringLiteral("%1 conversation%2").arg(count).arg(count == 1 ? QString() : QStringLiteral("s"));
}

QString messagesText(int count)
{
    return QStringLiteral("%1 message%2").arg(count).arg(count == 1 ? QString() : QStringLiteral("s"));
}

QStringList filesBelow(const QString &folder)
{
    QStringList files;
    QDirIterator walk(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (walk.hasNext())
        files << walk.next();
    return files;
}
} // namespace

class TestDataViews : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void description();
    void longNames_data();
    void longNames();
    void conversationsLoadAndFilter();
    void conversationsExport();
    void daysCountToTheirLastSecond_data();
    void daysCountToTheirLastSecond();
    void rangeIsWhatIsShown();
    void severalConversationsAreSummedUp();
    void rangeIsWhatIsActedOn();
    void textsAreSearched();
    void singleMessagesAreChosen();
    void newerVersionsAreTakenUnlessTheBoxIsCleared_data();
    void newerVersionsAreTakenUnlessTheBoxIsCleared();
    void savedAndDeletedInALocalDatabase();
    void attachmentsAreSaved();
    void selectionIsPrinted();
    void whatIsLeftOutCanBeShown();
    void damageIsTold();
    void exportCancelledLeavesNothing();
    void noMessages_data();
    void noMessages();
    void messagesFailAndTryAgain();
    void filesFilterAndStates();
    void filesExport();
    void severalFilesExport();
    void damagedCatalogueIsToldAboveTheFiles();
};

void TestDataViews::initTestCase()
{
    initResources();
    installTexts();
}

void TestDataViews::description()
{
    BackupInfo info;
    info.displayName = QStringLiteral("Ann's <iPhone>");
    info.folder = QStringLiteral("/a & b");
    info.productVersion = QStringLiteral("17.1");
    const BKDescForm form(info);
    QStringList texts;
    for (const QLabel *label : form.findChildren<QLabel *>())
        texts << label->text();
    QVERIFY(texts.contains(QStringLiteral("<b style=\"font-style:italic;\">IOS Version:</b>")));
    QVERIFY(texts.contains(QStringLiteral("17.1")));
    QVERIFY(texts.contains(QStringLiteral("Normal")));
    QCOMPARE(labelText(form, "lbPath"), QStringLiteral("<a href=\"/a &amp; b\">/a &amp; b</a>"));
}

void TestDataViews::longNames_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("shown");
    QTest::newRow("39") << 39 << 39;
    QTest::newRow("40 are shown whole") << 40 << 40;
    QTest::newRow("41 are cut") << 41 << 43;
}

void TestDataViews::longNames()
{
    QFETCH(int, length);
    QFETCH(int, shown);
    const QString name(length, QLatin1Char('n'));
    const QString text = shortBackupName(name);
    QCOMPARE(static_cast<int>(text.size()), shown);
    QCOMPARE(text.endsWith(QStringLiteral("...")), length > 40);
}

void TestDataViews::conversationsLoadAndFilter()
{
    const SampleBackup sample;
    SMSMainForm form({sample.opened()});
    form.show();
    QVERIFY2(!form.exportAction()->isEnabled(), "nothing to export while it loads");
    QVERIFY(!form.exportAction()->toolTip().isEmpty());
    QTRY_VERIFY(isLoaded(form));
    const int all = listOf(form)->model()->rowCount();
    QVERIFY(all > 3);
    QCOMPARE(form.exportAction()->text(), QStringLiteral("Export 1 conversation"));
    QVERIFY(!labelText(form, "lbConversation").isEmpty());
    QCOMPARE(form.status(), conversationsText(all) + QStringLiteral(", 1 selected"));

    listOf(form)->selectAll();
    QCOMPARE(form.exportAction()->text(), QStringLiteral("Export %1 conversations").arg(all));
    form.filterEdit()->setText(QStringLiteral("nobody is called this"));
    QCOMPARE(listOf(form)->model()->rowCount(), 0);
    QCOMPARE(labelText(form, "lbCount"), QStringLiteral("0 messages in ") + conversationsText(0));
    QVERIFY(!form.exportAction()->isEnabled());
    QTest::keyClick(form.filterEdit(), Qt::Key_Escape);
    QCOMPARE(form.filterEdit()->text(), QString());
    QCOMPARE(listOf(form)->model()->rowCount(), all);
    form.findChild<DateRangeEdit *>()->setRange(QDate(1999, 1, 1), QDate(1999, 12, 31));
    QCOMPARE(listOf(form)->model()->rowCount(), 0);
}

void TestDataViews::conversationsExport()
{
    const SampleBackup sample;
    SMSMainForm form({sample.opened()});
    form.show();
    QTRY_VERIFY(isLoaded(form));
    QTemporaryDir target;
    const AnswerBox done;
    QVERIFY(form.exportTo({MessageFormat::Text, target.filePath(QStringLiteral("one.txt"))}));
    QVERIFY(done.text().startsWith(QStringLiteral("Successfully extracted ")));
    QCOMPARE(filesBelow(target.path()), QStringList(target.filePath(QStringLiteral("one.txt"))));
}

void TestDataViews::daysCountToTheirLastSecond_data()
{
    QTest::addColumn<QDate>("day");
    QTest::addColumn<qint64>("from"); // seconds since 2001
    QTest::addColumn<int>("hours");
    QTest::newRow("an ordinary day") << QDate(2024, 2, 1) << qint64(728434800) << 24;
    QTest::newRow("summer time begins") << QDate(2024, 3, 31) << qint64(733532400) << 23;
    QTest::newRow("summer time ends") << QDate(2024, 10, 27) << qint64(751672800) << 25;
}

void TestDataViews::daysCountToTheirLastSecond()
{
    QFETCH(QDate, day);
    QFETCH(qint64, from);
    QFETCH(int, hours);
    DateRangeEdit edit;
    QVERIFY(edit.range().isAll());
    edit.setRange(day, day);
    QCOMPARE(edit.range(), (DateRange{from, from + 3600 * hours - 1}));
}

void TestDataViews::rangeIsWhatIsShown()
{
    const SampleBackup sample;
    const auto [day, ofDay] = busiestDay(sample);
    const auto isOfDay = [day = day](qint64 date) { return dayOf(date) == day; };
    SMSMainForm form({sample.opened()});
    form.show();
    QTRY_VERIFY(isLoaded(form));
    auto *range = form.findChild<DateRangeEdit *>();
    const DateRange bounds = form.findChild<ItemModelSms *>()->bounds();
    const auto edits = range->findChildren<QDateEdit *>();
    QCOMPARE(edits.first()->date(), dayOf(bounds.from)); // what is offered first
    QCOMPARE(edits.last()->date(), dayOf(bounds.to));
    const int all = listOf(form)->model()->rowCount();
    const QModelIndex newest = listOf(form)->model()->index(0, ItemModelSms::LastDate);
    QVERIFY(newest.data().toString().contains(QString::number(dayOf(bounds.to).day())));

    listOf(form)->selectAll();
    range->setRange(day, day);
    const QAbstractItemModel *shown = listOf(form)->model();
    QVERIFY(shown->rowCount() > 0 && shown->rowCount() < all);
    QVERIFY(
        labelText(form, "lbCount").endsWith(QStringLiteral(" in ") + conversationsText(shown->rowCount())));
    QCOMPARE(form.status(), QStringLiteral("%1, %2 selected")
                                .arg(conversationsText(shown->rowCount()))
                                .arg(shown->rowCount())); // those that are still shown stay selected
    qint64 counted = 0;
    for (int row = 0; row < shown->rowCount(); ++row) {
        listOf(form)->setCurrentIndex(shown->index(row, 0));
        const int messages = shown->index(row, ItemModelSms::Count).data().toInt();
        const QAbstractItemModel *list = form.findChild<QListView *>(QStringLiteral("listMessages"))->model();
        QCOMPARE(list->rowCount(), messages);
        const QString facts = labelText(*form.findChild<ConversationView *>(), "lbFacts");
        QVERIFY2(facts.contains(messagesText(messages)), qPrintable(facts));
        const auto *model = static_cast<const ItemModelMessages *>(list);
        for (int i = 0; i < messages; ++i)
            QVERIFY(isOfDay(model->message(i).message->date));
        counted += messages;
    }
    QVERIFY(counted >= ofDay);

    listOf(form)->setCurrentIndex(shown->index(0, 0));
    const QAbstractItemModel *list = form.findChild<QListView *>(QStringLiteral("listMessages"))->model();
    const int before = list->rowCount();
    range->setRange(dayOf(bounds.from), dayOf(bounds.to)); // the conversation that is open follows
    const QModelIndex open = listOf(form)->selectionModel()->selectedRows(ItemModelSms::Count).value(0);
    QVERIFY(list->rowCount() > before);
    QCOMPARE(list->rowCount(), open.data().toInt());
}

void TestDataViews::severalConversationsAreSummedUp()
{
    const SampleBackup sample;
    const auto [day, ofDay] = busiestDay(sample);
    SMSMainForm form({sample.opened()});
    form.show();
    QTRY_VERIFY(isLoaded(form));
    const auto *summary = form.findChild<ConversationSummary *>();
    const auto *newest = static_cast<ItemModelMessages *>(summary->findChild<QListView *>()->model());
    const auto dateOf = [newest](int row) { return newest->message(row).message->date; };
    listOf(form)->selectAll();
    const int before = newest->rowCount();
    QCOMPARE(dateOf(0), form.findChild<ItemModelSms *>()->bounds().to);
    for (int row = 1; row < before; ++row)
        QVERIFY(dateOf(row - 1) >= dateOf(row));
    form.findChild<DateRangeEdit *>()->setRange(day, day.addDays(1));
    listOf(form)->selectAll();
    QVERIFY(newest->rowCount() >= ofDay && newest->rowCount() < before);
    QVERIFY(dayOf(dateOf(0)) <= day.addDays(1) && dayOf(dateOf(newest->rowCount() - 1)) == day);
    QVERIFY2(labelText(*summary, "lbFacts").startsWith(messagesText(newest->rowCount())),
             qPrintable(labelText(*summary, "lbFacts")));
}

/// What the view shows of a stretch of days is what leaves it, and what is deleted.
void TestDataViews::rangeIsWhatIsActedOn()
{
    const SampleBackup sample;
    const auto [day, ofDay] = busiestDay(sample);
    const auto narrow = [day = day](SMSMainForm &form) {
        form.findChild<DateRangeEdit *>()->setRange(day, day);
        listOf(form)->selectAll();
    };

    const QTemporaryDir folder;
    SMSMainForm form({sample.opened()});
    form.show();
    QTRY_VERIFY(isLoaded(form));
    QCOMPARE(
        listOf(form)->model()->index(0, ItemModelSms::LastDate).data(ItemModelSms::SortRole).toLongLong(),
        qint64(form.findChild<ItemModelSms *>()->bounds().to)); // the newest first
    const auto store = [&folder] {
        NoProgress progress;
        const LoadedMessagesPtr stored = loadMessages({nullptr, folder.path()}, progress);
        return stored ? qint64(stored->database->messageCount()) : 0;
    };
    {
        const AnswerBox done;
        listOf(form)->selectAll();
        QVERIFY(form.actions().saveInto(folder.path()));
    }
    const qint64 all = store();
    narrow(form);
    {
        const AnswerBox done;
        QVERIFY(form.exportTo({MessageFormat::Text, folder.filePath(QStringLiteral("day.txt"))}));
        QCOMPARE(done.text(), QStringLiteral("Successfully extracted %1 Messages.").arg(ofDay));
    }
    SMSMainForm local({nullptr, folder.path()});
    local.show();
    QTRY_VERIFY(isLoaded(local));
    narrow(local);
    {
        const AnswerBox done;
        QVERIFY(local.actions().remove());
    }
    const qint64 left = store();
    QCOMPARE(all - left, ofDay);
    const AnswerBox done;
    QVERIFY(form.actions().saveInto(folder.path()));
    QCOMPARE(done.text().section(QLatin1Char('\n'), 0, 0),
             QStringLiteral("Successfully backup %1 messages.").arg(ofDay));
    QCOMPARE(store(), all);
}

void TestDataViews::textsAreSearched()
{
    const SampleBackup sample;
    SMSMainForm form({sample.opened()});
    form.show();
    QTRY_VERIFY(isLoaded(form));
    form.filterEdit()->setText(QStringLiteral("COMBINING acute"));
    QTRY_COMPARE(listOf(form)->model()->rowCount(), 1);
    form.findChild<QToolButton *>(QStringLiteral("IDS_LOOK_LIST"))->click();
    listOf(form)->selectAll();
    QVERIFY(form.exportAction()->isEnabled());
    const auto *messages = form.findChild<QListView *>(QStringLiteral("listMessages"));
    const auto *model = static_cast<ItemModelMessages *>(messages->model());
    int row = 0;
    while (!model->message(row).message->text.contains(QStringLiteral("combining acute")))
        ++row;
    QVERIFY2(messages->viewport()->rect().intersects(messages->visualRect(model->index(row))),
             "the message that was found is on the screen");
    const QDate day = dayOf(model->message(row).message->date);
    form.findChild<DateRangeEdit *>()->setRange(day.addDays(1), day.addYears(50));
    QTRY_COMPARE(listOf(form)->model()->rowCount(), 0); // found on no other day
    form.findChild<DateRangeEdit *>()->setRange(day, day);
    QTRY_COMPARE(listOf(form)->model()->rowCount(), 1);
    form.filterEdit()->setText(QStringLiteral("combining acute that nobody wrote"));
    QTRY_COMPARE(listOf(form)->model()->rowCount(), 0);
    form.filterEdit()->clear();
    QVERIFY(listOf(form)->model()->rowCount() > 3);
}

void TestDataViews::singleMessagesAreChosen()
{
    const SampleBackup sample;
    SMSMainForm form({sample.opened()});
    form.show();
    QTRY_VERIFY(isLoaded(form));
    auto *messages = form.findChild<QListView *>(QStringLiteral("listMessages"));
    form.findChild<QToolButton *>(QStringLiteral("IDS_LOOK_LIST"))->click();
    QVERIFY(messages->isVisible());
    messages->selectionModel()->select({messages->model()->index(1, 0), messages->model()->index(2, 0)},
                                       QItemSelectionModel::Select);
    QCOMPARE(form.exportAction()->text(), QStringLiteral("Export 2 messages"));
    QTemporaryDir target;
    const AnswerBox done;
    QVERIFY(form.exportTo({MessageFormat::Text, target.filePath(QStringLiteral("two.txt"))}));
    QCOMPARE(done.text(), QStringLiteral("Successfully extracted 2 Messages."));
    auto printer = std::make_shared<QPrinter>();
    printer->setOutputFormat(QPrinter::PdfFormat);
    printer->setOutputFileName(target.filePath(QStringLiteral("two.pdf")));
    const AnswerBox printed;
    QVERIFY(form.actions().printOn(printer));
    QVERIFY(printed.text().startsWith(QStringLiteral("Successfully printed 2 Messages.")));
    form.findChild<QToolButton *>(QStringLiteral("IDS_LOOK_BUBBLES"))->click();
    QCOMPARE(form.exportAction()->text(), QStringLiteral("Export 1 conversation"));
}

void TestDataViews::newerVersionsAreTakenUnlessTheBoxIsCleared_data()
{
    QTest::addColumn<bool>("cleared");
    QTest::addColumn<int>("edited");
    QTest::newRow("as offered") << false << 1;
    QTest::newRow("cleared") << true << 0;
}

void TestDataViews::newerVersionsAreTakenUnlessTheBoxIsCleared()
{
    QFETCH(bool, cleared);
    QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    forgetAppDataFolder();
    const SampleBackup sample;
    for (const bool first : {true, false}) {
        if (!first) {
            const SampleFile &stored =
                *sample.summary().file(QStringLiteral("HomeDomain"), QStringLiteral("Library/SMS/sms.db"));
            Sqlite3DB db;
            db.openThrow(sample.folder() + u'/' + stored.fileId.left(2) + u'/' + stored.fileId,
                         SqliteOpen::ReadWrite);
            QVERIFY(db.exec(QStringLiteral("update message set text='edited' where rowid=1")));
        }
        SMSMainForm form({sample.opened()});
        form.show();
        QTRY_VERIFY(isLoaded(form));
        listOf(form)->selectAll();
        const AnswerBox done;
        const OnModal<QDialog> save([&](QDialog &dialog) {
            dialog.findChild<QComboBox *>(QStringLiteral("cbDatabases"))->setEditText(QStringLiteral("Mine"));
            auto *newer = dialog.findChild<QCheckBox *>(QStringLiteral("ckUpdate"));
            QVERIFY(newer->isVisible() && newer->isChecked());
            newer->setChecked(!cleared);
            dialog.accept();
        });
        form.saveAction()->trigger();
        QTRY_VERIFY(done.wasShown());
    }
    Sqlite3DB store;
    store.openThrow(localDatabasesFolder().filePath(QStringLiteral("Mine/messages.db")));
    Sqlite3Cursor row = store.queryThrow(QStringLiteral("select count(*) from message where text='edited'"));
    QVERIFY(row.moveNext());
    QTEST(row.getInt(0), "edited");
}

void TestDataViews::savedAndDeletedInALocalDatabase()
{
    const SampleBackup sample;
    QTemporaryDir store;
    SMSMainForm form({sample.opened()});
    form.show();
    QTRY_VERIFY(isLoaded(form));
    QVERIFY(form.saveAction()->isEnabled() && !form.removeAction());
    QSignalSpy changed(&form, &SMSMainForm::storeChanged);
    {
        const AnswerBox done;
        QVERIFY(form.actions().saveInto(store.path()));
        QVERIFY(done.text().startsWith(QStringLiteral("Successfully backup ")));
    }
    QCOMPARE(changed.size(), 1);

    SMSMainForm local({nullptr, store.path()});
    local.show();
    QTRY_VERIFY(isLoaded(local));
    QCOMPARE(listOf(local)->model()->rowCount(), 1);
    QVERIFY(!local.saveAction() && local.removeAction()->isEnabled());
    {
        const AnswerBox no(QMessageBox::No);
        local.removeAction()->trigger();
        QCOMPARE(no.text(), QStringLiteral("Confirm to delete selected messages?"));
    }
    QVERIFY(isLoaded(local));
    QSignalSpy removed(&local, &SMSMainForm::storeChanged);
    const AnswerBox done;
    QVERIFY(local.actions().remove());
    QCOMPARE(removed.size(), 1);
    QVERIFY(done.text().startsWith(QStringLiteral("Successfully Deleted ")));
    auto *states = local.findChild<StateStack *>(QStringLiteral("viewStates"));
    QTRY_COMPARE(labelText(*states->currentWidget(), "lbStateTitle"),
                 QStringLiteral("There are no messages here."));
    QVERIFY(!local.removeAction()->isEnabled());
}

void TestDataViews::attachmentsAreSaved()
{
    const SampleBackup sample;
    SMSMainForm form({sample.opened()});
    form.show();
    QTRY_VERIFY(isLoaded(form));
    listOf(form)->selectAll();
    QTemporaryDir target;
    const AnswerBox done;
    QVERIFY(form.actions().extractAttachmentsTo(target.path()));
    const QStringList files = filesBelow(target.path());
    QVERIFY(files.size() > 5);
    QCOMPARE(done.text().section(QLatin1Char('\n'), 0, 0),
             QStringLiteral("Successfully extacted %1 MMS attachment to %2.")
                 .arg(files.size())
                 .arg(target.path()));
    QVERIFY2(done.text().contains(QStringLiteral("not in the backup")), qPrintable(done.text()));

    listOf(form)->setCurrentIndex(listOf(form)->model()->index(0, 0));
    form.findChild<QToolButton *>(QStringLiteral("IDS_LOOK_LIST"))->click();
    auto *messages = form.findChild<QListView *>(QStringLiteral("listMessages"));
    const auto *model = static_cast<ItemModelMessages *>(messages->model());
    int without = 0;
    while (!model->message(without).message->attachments.empty())
        ++without;
    messages->setCurrentIndex(model->index(without));
    const AnswerBox none;
    QTemporaryDir empty;
    QVERIFY(form.actions().extractAttachmentsTo(empty.path()));
    QCOMPARE(filesBelow(empty.path()), QStringList());
}

void TestDataViews::selectionIsPrinted()
{
    const SampleBackup sample;
    SMSMainForm form({sample.opened()});
    form.show();
    QTRY_VERIFY(isLoaded(form));
    QCOMPARE(form.printAction()->text(), QStringLiteral("Print 1 conversation"));
    QTemporaryDir target;
    const QString file = target.filePath(QStringLiteral("paper.pdf"));
    auto printer = std::make_shared<QPrinter>();
    printer->setOutputFormat(QPrinter::PdfFormat);
    printer->setOutputFileName(file);
    const AnswerBox done;
    QVERIFY(form.actions().printOn(printer));
    QVERIFY(done.text().startsWith(QStringLiteral("Successfully printed ")));
    QFile written(file);
    QVERIFY(written.open(QIODevice::ReadOnly) && written.read(4) == "%PDF");
}

void TestDataViews::whatIsLeftOutCanBeShown()
{
    const SampleBackup sample;
    const OpenBackupPtr backup = sample.opened();
    SMSMainForm form({backup});
    form.show();
    QTRY_VERIFY(isLoaded(form));
    auto *everything = form.findChild<QToolButton *>(QStringLiteral("btnNoticeEverything"));
    const auto shown = [&form] { return labelText(form, "lbCount").section(u' ', 0, 0).toInt(); };
    const int usual = shown();
    NoProgress nobody;
    QCOMPARE(usual, loadBackup(*backup, nobody).of(DataClass::Messages));
    const auto hidden = loadMessages({backup}, nobody)->database->report().count(IssueKind::Hidden);
    everything->click();
    QTRY_VERIFY(isLoaded(form));
    QCOMPARE(shown(), usual + hidden);
    const QAbstractItemModel &list = *listOf(form)->model();
    QCOMPARE(list.index(list.rowCount() - 1, 0).data().toString(), QStringLiteral("No conversation"));
    listOf(form)->setCurrentIndex(list.index(list.rowCount() - 1, 0));
    QCOMPARE(labelText(form, "lbConversation"), QStringLiteral("No conversation"));
    for (const char *said : {"STANDS in none", "NAMED the conversation"}) {
        form.filterEdit()->setText(QLatin1String(said));
        QTRY_COMPARE(list.rowCount(), 1);
    }
    form.filterEdit()->clear();
    QTemporaryDir target;
    {
        listOf(form)->selectAll();
        const AnswerBox done;
        QVERIFY(form.exportTo({MessageFormat::Csv, target.filePath(QStringLiteral("all.csv"))}));
        QVERIFY2(done.text().contains(QString::number(shown())), "what is shown is what is exported");
    }
    everything->click();
    QTRY_VERIFY(isLoaded(form));
    QCOMPARE(shown(), usual);
}

void TestDataViews::damageIsTold()
{
    const SampleBackup sample;
    {
        const SampleFile &stored =
            *sample.summary().file(QStringLiteral("HomeDomain"), QStringLiteral("Library/SMS/sms.db"));
        Sqlite3DB db;
        db.openThrow(sample.folder() + u'/' + stored.fileId.left(2) + u'/' + stored.fileId,
                     SqliteOpen::ReadWrite);
        QVERIFY(db.exec(QStringLiteral("update message set text=NULL, attributedBody=x'00' where rowid=1")));
    }
    SMSMainForm form({sample.opened()});
    form.show();
    QTRY_VERIFY(isLoaded(form));
    QVERIFY(labelText(form, "lbNotice").contains(QStringLiteral("cannot be read")));
    const AnswerBox box;
    form.findChild<QToolButton *>(QStringLiteral("btnNoticeDetails"))->click();
    QVERIFY(box.text().contains(labelText(form, "lbNotice")));
}

void TestDataViews::exportCancelledLeavesNothing()
{
    const SampleBackup sample;
    const OpenBackupPtr backup = sample.opened();
    SMSMainForm form({backup});
    form.show();
    QTRY_VERIFY(isLoaded(form));
    QTemporaryDir target;
    NoProgress nobody;
    const BackupUse turn(*backup, nobody); // keeps the worker from being done before it is cancelled
    const OnModal<ProgressForm> cancel([](ProgressForm &progress) {
        const AnswerBox yes(QMessageBox::Yes);
        progress.cancel();
    });
    QVERIFY(!form.exportTo({MessageFormat::Csv, target.filePath(QStringLiteral("one.csv"))}));
    QVERIFY(cancel.wasShown());
    QCOMPARE(filesBelow(target.path()), QStringList());
}

void TestDataViews::noMessages_data()
{
    QTest::addColumn<bool>("withDatabase");
    QTest::addColumn<bool>("isLost");
    QTest::newRow("a database without conversations") << true << false;
    QTest::newRow("no database at all") << false << false;
    QTest::newRow("no database in what is left of the catalogue") << false << true;
}

void TestDataViews::noMessages()
{
    QFETCH(bool, withDatabase);
    QFETCH(bool, isLost);
    const SampleBackup sample;
    if (withDatabase) {
        Sqlite3DB database;
        database.openThrow(contentPath(sample), SqliteOpen::ReadWrite);
        // The trigger calls functions that only the device has.
        QVERIFY(database.exec(QStringLiteral("drop trigger clean_orphaned_messages; delete from chat;"
                                             "delete from chat_message_join; delete from message")));
    } else {
        Sqlite3DB catalogue;
        catalogue.openThrow(sample.folder() + QStringLiteral("/Manifest.db"), SqliteOpen::ReadWrite);
        catalogue.executeThrow(QStringLiteral("delete from Files where relativePath='Library/SMS/sms.db'"));
        if (isLost)
            catalogue.executeThrow(
                QStringLiteral("update Files set file=x'00' where relativePath like '%.plist'"));
    }
    SMSMainForm form({sample.opened()});
    form.show();
    auto *states = form.findChild<StateStack *>(QStringLiteral("viewStates"));
    QTRY_COMPARE(labelText(*states->currentWidget(), "lbStateTitle"),
                 isLost ? QStringLiteral("The messages could not be loaded.")
                        : QStringLiteral("There are no messages in this backup."));
    QCOMPARE(labelText(form, "lbNotice").contains(QStringLiteral("Manifest.db")), isLost);
    QVERIFY(!form.exportAction()->isEnabled());
}

void TestDataViews::messagesFailAndTryAgain()
{
    const SampleBackup sample;
    const OpenBackupPtr backup = sample.opened();
    const QString path = contentPath(sample);
    QVERIFY(QFile::rename(path, path + QStringLiteral("x")));
    SMSMainForm form({backup});
    form.show();
    auto *states = form.findChild<StateStack *>(QStringLiteral("viewStates"));
    QTRY_COMPARE(labelText(*states->currentWidget(), "lbStateTitle"),
                 QStringLiteral("The messages could not be loaded."));
    QVERIFY(!labelText(*states->currentWidget(), "lbStateText").isEmpty());
    QVERIFY(!form.exportAction()->isEnabled());
    QVERIFY(QFile::rename(path + QStringLiteral("x"), path));
    emit states->actionRequested();
    QTRY_VERIFY(isLoaded(form));
}

void TestDataViews::filesFilterAndStates()
{
    const SampleBackup sample;
    FileSysMainForm form(sample.opened());
    form.show();
    auto *tree = form.findChild<QTreeView *>(QStringLiteral("treeFiles"));
    QVERIFY(tree->isVisible());
    QVERIFY(!form.exportAction()->isEnabled());
    form.filterEdit()->setText(QStringLiteral("no such file at all"));
    QTRY_VERIFY(!tree->isVisible());
    QCOMPARE(labelText(form, "lbStateTitle"), QStringLiteral("Nothing matches."));
    form.filterEdit()->setText(QStringLiteral("sms.db"));
    QTRY_VERIFY(tree->isVisible());
    tree->selectAll();
    QVERIFY(form.exportAction()->isEnabled());
}

void TestDataViews::filesExport()
{
    const SampleBackup sample;
    FileSysMainForm form(sample.opened());
    form.show();
    auto *tree = form.findChild<QTreeView *>(QStringLiteral("treeFiles"));
    form.filterEdit()->setText(QStringLiteral("sms.db"));
    QTRY_VERIFY(labelText(form, "lbCount").endsWith(QStringLiteral("found")));
    for (int row = 0; row < tree->model()->rowCount(); ++row) {
        if (tree->model()->index(row, 0).data() == QStringLiteral("sms.db"))
            tree->setCurrentIndex(tree->model()->index(row, 0));
    }
    QTemporaryDir target;
    const AnswerBox done;
    QVERIFY(form.exportTo(target.path()));
    QCOMPARE(done.text(), QStringLiteral("Successfully extracted 1 files."));
    QCOMPARE(filesBelow(target.path()), QStringList(target.filePath(QStringLiteral("sms.db"))));
}

void TestDataViews::severalFilesExport()
{
    const SampleBackup sample;
    FileSysMainForm form(sample.opened());
    form.show();
    auto *tree = form.findChild<QTreeView *>(QStringLiteral("treeFiles"));
    form.filterEdit()->setText(QStringLiteral(".sqlite"));
    QTRY_VERIFY(labelText(form, "lbCount").endsWith(QStringLiteral("found")));
    const int found = tree->model()->rowCount();
    QVERIFY(found > 1);
    QCOMPARE(labelText(form, "lbCount"), QStringLiteral("%1 found").arg(found));
    tree->selectAll();
    QTemporaryDir target;
    const AnswerBox done;
    QVERIFY(form.exportTo(target.path()));
    QCOMPARE(filesBelow(target.path()).size(), found);
}

void TestDataViews::damagedCatalogueIsToldAboveTheFiles()
{
    const SampleBackup sample;
    QFile catalogue(sample.folder() + QStringLiteral("/Manifest.db"));
    QVERIFY(catalogue.resize(catalogue.size() * 3 / 4));
    const OpenBackupPtr backup = sample.opened();
    QVERIFY(backup->manifest().report().isFailure());
    FileSysMainForm files(backup);
    PhotosMainForm photos(backup, CameraRollKind::Photo);
    for (DataView *view : {static_cast<DataView *>(&files), static_cast<DataView *>(&photos)}) {
        view->show();
        const auto *notice = view->findChild<QLabel *>(QStringLiteral("lbNotice"));
        QVERIFY2(notice->isVisible() && notice->text().contains(QStringLiteral("Manifest.db")),
                 qPrintable(notice->text()));
    }
}

QB_WEB_TEST_MAIN(TestDataViews)
#include "tst_data_views.moc"

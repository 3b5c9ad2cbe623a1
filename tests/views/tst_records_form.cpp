#include "base/texts.h"
#include "personal/personal_source.h"
#include "resources/resources.h"
#include "sqlite/sqlite3_db.h"
#include "support/modal.h"
#include "support/sample_backup.h"
#include "views/contact_card.h"
#include "views/item_model_bookmarks.h"
#include "views/item_model_records.h"
#include "views/record_filter.h"
#include "views/record_roles.h"
#include "views/records_main_form.h"
#include "views/safe_text_browser.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QBuffer>
#include <QCalendarWidget>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QSignalSpy>
#include <QTest>
#include <QTextDocument>
#include <QToolButton>
#include <QTreeView>

namespace {
qint64 countIn(const QString &folder, DataClass dataClass)
{
    Report report;
    return openLocalRecords(folder)->count(dataClass, report).value();
}

QTreeView *listOf(const RecordsMainForm &form)
{
    return form.findChild<QTreeView *>(QStringLiteral("listRecords"));
}

/// The first row that is a record: events stand below their calendars.
QModelIndex firstRecord(const QAbstractItemModel *model)
{
    const QModelIndex first = model->index(0, 0);
    return first.flags().testFlag(Qt::ItemIsSelectable) ? first : model->index(0, 0, first);
}

QStringList identities(const QAbstractItemModel *model, const QModelIndex &parent = {})
{
    QStringList found;
    for (int row = 0; row < model->rowCount(parent); ++row)
        found << model->index(row, 0, parent).data(RecordRole::Identity).toString()
              << identities(model, model->index(row, 0, parent));
    return found;
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
    void firstRowIsTheOneLookedFor_data();
    void firstRowIsTheOneLookedFor();
    void rowsSayWhatIsRecorded();
    void columnsSortByWhatTheyShow();
    void headerCountsWhatIsShown_data() { classRows(); }
    void headerCountsWhatIsShown();
    void filterAndDetail();
    void monthSelectsDays();
    void eventsStandBelowTheirCalendars();
    void contactsShowEveryRow();
    void longTextsAreCut();
    void deepNotesAreShownAsPlainText();
    void whatIsLeftOutCanBeShown();
    void catalogueThatLostTheDatabase();
    void exportsWhatIsSelectedOrShown();
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
    Report report;
    const RecordsPtr records = readRecords({sample.opened(), {}}, dataClass, Scope::Usual, report, progress);
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
    QVERIFY(!firstRecord(model.get()).data(RecordRole::Detail).toString().isEmpty());
}

void TestRecordsForm::durations()
{
    QCOMPARE(durationText(0), QStringLiteral("0:00"));
    QCOMPARE(durationText(125), QStringLiteral("2:05"));
    QCOMPARE(durationText(7200), QStringLiteral("120:00"));
}

void TestRecordsForm::firstRowIsTheOneLookedFor_data()
{
    QTest::addColumn<DataClass>("dataClass");
    QTest::addColumn<int>("column");
    QTest::addColumn<bool>("newestFirst"); // else by the alphabet
    QTest::newRow("contacts") << DataClass::Contacts << 0 << false;
    QTest::newRow("calls") << DataClass::Calls << 2 << true;
    QTest::newRow("notes") << DataClass::Notes << 1 << true;
    QTest::newRow("events of a calendar") << DataClass::Calendar << 1 << true;
}

void TestRecordsForm::firstRowIsTheOneLookedFor()
{
    QFETCH(DataClass, dataClass);
    QFETCH(int, column);
    QFETCH(bool, newestFirst);
    const SampleBackup sample;
    RecordsMainForm form({sample.opened(), {}}, dataClass);
    form.show();
    QTRY_VERIFY(listOf(form)->isVisible());
    const QModelIndex first = firstRecord(listOf(form)->model());
    QCOMPARE(listOf(form)->currentIndex(), first);
    QVERIFY(form.findChild<SafeTextBrowser *>()->toPlainText().contains(first.data().toString()));
    const auto key = [&](int row) { return first.sibling(row, column).data(RecordRole::Sort); };
    for (int row = 1; first.sibling(row, 0).isValid(); ++row)
        QVERIFY2(newestFirst ? key(row - 1).toDateTime() >= key(row).toDateTime()
                             : QString::localeAwareCompare(key(row - 1).toString(), key(row).toString()) <= 0,
                 qPrintable(first.sibling(row, 0).data().toString()));
}

// In the zone of the test, which is an hour ahead, the day is the next.
void TestRecordsForm::rowsSayWhatIsRecorded()
{
    const QDateTime lateEvening = QDateTime(QDate(2024, 1, 31), QTime(23, 30), Qt::UTC);
    const QDateTime thereAfter(QDate(2024, 2, 1), QTime(0, 30));
    const QString shown = QLocale::system().toString(thereAfter, QLocale::ShortFormat);
    const auto firstRow = [](DataClass dataClass, Records records) {
        const ItemModelRecords model(
            makeRecordTable(dataClass, std::make_shared<const Records>(std::move(records))));
        const QModelIndex first = firstRecord(&model);
        QStringList cells;
        for (int column = 0; column < model.columnCount(); ++column)
            cells << first.siblingAtColumn(column).data().toString();
        return cells.join(QLatin1Char('|'));
    };
    const auto detailOf = [](DataClass dataClass, Records records) {
        const ItemModelRecords model(
            makeRecordTable(dataClass, std::make_shared<const Records>(std::move(records))));
        return firstRecord(&model).data(RecordRole::Detail).toString();
    };
    for (const auto &[type, word] : {std::pair(CallType::Incoming, "Incoming"),
                                     {CallType::Outgoing, "Outgoing"},
                                     {CallType::Missed, "Missed"},
                                     {CallType::Unknown, "Unknown"}}) {
        CallEntry call;
        call.address = QStringLiteral("+1 555");
        call.date = lateEvening;
        call.duration = 61;
        call.type = static_cast<int>(type);
        QCOMPARE(firstRow(DataClass::Calls, QList<CallEntry>{call}),
                 QStringLiteral("+1 555|%1|%2|1:01").arg(QLatin1String(word), shown));
        call.person = QStringLiteral("Ada");
        QVERIFY(firstRow(DataClass::Calls, QList<CallEntry>{call}).startsWith(QStringLiteral("Ada|")));
    }
    NoteEntry note;
    note.title = QStringLiteral("List");
    note.summary = QStringLiteral("milk");
    note.modified_date = lateEvening;
    note.create_date = lateEvening.addYears(-1);
    QCOMPARE(firstRow(DataClass::Notes, QList<NoteEntry>{note}), QStringLiteral("List|%1|milk").arg(shown));
    ContactRecord contact;
    contact.rows[ContactDataKind::Email].append(ContactDataRow());
    contact.rows[ContactDataKind::Email].first().data(1) = QStringLiteral("a@b.c");
    contact.rows[ContactDataKind::Phone].append(ContactDataRow());
    contact.rows[ContactDataKind::Phone].first().data(1) = QStringLiteral("22000");
    QVERIFY(firstRow(DataClass::Contacts, QList<ContactRecord>{contact}).endsWith(QStringLiteral("|22000")));
    BookmarkTree tree;
    tree.push_back(std::make_unique<BookmarkNode>());
    tree.front()->title = QStringLiteral("Page");
    tree.front()->url = QStringLiteral("http://p");
    const ItemModelBookmarks bookmarks(std::make_shared<const Records>(std::move(tree)));
    QCOMPARE(bookmarks.index(0, ItemModelBookmarks::Title).data().toString(), QStringLiteral("Page"));
    QCOMPARE(bookmarks.index(0, ItemModelBookmarks::Url).data().toString(), QStringLiteral("http://p"));
    QVERIFY(bookmarks.index(0, 0).data(RecordRole::Search).toString().contains(QStringLiteral("http://p")));
    CalendarEvent event;
    event.summary = QStringLiteral("Tea\nKitchen");
    event.start_date = lateEvening;
    event.end_date = lateEvening.addSecs(3600);
    const QString later = QLocale::system().toString(thereAfter.addSecs(3600), QLocale::ShortFormat);
    QVERIFY(detailOf(DataClass::Calendar, QList<CalendarEvent>{event}).contains(later));
    CallEntry named;
    named.person = QStringLiteral("Ada");
    named.address = QStringLiteral("+1 555");
    QVERIFY(detailOf(DataClass::Calls, QList<CallEntry>{named}).contains(named.address));
    QCOMPARE(firstRow(DataClass::Calendar, QList<CalendarEvent>{event}),
             QStringLiteral("Tea|%1|").arg(shown));
    event.all_day = 1; // the day that is stored, wherever one is
    QCOMPARE(firstRow(DataClass::Calendar, QList<CalendarEvent>{event}),
             QStringLiteral("Tea|%1|All day")
                 .arg(QLocale::system().toString(lateEvening.date(), QLocale::ShortFormat)));
}

/// Of two records the second comes first by one column, and the first by all the others.
void TestRecordsForm::columnsSortByWhatTheyShow()
{
    const QDateTime noon(QDate(2024, 1, 31), QTime(12, 0), Qt::UTC);
    const auto firstBy = [](DataClass dataClass, int column, Records records) {
        ItemModelRecords model(
            makeRecordTable(dataClass, std::make_shared<const Records>(std::move(records))));
        RecordFilter filter;
        filter.setSourceModel(&model);
        filter.sort(column);
        return filter.index(0, 0).data(RecordRole::Number).toInt();
    };
    for (int column = 0; column < 4; ++column) {
        const auto call = [&](int step) {
            CallEntry made;
            made.address = QString(QLatin1Char(column == 0 ? 'm' + step : 'm' - step));
            made.type = 5 + (column == 1 ? step : -step);
            made.date = noon.addDays(column == 2 ? step : -step);
            made.duration = 9 + (column == 3 ? step : -step);
            return made;
        };
        QCOMPARE(firstBy(DataClass::Calls, column, QList<CallEntry>{call(0), call(-1)}), 1);
    }
    for (int column = 0; column < 3; ++column) {
        const auto note = [&](int step) {
            NoteEntry made;
            made.title = QString(QLatin1Char(column == 0 ? 'm' + step : 'm' - step));
            made.modified_date = noon.addDays(column == 1 ? step : -step);
            made.create_date = noon.addDays(-step);
            made.summary = QString(QLatin1Char(column == 2 ? 'm' + step : 'm' - step));
            return made;
        };
        QCOMPARE(firstBy(DataClass::Notes, column, QList<NoteEntry>{note(0), note(-1)}), 1);
    }
}

void TestRecordsForm::headerCountsWhatIsShown()
{
    QFETCH(DataClass, dataClass);
    const SampleBackup sample;
    NoProgress nobody;
    Report report;
    const OpenBackupPtr backup = sample.opened();
    const qint64 all = openDeviceRecords(backup->manifest(), QString())->count(dataClass, report).value();
    RecordsMainForm form({backup, {}}, dataClass);
    form.show();
    QTRY_VERIFY(listOf(form)->isVisible());
    const auto *count = form.findChild<QLabel *>(QStringLiteral("lbCount"));
    QCOMPARE(count->text(), QString::number(all));
    QVERIFY2(form.status().startsWith(QString::number(all) + u','), qPrintable(form.status()));
    if (dataClass == DataClass::Bookmarks)
        return; // exported as a whole, whatever is filtered
    const auto *filter = static_cast<const RecordFilter *>(listOf(form)->model());
    for (const QString &letter : {QStringLiteral("q"), QStringLiteral("b"), QStringLiteral("7")}) {
        form.filterEdit()->setText(letter);
        QVERIFY(filter->recordCount() < all);
        QCOMPARE(count->text(), QString::number(filter->recordCount()));
    }
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
    const QString first = listOf(form)->model()->index(0, 0).data().toString();
    QVERIFY(detail->toPlainText().contains(first));
    listOf(form)->selectAll();
    QVERIFY2(detail->toPlainText().contains(first), "of several it is the first that is shown");
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
    const QModelIndex event = firstRecord(listOf(form)->model());
    const QDate day = event.siblingAtColumn(1).data(RecordRole::Sort).toDateTime().toLocalTime().date();
    QVERIFY(month->dateTextFormat(day).fontWeight() == QFont::Bold);
    listOf(form)->clearSelection();
    emit month->clicked(day);
    QVERIFY(listOf(form)->selectionModel()->isSelected(event));
}

void TestRecordsForm::eventsStandBelowTheirCalendars()
{
    QList<CalendarEvent> events;
    for (const char *name : {"Work/early", "home/b", "Work/late", "home/a", "Work/all day"}) {
        CalendarEvent event;
        event.calendar = QString::fromLatin1(name).section(QLatin1Char('/'), 0, 0);
        event.summary = QString::fromLatin1(name).section(QLatin1Char('/'), 1);
        event.start_date = QDateTime::fromSecsSinceEpoch(1767225600 + 86400 * events.size(), Qt::UTC);
        event.all_day = event.summary == QLatin1String("all day");
        events.append(event);
    }
    ItemModelRecords model(makeRecordTable(DataClass::Calendar, std::make_shared<const Records>(events)));
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    RecordFilter filter;
    filter.setSourceModel(&model);
    const auto outline = [&filter] {
        QStringList lines;
        for (int row = 0; row < filter.rowCount(); ++row) {
            const QModelIndex group = filter.index(row, 0);
            lines.append(group.data().toString());
            for (int below = 0; below < filter.rowCount(group); ++below)
                lines.append(filter.index(below, 0, group).data().toString());
        }
        return lines.join(QLatin1Char('|'));
    };
    filter.sort(0);
    QCOMPARE(outline(), QStringLiteral("home (2)|a|b|Work (3)|all day|early|late"));
    filter.sort(1, Qt::DescendingOrder);
    QCOMPARE(outline(), QStringLiteral("home (2)|a|b|Work (3)|all day|late|early"));
    QCOMPARE(filter.records().size(), 5);
    QCOMPARE(filter.recordCount(), 5);
    const QModelIndex allDay = filter.index(0, 0, filter.index(1, 0));
    QCOMPARE(allDay.siblingAtColumn(2).data().toString(), QStringLiteral("All day"));
    QVERIFY(allDay.data(RecordRole::Detail).toString().contains(QStringLiteral("All day")));
    filter.setFilterFixedString(QStringLiteral("LATE"));
    QCOMPARE(outline(), QStringLiteral("Work (3)|late"));
}

void TestRecordsForm::contactsShowEveryRow()
{
    ContactRecord contact;
    const auto add = [&contact](ContactDataKind kind, const char *value, int type, const char *label) {
        ContactDataRow row;
        row.data(1) = QString::fromUtf8(value);
        row.data(2) = QString::number(type);
        row.data(3) = QString::fromUtf8(label);
        contact.rows[kind].append(row);
    };
    add(ContactDataKind::Phone, "+49 (171) 392-00 123", 2, "");
    add(ContactDataKind::Phone, "22000", 0, "B<oa>t");
    add(ContactDataKind::Email, "a@b.c", 1, "");
    QImage red(200, 100, QImage::Format_RGB32);
    red.fill(Qt::red);
    ContactDataRow photo;
    QBuffer buffer(&photo.data15);
    QVERIFY(red.save(&buffer, "JPEG"));
    contact.rows[ContactDataKind::Photo] = {photo};
    ContactRecord forged = contact;
    forged.rows[ContactDataKind::Photo].first().data15 = QByteArray(30'000'000, '\xff');

    QTextDocument card;
    card.setHtml(contactCard(contact));
    const QString text = card.toPlainText();
    for (const char *shown : {"Mobile", "+49 (171) 392-00 123", "B<oa>t", "22000", "Home", "a@b.c"})
        QVERIFY2(text.contains(QLatin1String(shown)), shown);
    const ItemModelRecords model(makeRecordTable(
        DataClass::Contacts, std::make_shared<const Records>(QList<ContactRecord>{contact, forged})));
    const auto pictureOf = [&model](int row) {
        return model.index(row, 0).data(Qt::DecorationRole).value<QPixmap>().toImage();
    };
    const QImage picture = pictureOf(0);
    QVERIFY(picture.width() == picture.height() && picture.pixelColor(picture.rect().center()).red() > 200);
    QVERIFY(!pictureOf(1).isNull() && pictureOf(1) != picture);
    QCOMPARE(model.index(0, 0).data().toString(), QStringLiteral("+49 (171) 392-00 123")); // it has no name
}

void TestRecordsForm::longTextsAreCut()
{
    NoteEntry note;
    note.title = QString(10'000, QLatin1Char('t'));
    note.content = QStringLiteral("<p>%1</p>").arg(QString(20'000, QLatin1Char('x'))).repeated(1000);
    const ItemModelRecords model(
        makeRecordTable(DataClass::Notes, std::make_shared<const Records>(QList<NoteEntry>{note})));
    const QModelIndex index = model.index(0, 0);
    QVERIFY(index.data().toString().size() <= 1000);
    QVERIFY(index.data(RecordRole::Detail).toString().size() < 1'000'000);
    QVERIFY(index.data(RecordRole::Detail).toString().contains(QStringLiteral("Only its beginning")));
    QVERIFY(!index.data(RecordRole::Search).toString().contains(QStringLiteral("<p>")));
}

void TestRecordsForm::deepNotesAreShownAsPlainText()
{
    NoteEntry deep;
    deep.content = QStringLiteral("<b>").repeated(50'000) + QStringLiteral("1 &lt; 2");
    NoteEntry wide;
    wide.content = QStringLiteral("<p><b>x</b><br>").repeated(5'000);
    const ItemModelRecords model(
        makeRecordTable(DataClass::Notes, std::make_shared<const Records>(QList<NoteEntry>{deep, wide})));
    const auto detail = [&model](int row) { return model.index(row, 0).data(RecordRole::Detail).toString(); };
    QVERIFY(detail(0).contains(QStringLiteral("1 &lt; 2")) && !detail(0).contains(QStringLiteral("<b>")));
    QVERIFY(detail(1).contains(wide.content));
}

void TestRecordsForm::whatIsLeftOutCanBeShown()
{
    const SampleBackup sample;
    RecordsMainForm form({sample.opened(), {}}, DataClass::Calendar);
    form.show();
    QTRY_VERIFY(listOf(form)->isVisible());
    const auto *filter = static_cast<const RecordFilter *>(listOf(form)->model());
    const int usual = filter->recordCount();
    const auto *notice = form.findChild<QLabel *>(QStringLiteral("lbNotice"));
    auto *everything = form.findChild<QToolButton *>(QStringLiteral("btnNoticeEverything"));
    QVERIFY(notice->isVisible() && everything->isVisible());
    const int hidden = notice->text().section(u' ', 0, 0).toInt();
    QVERIFY2(hidden > 0, qPrintable(notice->text()));
    QCOMPARE(everything->text(), QStringLiteral("Show them"));
    everything->click();
    QTRY_VERIFY(listOf(form)->isVisible());
    QVERIFY(filter->recordCount() >= usual + hidden);
    QCOMPARE(everything->text(), QStringLiteral("Hide them"));
    QTemporaryDir folder;
    {
        const AnswerBox done;
        QVERIFY(form.saveInto(folder.path()));
        QVERIFY2(done.text().contains(QString::number(filter->recordCount())),
                 "what is shown is what is saved");
    }
    everything->click();
    QTRY_VERIFY(listOf(form)->isVisible());
    QCOMPARE(filter->recordCount(), usual);
}

void TestRecordsForm::catalogueThatLostTheDatabase()
{
    const SampleBackup sample;
    {
        Sqlite3DB catalogue;
        catalogue.openThrow(sample.folder() + QStringLiteral("/Manifest.db"), SqliteOpen::ReadWrite);
        catalogue.executeThrow(QStringLiteral("delete from Files where relativePath like '%/AddressBook%'"));
        catalogue.executeThrow(
            QStringLiteral("update Files set file=x'00' where relativePath like '%.plist'"));
    }
    RecordsMainForm form({sample.opened(), {}}, DataClass::Contacts);
    form.show();
    QTRY_COMPARE(form.findChild<QLabel *>(QStringLiteral("lbStateTitle"))->text(),
                 textFor("IDS_RECORDS_FAILED"));
    QVERIFY(
        form.findChild<QLabel *>(QStringLiteral("lbNotice"))->text().contains(QStringLiteral("Manifest.db")));
}

void TestRecordsForm::exportsWhatIsSelectedOrShown()
{
    const SampleBackup sample;
    RecordsMainForm form({sample.opened(), {}}, DataClass::Calls);
    form.show();
    QTRY_VERIFY(listOf(form)->isVisible());
    QTemporaryDir target;
    // The names that the lines of an export begin with, in the order of the alphabet.
    const auto exported = [&] {
        const QString path = target.filePath(QStringLiteral("calls.csv"));
        const AnswerBox done;
        form.exportTo(QStringLiteral("csv"), path);
        QFile file(path);
        QStringList lines;
        if (file.open(QIODevice::ReadOnly) &&
            done.text().startsWith(QStringLiteral("Successfully extracted ")))
            lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts).mid(1);
        return lines;
    };
    const QAbstractItemModel *rows = listOf(form)->model();
    listOf(form)->selectAll();
    const QStringList all = exported();
    QCOMPARE(all.size(), rows->rowCount());
    const QString name = rows->index(rows->rowCount() - 1, 0).data().toString();
    const auto isOfName = [&name](const QString &line) { return line.contains(name); };
    listOf(form)->setCurrentIndex(rows->index(rows->rowCount() - 1, 0));
    const QStringList one = exported();
    QVERIFY2(one.size() == 1 && isOfName(one.first()), qPrintable(one.join(QLatin1Char('|')) + name));

    form.filterEdit()->setText(name);
    listOf(form)->clearSelection();
    const QStringList shown = exported();
    QCOMPARE(shown.size(), rows->rowCount());
    QVERIFY2(shown.size() < all.size() && std::all_of(shown.begin(), shown.end(), isOfName),
             qPrintable(shown.join(QLatin1Char('|'))));
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
    const qint64 saved = countIn(folder, dataClass);
    QVERIFY(saved > 1);

    RecordsMainForm local({nullptr, folder}, dataClass);
    local.show();
    QTRY_VERIFY(listOf(local)->isVisible());
    listOf(local)->selectionModel()->clear();
    listOf(local)->setCurrentIndex(firstRecord(listOf(local)->model()));
    QVERIFY(local.removeAction()->isEnabled());
    QSignalSpy removals(&local, &RecordsMainForm::storeChanged);
    const QString removed = firstRecord(listOf(local)->model()).data(RecordRole::Identity).toString();
    {
        const AnswerBox no(QMessageBox::No);
        local.removeAction()->trigger();
        QVERIFY(no.wasShown());
        QCOMPARE(countIn(folder, dataClass), saved);
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
    QVERIFY(countIn(folder, dataClass) < saved);
    QCOMPARE(removals.size(), 1);

    QTRY_VERIFY(listOf(local)->isVisible());
    QVERIFY2(!identities(listOf(local)->model()).contains(removed), "another record went");
    const auto asked = [&] {
        const AnswerBox no(QMessageBox::No);
        answers.stop();
        listOf(local)->selectAll();
        local.removeAction()->trigger();
        answers.start(1);
        return no.text();
    };
    local.filterEdit()->setText(listOf(local)->model()->index(0, 0).data().toString().section(u' ', 0, 0));
    QVERIFY2(!asked().contains(QStringLiteral(" all ")), "a filter hides some");
    local.filterEdit()->clear();
    listOf(local)->selectAll();
    boxes.clear();
    local.removeAction()->trigger();
    QCOMPARE(boxes.size(), 2);
    QVERIFY2(boxes.first().startsWith(QStringLiteral("Confirm to delete all ")), qPrintable(boxes.first()));
    QVERIFY2(boxes.last().startsWith(QStringLiteral("Successfully deleted all ")), qPrintable(boxes.last()));
    QCOMPARE(countIn(folder, dataClass), 0);
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

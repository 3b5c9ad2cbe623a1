#include "app/item_model_bk.h"
#include "app/main_window.h"
#include "base/app_folders.h"
#include "base/texts.h"
#include "personal/local_contacts_db.h"
#include "resources/resources.h"
#include "support/modal.h"
#include "support/sample_backup.h"
#include "support/web_test_main.h"
#include "views/bk_desc_form.h"
#include "views/load_itunes_backup_dlg.h"
#include "views/message_export_dlg.h"
#include "views/passcode_dlg.h"
#include "views/records_main_form.h"
#include "views/sms_main_form.h"

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <QTreeView>

namespace {
QTreeView *treeOf(const MainWindow &window)
{
    return window.findChild<QTreeView *>(QStringLiteral("treeSources"));
}

QModelIndex backupsRoot(const MainWindow &window)
{
    return treeOf(window)->model()->index(0, 0);
}

int backupCount(const MainWindow &window)
{
    return treeOf(window)->model()->rowCount(backupsRoot(window));
}

QModelIndex backupNode(const MainWindow &window, int row = 0)
{
    return treeOf(window)->model()->index(row, 0, backupsRoot(window));
}

QModelIndex messagesNode(const MainWindow &window)
{
    constexpr int row = 2; // behind photos and videos
    return treeOf(window)->model()->index(row, 0, backupNode(window));
}

QAction *action(const MainWindow &window, const char *name)
{
    return window.findChild<QAction *>(QLatin1String(name));
}
} // namespace

class TestMainWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void menus();
    void loadThroughTheDialog();
    void encryptedBackup();
    void failedLoadLeavesNothing();
    void whatCannotBeReadIsNoZero();
    void sameBackupTwice();
    void exportAConversation();
    void unlist();
    void sampleFromTheStartPage();
    void localDatabases();
    void messageDatabaseByItself();
    void cardsComeIntoALocalDatabase();
    void savingStaysAndShowsTheLocalDatabase();
    void localViewIsFreshAfterASave();

private:
    std::unique_ptr<QTemporaryDir> m_home;
};

void TestMainWindow::initTestCase()
{
    initResources();
    installTexts();
}

void TestMainWindow::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    qputenv("HOME", m_home->path().toUtf8());
    forgetAppDataFolder();
}

void TestMainWindow::menus()
{
    const MainWindow window({});
    QStringList menus;
    QStringList items;
    for (const QAction *menu : window.menuBar()->actions()) {
        menus << menu->text();
        for (const QAction *item : menu->menu()->actions()) {
            if (item->isSeparator())
                continue;
            items << item->text();
            QVERIFY2(item->isEnabled() || item->toolTip() != item->text(), qPrintable(item->text()));
        }
    }
    QCOMPARE(menus, QStringList({QStringLiteral("Menu"), QStringLiteral("Tools"), QStringLiteral("Help")}));
    QCOMPARE(items.join(QLatin1Char('|')),
             QStringLiteral("Load iTunes Backup|Open Database Folder|Exit|Check for Update|Registration|"
                            "Clear Cache files|Help|Feedback and Support|About"));
}

void TestMainWindow::loadThroughTheDialog()
{
    const SampleBackup sample;
    MainWindow window({sample.parentFolder()});
    window.show();
    const OnModal<LoadItunesBackupDlg> choose([](LoadItunesBackupDlg &dialog) { dialog.btnLoadClicked(); });
    action(window, "IDS_MI_LOAD_BACKUP")->trigger();
    QVERIFY(choose.wasShown());
    QCOMPARE(backupCount(window), 1);
    const QModelIndex node = backupNode(window);
    QCOMPARE(treeOf(window)->currentIndex(), node);
    QCOMPARE(messagesNode(window).data().toString(),
             QStringLiteral("SMS(%1)").arg(sample.summary().counts.joinedMessages));
    QVERIFY(window.findChild<QLabel *>(QStringLiteral("lbBKName"))->isVisible());
    QCOMPARE(window.windowTitle(),
             QStringLiteral("Quillbarrow (x64) v3.1.36 (%1)").arg(node.data().toString()));
    treeOf(window)->setCurrentIndex(backupsRoot(window));
    QCOMPARE(window.windowTitle(), QStringLiteral("Quillbarrow (x64) v3.1.36"));
}

void TestMainWindow::encryptedBackup()
{
    SampleOptions options;
    options.password = QStringLiteral("open sesame");
    options.dpic = 50;
    options.iter = 20;
    const SampleBackup sample(options);
    MainWindow window({});
    window.show();
    {
        const OnModal<PasscodeDlg> giveUp([](PasscodeDlg &dialog) { dialog.reject(); });
        QVERIFY(!window.loadBackup(sample.folder()));
        QCOMPARE(backupCount(window), 0);
    }
    const OnModal<PasscodeDlg> unlock([](PasscodeDlg &dialog) {
        dialog.findChild<QLineEdit *>(QStringLiteral("edPassword"))->setText(QStringLiteral("open sesame"));
        dialog.btnOKPressed();
    });
    QVERIFY(window.loadBackup(sample.folder()));
    QCOMPARE(backupCount(window), 1);
}

void TestMainWindow::failedLoadLeavesNothing()
{
    const SampleBackup sample;
    QFile catalogue(sample.folder() + QStringLiteral("/Manifest.db"));
    QVERIFY(catalogue.open(QIODevice::WriteOnly));
    catalogue.write(QByteArray(5000, 'x'));
    catalogue.close();
    MainWindow window({});
    window.show();
    const AnswerBox error;
    QVERIFY(!window.loadBackup(sample.folder()));
    QVERIFY(error.text().contains(QStringLiteral("An Error Occurred.")));
    QVERIFY(error.text().contains(QStringLiteral("Manifest.db")));
    QCOMPARE(backupCount(window), 0);

    const AnswerBox absent;
    QVERIFY(!window.loadBackup(QStringLiteral("/nowhere")));
    QVERIFY(absent.text().contains(QStringLiteral("Cannot find /nowhere/Manifest.plist")));
}

/// A class that is damaged, and one whose content is missing, are told wherever a number or an empty list
/// would stand.
void TestMainWindow::whatCannotBeReadIsNoZero()
{
    const SampleBackup sample;
    const QString notes = QStringLiteral("HomeDomain Library/Notes/notes.sqlite");
    const QString contacts = QStringLiteral("HomeDomain Library/AddressBook/AddressBook.sqlitedb");
    const auto content = [&sample](const QString &place) {
        const QString id = sample.summary().file(place.section(u' ', 0, 0), place.section(u' ', 1))->fileId;
        return QStringLiteral("%1/%2/%3").arg(sample.folder(), id.left(2), id);
    };
    QFile garbage(content(notes));
    QVERIFY(garbage.open(QIODevice::WriteOnly) && garbage.write(QByteArray(9000, 'x')) > 0);
    garbage.close();
    QVERIFY(QFile::remove(content(contacts)));
    MainWindow window({});
    window.show();
    const AnswerBox opened;
    QVERIFY(window.loadBackup(sample.folder()));
    const auto *panel = window.findChild<BKDescForm *>();
    for (const QString &place : {notes, contacts}) {
        QVERIFY2(opened.text().contains(place), qPrintable(opened.text()));
        const AnswerBox details;
        panel->findChild<QToolButton *>(QStringLiteral("btnNoticeDetails"))->click();
        QVERIFY2(details.text().contains(place), qPrintable(details.text()));
    }
    const QAbstractItemModel *model = treeOf(window)->model();
    for (const auto &[label, place] : {std::pair("Notes(?)", notes), std::pair("Contacts(?)", contacts)}) {
        const QModelIndexList nodes = model->match(backupNode(window), Qt::DisplayRole, QLatin1String(label),
                                                   1, Qt::MatchExactly | Qt::MatchRecursive);
        QVERIFY2(nodes.size() == 1, label);
        treeOf(window)->setCurrentIndex(nodes.first());
        const auto forms = window.findChildren<RecordsMainForm *>();
        const RecordsMainForm *form =
            *std::find_if(forms.begin(), forms.end(), [](auto *view) { return view->isVisible(); });
        QTRY_COMPARE(form->status(), QStringLiteral("This could not be read."));
        const QString said = form->findChild<QLabel *>(QStringLiteral("lbStateText"))->text();
        QVERIFY2(QString(said).remove(QChar(0x200b)).contains(place), qPrintable(said));
    }
}

void TestMainWindow::sameBackupTwice()
{
    const SampleBackup sample;
    MainWindow window({});
    window.show();
    QVERIFY(window.loadBackup(sample.folder()));
    const AnswerBox refused;
    QVERIFY(!window.loadBackup(sample.folder() + QStringLiteral("/.")));
    QCOMPARE(refused.text(), QStringLiteral("This iTunes Backup has been listed on the left."));
    QCOMPARE(backupCount(window), 1);
}

void TestMainWindow::exportAConversation()
{
    const SampleBackup sample;
    MainWindow window({});
    window.show();
    QVERIFY(window.loadBackup(sample.folder()));
    QAction *exporting = action(window, "IDS_EXPORT");
    QVERIFY(!exporting->isEnabled());
    treeOf(window)->setCurrentIndex(messagesNode(window));
    QTRY_VERIFY(exporting->isEnabled());
    QCOMPARE(exporting->toolTip(), QStringLiteral("Export 1 conversation"));

    QTemporaryDir target;
    std::unique_ptr<AnswerBox> done;
    const OnModal<MessageExportDlg> choose([&](MessageExportDlg &dialog) {
        dialog.setChoice({MessageFormat::Html, target.filePath(QStringLiteral("pages"))});
        done = std::make_unique<AnswerBox>();
        dialog.accept();
    });
    exporting->trigger();
    QVERIFY(done && done->text().startsWith(QStringLiteral("Successfully extracted ")));
    const QDir pages(target.filePath(QStringLiteral("pages")));
    QCOMPARE(pages.entryList({QStringLiteral("*.html")}, QDir::Files).size(), 1);
    QVERIFY(pages.exists(QStringLiteral("files/style.css")));
}

void TestMainWindow::unlist()
{
    const SampleBackup sample;
    const SampleBackup other;
    MainWindow window({});
    window.show();
    QVERIFY(window.loadBackup(sample.folder()));
    treeOf(window)->setCurrentIndex(messagesNode(window));
    QVERIFY(window.loadBackup(other.folder()));
    treeOf(window)->setCurrentIndex(messagesNode(window));
    QPointer<SMSMainForm> view = window.findChild<SMSMainForm *>();
    QVERIFY(view);
    action(window, "IDS_MI_UNMOUNT_BACKUP")->trigger();
    QVERIFY2(!view, "the view of a backup goes with it");
    QCOMPARE(backupCount(window), 1);
    QVERIFY(backupNode(window).data(Qt::ToolTipRole).toString().contains(other.folder()));
    QVERIFY2(window.loadBackup(sample.folder()), "it can be opened again");
}

void TestMainWindow::sampleFromTheStartPage()
{
    MainWindow window({QStringLiteral("/nowhere")});
    window.show();
    auto *offer = window.findChild<QPushButton *>(QStringLiteral("btnStartSample"));
    QVERIFY(offer->isVisible());
    const auto *title = window.findChild<QLabel *>(QStringLiteral("lbStartTitle"));
    QCOMPARE(title->text(), QStringLiteral("No iTunes Backup was found."));
    QTest::mouseClick(offer, Qt::LeftButton);
    QCOMPARE(backupCount(window), 1);
    treeOf(window)->setCurrentIndex(backupsRoot(window));
    QVERIFY(title->isVisible() && !offer->isVisible());
    QVERIFY2(!title->text().contains(QStringLiteral("No iTunes Backup")), qPrintable(title->text()));
}

void TestMainWindow::localDatabases()
{
    const QString family = localDatabasesFolder().filePath(QStringLiteral("Family"));
    QVERIFY(QDir().mkpath(family));
    LocalContactsDb(family).open();
    MainWindow window({});
    window.show();
    const QModelIndex root = treeOf(window)->model()->index(1, 0);
    QCOMPARE(treeOf(window)->model()->rowCount(root), 1);
    treeOf(window)->setCurrentIndex(treeOf(window)->model()->index(0, 0, root));
    QAction *remove = action(window, "IDS_MI_REMVOE_LOCALDB");
    {
        const AnswerBox no(QMessageBox::No);
        remove->trigger();
        QVERIFY2(no.text().contains(QStringLiteral("“Family”")) && no.text().contains(QStringLiteral("Contacts(0)")),
                 qPrintable(no.text()));
        QVERIFY(QFile::exists(family));
    }
    std::unique_ptr<AnswerBox> done;
    const OnModal<MessageBox> yes([&done](MessageBox &box) {
        done = std::make_unique<AnswerBox>();
        QTest::mouseClick(box.button(QMessageBox::Yes), Qt::LeftButton);
    });
    remove->trigger();
    QVERIFY(!QFile::exists(family));
    QVERIFY(QFile::exists(m_home->filePath(QStringLiteral(".local/share/Trash/files/Family/contacts.db"))));
    QVERIFY(done && done->text() == QStringLiteral("Successfully deleted local Database."));
    QCOMPARE(treeOf(window)->model()->rowCount(root), 0);
}

void TestMainWindow::cardsComeIntoALocalDatabase()
{
    QFile cards(m_home->filePath(QStringLiteral("cards.vcf")));
    QVERIFY(cards.open(QIODevice::WriteOnly));
    cards.write("BEGIN:VCARD\nVERSION:2.1\nFN:Ada\nEND:VCARD\nBEGIN:VCARD\nFN:Lost\n"
                "BEGIN:VCARD\nFN:Grace\nEND:VCARD\n");
    cards.close();
    const QString folder = localDatabasesFolder().filePath(QStringLiteral("Friends"));
    MainWindow window({});
    window.show();
    for (int run = 0; run < 2; ++run) {
        const AnswerBox done;
        QVERIFY(window.importCards(cards.fileName(), folder));
        QVERIFY2(done.text().startsWith(
                     run == 0 ? QStringLiteral("Successfully backup 2 contacts.")
                              : QStringLiteral("Successfully backup 2 contacts with 2  merged.")),
                 qPrintable(done.text()));
        QVERIFY2(done.text().contains(
                     QStringLiteral("1 card has no end and is left out: cards.vcf card 2 (Lost)")),
                 qPrintable(done.text()));
    }
    const QModelIndex shown = treeOf(window)->currentIndex();
    QCOMPARE(shown.data().toString(), QStringLiteral("Contacts(2)"));
    QCOMPARE(shown.parent().data().toString(), QStringLiteral("Friends"));
    QTreeView *list = window.findChild<QTreeView *>(QStringLiteral("listRecords"));
    QTRY_COMPARE(list->model()->rowCount(), 2);
    QVERIFY(cards.open(QIODevice::Append));
    cards.write("BEGIN:VCARD\nVERSION:2.1\nFN:Edsger\nEND:VCARD\n");
    cards.close();
    {
        const AnswerBox done;
        QVERIFY(window.importCards(cards.fileName(), folder));
        QTRY_COMPARE(list->model()->rowCount(), 3); // in the view that is open
    }
    const AnswerBox error;
    QVERIFY(!window.importCards(m_home->path() + QStringLiteral("/nothing.vcf"), folder));
    QVERIFY(error.text().contains(QStringLiteral("nothing.vcf")));
}

void TestMainWindow::savingStaysAndShowsTheLocalDatabase()
{
    const SampleBackup sample;
    MainWindow window({});
    window.show();
    QVERIFY(window.loadBackup(sample.folder()));
    const QAbstractItemModel *model = treeOf(window)->model();
    const QModelIndexList calls =
        model->match(backupNode(window), Qt::DisplayRole, QStringLiteral("Call History("), 1,
                     Qt::MatchStartsWith | Qt::MatchRecursive);
    QCOMPARE(calls.size(), 1);
    treeOf(window)->setCurrentIndex(calls.first());
    auto *form = window.findChild<RecordsMainForm *>();
    QTRY_VERIFY(form->saveAction()->isEnabled());
    const AnswerBox done;
    QVERIFY(form->saveInto(localDatabasesFolder().filePath(QStringLiteral("Family"))));
    QCOMPARE(done.text(),
             QStringLiteral("Successfully backup %1 Call History").arg(sample.summary().counts.calls));
    QCOMPARE(treeOf(window)->currentIndex(), calls.first());
    const QModelIndex family = model->index(0, 0, model->index(1, 0));
    QCOMPARE(family.data().toString(), QStringLiteral("Family"));
    QVERIFY(treeOf(window)->isExpanded(family));
    QCOMPARE(model->index(5, 0, family).data().toString(),
             QStringLiteral("Call History(%1)").arg(sample.summary().counts.calls));
}

void TestMainWindow::localViewIsFreshAfterASave()
{
    const SampleBackup sample;
    QVERIFY(QDir().mkpath(localDatabasesFolder().filePath(QStringLiteral("Family"))));
    MainWindow window({});
    window.show();
    QVERIFY(window.loadBackup(sample.folder()));
    const QAbstractItemModel *model = treeOf(window)->model();
    const auto select = [&](const QModelIndex &root, const char *label) {
        treeOf(window)->setCurrentIndex(model
                                            ->match(root, Qt::DisplayRole, QLatin1String(label), 1,
                                                    Qt::MatchStartsWith | Qt::MatchRecursive)
                                            .value(0));
        const auto views = window.findChildren<DataView *>();
        return *std::find_if(views.begin(), views.end(), [](DataView *view) { return view->isVisible(); });
    };
    const QModelIndex family = model->index(0, 0, model->index(1, 0));
    for (const char *label : {"Call History(", "SMS("}) {
        QTRY_VERIFY(select(family, label)->status().startsWith(QStringLiteral("There are no ")));
        DataView *view = select(backupNode(window), label);
        QTRY_VERIFY(view->saveAction()->isEnabled());
        const AnswerBox done;
        const QString folder = localDatabasesFolder().filePath(QStringLiteral("Family"));
        if (auto *messages = qobject_cast<SMSMainForm *>(view))
            QVERIFY(messages->actions().saveInto(folder));
        else
            QVERIFY(qobject_cast<RecordsMainForm *>(view)->saveInto(folder));
        DataView *local = select(family, label);
        QTRY_VERIFY2(local->exportAction()->isEnabled(), label);
        const auto inTheTree = [&] {
            const QString text = treeOf(window)->currentIndex().data().toString();
            return text.section(u'(', 1).chopped(1).toInt();
        };
        const int saved = inTheTree();
        QVERIFY(saved > 1);
        std::unique_ptr<AnswerBox> removed;
        const OnModal<MessageBox> yes([&removed](MessageBox &box) {
            removed = std::make_unique<AnswerBox>();
            QTest::mouseClick(box.button(QMessageBox::Yes), Qt::LeftButton);
        });
        local->removeAction()->trigger();
        QVERIFY(removed && removed->wasShown());
        QVERIFY2(inTheTree() < saved, "the tree counts what is left");
    }
}

void TestMainWindow::messageDatabaseByItself()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("sms.db"));
    const int messages = makeMessageDatabase(path, 12, 50, 0, 1).joinedMessages;
    MainWindow window({});
    window.show();
    QVERIFY(window.loadMessageFile(path));
    QCOMPARE(backupNode(window).data().toString(), QStringLiteral("sms.db"));
    QCOMPARE(treeOf(window)->currentIndex().data().toString(), QStringLiteral("SMS(%1)").arg(messages));
    QTRY_VERIFY(action(window, "IDS_EXPORT")->isEnabled());
    QVERIFY(action(window, "IDS_SAVE_TO_DATABASE")->isEnabled());
    {
        const AnswerBox error;
        QVERIFY(!window.loadMessageFile(folder.filePath(QStringLiteral("chat.db"))));
        QVERIFY(error.text().contains(QStringLiteral("chat.db")));
    }
    action(window, "IDS_MI_UNMOUNT_BACKUP")->trigger();
    QCOMPARE(backupCount(window), 0);
}

QB_WEB_TEST_MAIN(TestMainWindow)
#include "tst_main_window.moc"

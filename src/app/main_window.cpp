#include "app/main_window.h"

#include "app/item_model_bk.h"
#include "app/my_tree_view.h"
#include "app/start_page.h"
#include "app/view_stack.h"
#include "app/web_pages.h"
#include "base/app_folders.h"
#include "base/error.h"
#include "base/file_names.h"
#include "base/shell.h"
#include "base/texts.h"
#include "views/data_view.h"
#include "views/load_itunes_backup_dlg.h"
#include "views/local_database_dlg.h"
#include "work/count_messages_thread.h"
#include "work/elided_label.h"
#include "work/local_databases.h"
#include "work/make_sample_thread.h"
#include "work/message_boxes.h"
#include "work/record_threads.h"
#include "work/run_job.h"
#include "work/update_local_db_thread.h"

#include <QAction>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>

namespace {
constexpr QSize firstSize(1080, 700);

/// Says which one goes, and what goes with it.
QString removalQuestion(const BkNode &database)
{
    QStringList contents;
    for (const auto &child : database.children())
        contents << static_cast<const BkNode *>(child.get())->label();
    return textFor("IDS_CONFIRM_REMOVE_LOCAL_DB_%1_%2")
        .arg(database.label(), contents.join(QStringLiteral(", ")));
}
} // namespace

MainWindow::MainWindow(const QStringList &roots, QWidget *parent)
    : QMainWindow(parent), m_roots(roots), m_model(new ItemModelBK(this))
{
    setWindowTitle(applicationTitle());
    buildActions();
    buildMenus();
    buildToolBar();
    buildCentre();
    buildStatusBar();
    resize(firstSize);

    connect(m_tree, &QAbstractItemView::clicked, this, &MainWindow::bkSelected);
    connect(m_tree, &QAbstractItemView::activated, this, &MainWindow::bkSelected);
    connect(m_tree, &MyTreeView::createContextMenu, this, &MainWindow::mainTreeContext);
    connect(m_tree, &MyTreeView::onSelectionChanged, this, &MainWindow::mainTreeSelected);
    listLoadedBackups();
    listLocalDatabases();
    m_tree->expandAll();
    const auto &listed = m_model->backupsRoot()->children();
    m_tree->setCurrentIndex(m_model->indexOf(listed.empty() ? m_model->backupsRoot() : listed.front().get()));
}

MainWindow::~MainWindow() = default;

void MainWindow::listLocalDatabases()
{
    const QDir folder = localDatabasesFolder();
    const QStringList names = folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Unsorted);
    for (const QString &name : names)
        m_model->addLocalDatabase(folder.filePath(name));
}

void MainWindow::updateLocalDatabases()
{
    const QString folder = localDatabasesFolder().path();
    if (!hasOldLocalDatabases(folder))
        return;
    auto worker = std::make_unique<UpdateLocalDbThread>(folder);
    runJob(QString(), worker, this);
    listLocalDatabases();
}

BkNode *MainWindow::currentNode() const
{
    return m_model->bkNode(m_tree->currentIndex());
}

void MainWindow::miLoadiTunesBackup()
{
    LoadItunesBackupDlg dialog(m_roots, m_model->backupUids(), this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    if (dialog.selectedMessageFile().isEmpty())
        loadBackup(dialog.selectedFolder());
    else
        loadMessageFile(dialog.selectedMessageFile());
}

bool MainWindow::loadMessageFile(const QString &path)
{
    auto worker = std::make_unique<CountMessagesThread>(path);
    if (!runJob(textFor("IDS_PREPARING_MESSAGES"), worker, this))
        return false;
    const BkNode *messages = m_model->addMessageFile(path, worker->count());
    m_tree->expandAll();
    m_tree->setCurrentIndex(m_model->indexOf(messages));
    m_tree->setFocus();
    return true;
}

void MainWindow::makeSample()
{
    const QString folder =
        freeFileName(QDir(sampleBackupsFolder()).filePath(textFor("IDS_SAMPLE_FOLDER_NAME")));
    auto worker = std::make_unique<MakeSampleThread>(folder);
    if (runJob(textFor("IDS_MAKING_SAMPLE"), worker, this))
        loadBackup(folder);
}

void MainWindow::bkSelected(const QModelIndex &)
{
    showCurrent();
    if (needsLoading(currentNode()) || m_model->sourceOf(currentNode()).missingBackup)
        loadSoon();
}

// Not from within the change of the selection: a dialog may come up.
void MainWindow::loadSoon()
{
    QMetaObject::invokeMethod(this, &MainWindow::loadSelected, Qt::QueuedConnection);
}

void MainWindow::showCurrent()
{
    BkNode *node = currentNode();
    const DataSource source = m_model->sourceOf(node);
    m_start->setOffer(m_backupsFound || !m_model->backupsRoot()->children().empty()
                          ? StartPage::Offer::LoadOnly
                          : StartPage::Offer::LoadOrSample);
    m_views->showNode(needsLoading(node) ? source.backup : node, source);
    const BkNode *shown = source.node();
    setWindowTitle(
        shown ? QStringLiteral("%1 (%2)").arg(applicationTitle(), shown->data(Qt::DisplayRole).toString())
              : applicationTitle());
    syncWithView();
}

// Whoever walks through the tree by its keys, or wants a menu, is not asked for a password.
void MainWindow::mainTreeSelected(const QItemSelection &, const QItemSelection &)
{
    showCurrent();
    if (needsLoading(currentNode()) && !isLocked(currentNode()))
        loadSoon();
}

// The window's own actions follow those of the view that is shown.
void MainWindow::follow(QAction *own, QAction *theirs, const char *whyNot)
{
    const auto copy = [own, theirs, whyNot] {
        own->setEnabled(theirs && theirs->isEnabled());
        own->setToolTip(theirs ? theirs->toolTip() : textFor(whyNot));
    };
    copy();
    if (theirs)
        m_followed << connect(theirs, &QAction::changed, own, copy);
}

void MainWindow::syncWithView()
{
    for (const QMetaObject::Connection &connection : std::exchange(m_followed, {}))
        disconnect(connection);
    DataView *view = m_views->currentDataView();
    const DataSource source = m_model->sourceOf(currentNode());
    m_unmount->setEnabled(source.backup || source.messageFile || source.missingBackup);
    m_removeLocalDb->setEnabled(source.localDatabase != nullptr);
    follow(m_save, view ? view->saveAction() : nullptr, "IDS_WHY_NO_SAVE");
    follow(m_export, view ? view->exportAction() : nullptr, "IDS_WHY_NOTHING_TO_EXPORT");
    follow(m_print, view ? view->printAction() : nullptr, "IDS_WHY_NO_PRINT");
    m_search->setEnabled(view != nullptr);
    m_search->setToolTip(textFor(view ? "IDS_SEARCH" : "IDS_WHY_NOTHING_TO_SEARCH"));
    m_reload->setEnabled(view != nullptr);
    if (!view) {
        m_status->setText(isLocked(currentNode()) ? textFor("IDS_STATUS_LOCKED")
                          : source.backup         ? source.backup->label()
                          : source.missingBackup  ? source.missingBackup->reason()
                                                  : QString());
        return;
    }
    const QString name = source.node()->label();
    const auto showStatus = [this, name](const QString &text) {
        m_status->setText(QStringLiteral("%1: %2").arg(name, text));
    };
    showStatus(view->status());
    m_followed << connect(view, &DataView::statusChanged, this, showStatus);
}

void MainWindow::focusFilter()
{
    DataView *view = m_views->currentDataView();
    if (!view)
        return;
    view->filterEdit()->setFocus(Qt::ShortcutFocusReason);
    view->filterEdit()->selectAll();
}

void MainWindow::mainTreeContext()
{
    const DataSource source = m_model->sourceOf(currentNode());
    QMenu menu(this);
    menu.setToolTipsVisible(true);
    if (source.backup)
        menu.addActions({m_cacheMessages, m_clearCacheOfBackup, m_unmount});
    else if (source.messageFile || source.missingBackup)
        menu.addAction(m_unmount);
    else if (source.localDatabase)
        menu.addAction(m_removeLocalDb);
    else
        menu.addAction(m_load);
    menu.exec(QCursor::pos());
}

void MainWindow::forgetViews(const BkNode *source)
{
    for (const auto &child : source->children())
        m_views->forget(static_cast<const BkNode *>(child.get()));
    m_views->forget(source);
}

// A local database that is new shows at once, and the others with what they hold now. The view stays: there
// may be more to save.
BkNode *MainWindow::onStoreChanged(const QString &folder)
{
    BkNode *database = m_model->addLocalDatabase(folder);
    m_tree->expand(m_model->indexOf(m_model->localDatabasesRoot()));
    m_tree->expand(m_model->indexOf(database));
    for (const auto &child : database->children()) {
        const auto *node = static_cast<const BkNode *>(child.get());
        if (node != currentNode())
            m_views->forget(node);
    }
    return database;
}

void MainWindow::miImportCards()
{
    const BkNode *database = m_model->sourceOf(currentNode()).localDatabase;
    askForCards(database ? database->folder() : QString());
}

void MainWindow::askForCards(QString folder)
{
    const QString file = QFileDialog::getOpenFileName(this, textFor("IDS_IMPORT_CARDS_HINT"),
                                                      QDir::homePath(), textFor("IDS_FILTER_VCARD_FILES"));
    if (file.isEmpty())
        return;
    if (folder.isEmpty())
        folder = chooseLocalDatabase(textFor("IDS_IMPORTED_DATABASE_NAME"), this);
    if (!folder.isEmpty())
        importCards(file, folder);
}

bool MainWindow::importCards(const QString &file, const QString &folder)
{
    auto worker = std::make_unique<BackupContactsThread>(RecordSource{nullptr, {}, file}, folder);
    if (!runJob(textFor("IDS_SAVING_CONTACTS"), worker, this))
        return false;
    BkNode *database = onStoreChanged(folder);
    for (const auto &child : database->children()) {
        const auto *node = static_cast<const BkNode *>(child.get());
        if (node->kind() != NodeKind::Contacts)
            continue;
        if (node == currentNode())
            m_views->currentDataView()->reload();
        m_tree->setCurrentIndex(m_model->indexOf(node));
    }
    return true;
}

void MainWindow::miRemoveLocalDb()
{
    BkNode *database = m_model->sourceOf(currentNode()).localDatabase;
    if (!database || !askQuestion(removalQuestion(*database)))
        return;
    try {
        if (!removeLocalDatabase(database->folder())) {
            showErrorBox(textFor("IDS_CANT_DEL_LOCAL_DB"));
            return;
        }
    } catch (const Error &error) {
        showErrorBox(error.sentence());
        return;
    }
    showInformationBox(textFor("IDS_REMOVE_LOCALDB_SUC"));
    forgetViews(database);
    m_model->removeNode(database);
    showCurrent();
}

void MainWindow::miOpenAppFolder()
{
    openFolderInShell(localDatabasesFolder().path());
}

void MainWindow::miHelp()
{
    openInShell(helpPage());
}

void MainWindow::miFeedback()
{
    openInShell(feedbackPage());
}

void MainWindow::miHome()
{
    openInShell(homePage());
}

void MainWindow::miAboutUs()
{
    MessageBox box(BoxIcon::Information,
                   QStringLiteral("<b>%1</b><p>%2</p>").arg(applicationTitle(), textFor("IDS_ABOUT_TEXT")),
                   BoxButton::Ok, this, Qt::RichText);
    box.setIconPixmap(windowIcon().pixmap(64));
    box.ask();
}

// How the window is put together: actions, menus, tool bar, centre and status bar.

#include "app/main_window.h"

#include "app/item_model_bk.h"
#include "app/my_tree_view.h"
#include "app/start_page.h"
#include "app/view_stack.h"
#include "app/web_pages.h"
#include "base/shell.h"
#include "base/texts.h"
#include "views/data_view.h"
#include "work/elided_label.h"

#include <QAction>
#include <QLabel>
#include <QMenuBar>
#include <QSplitter>
#include <QStatusBar>
#include <QToolBar>

namespace {
constexpr int treeWidth = 240;
constexpr int viewWidth = 840;
} // namespace

QAction *MainWindow::newAction(const char *text, const char *icon, void (MainWindow::*slot)())
{
    auto *action = new QAction(textFor(text), this);
    action->setObjectName(QLatin1String(text));
    if (icon)
        action->setIcon(QIcon(QLatin1String(icon)));
    if (slot)
        connect(action, &QAction::triggered, this, slot);
    addAction(action);
    return action;
}

QAction *MainWindow::addUnavailable(const char *text, const char *icon, const char *why)
{
    QAction *action = newAction(text, icon, nullptr);
    action->setEnabled(false);
    action->setToolTip(textFor(why));
    return action;
}

void MainWindow::buildActions()
{
    m_load = newAction("IDS_MI_LOAD_BACKUP", ":/res/load_itunes.png", &MainWindow::miLoadiTunesBackup);
    m_load->setShortcut(QKeySequence::Open);
    m_openFolder = newAction("IDS_MI_OPEN_LOCAL_DB_FOLDER", ":/res/mi_open_local_db_folder.png",
                             &MainWindow::miOpenAppFolder);
    m_exit = newAction("IDS_MI_EXIT", ":/res/exit.png", nullptr);
    m_exit->setShortcut(QKeySequence::Quit);
    connect(m_exit, &QAction::triggered, this, &QWidget::close);
    m_checkUpdate = addUnavailable("IDS_MI_CHECK_UPDATE", nullptr, "IDS_WHY_NO_UPDATE_CHECK");
    m_register = addUnavailable("IDS_MI_REGISTER", ":/res/register.png", "IDS_WHY_NO_REGISTRATION");
    m_clearCaches = newAction("IDS_MI_CLEAR_CACHES", nullptr, &MainWindow::miClearCaches);
    m_help = newAction("IDS_MI_HELP", ":/res/help.png", &MainWindow::miHelp);
    m_help->setShortcut(QKeySequence::HelpContents);
    m_feedback = newAction("IDS_MI_FEEDBACKUP", nullptr, &MainWindow::miFeedback);
    m_about = newAction("IDS_MI_ABOUT_US", nullptr, &MainWindow::miAboutUs);
    m_home = newAction("IDS_MI_HOME", ":/res/home.png", &MainWindow::miHome);

    m_import = newAction("IDS_IMPORT_CARDS", ":/res/act_import.png", &MainWindow::miImportCards);
    m_import->setToolTip(textFor("IDS_IMPORT_CARDS_HINT"));
    m_save = addUnavailable("IDS_SAVE_TO_DATABASE", ":/res/act_save.png", "IDS_WHY_NO_SAVE");
    m_save->setShortcut(QKeySequence::Save);
    connect(m_save, &QAction::triggered, this,
            [this] { m_views->currentDataView()->saveAction()->trigger(); });
    m_export = addUnavailable("IDS_EXPORT", ":/res/act_export.png", "IDS_WHY_NOTHING_TO_EXPORT");
    m_export->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_E));
    connect(m_export, &QAction::triggered, this,
            [this] { m_views->currentDataView()->exportAction()->trigger(); });
    m_print = addUnavailable("IDS_PRINT", ":/res/act_print.png", "IDS_WHY_NO_PRINT");
    m_print->setShortcut(QKeySequence::Print);
    connect(m_print, &QAction::triggered, this,
            [this] { m_views->currentDataView()->printAction()->trigger(); });
    m_search = addUnavailable("IDS_SEARCH", ":/res/act_search.png", "IDS_WHY_NOTHING_TO_SEARCH");
    m_search->setShortcut(QKeySequence::Find);
    connect(m_search, &QAction::triggered, this, &MainWindow::focusFilter);
    m_reload = newAction("IDS_RELOAD", ":/res/act_reload.png", nullptr);
    m_reload->setShortcut(QKeySequence(Qt::Key_F5));
    connect(m_reload, &QAction::triggered, this, [this] { m_views->currentDataView()->reload(); });
    m_unmount = newAction("IDS_MI_UNMOUNT_BACKUP", nullptr, &MainWindow::miUnmountBackup);
    m_clearCacheOfBackup =
        newAction("IDS_MI_CLEAR_CACHE_OF_BACKUP", nullptr, &MainWindow::miClearCacheOfBackup);
    m_cacheMessages = newAction("IDS_MI_CACHE_MESSAGES", nullptr, &MainWindow::miCacheMessages);
    m_cacheMessages->setToolTip(textFor("IDS_CACHE_MESSAGES_HINT"));
    m_removeLocalDb =
        newAction("IDS_MI_REMVOE_LOCALDB", ":/res/act_remove.png", &MainWindow::miRemoveLocalDb);
    // In the lists on the right the same key deletes records.
    m_removeLocalDb->setShortcut(QKeySequence::Delete);
    m_removeLocalDb->setShortcutContext(Qt::WidgetShortcut);
}

void MainWindow::buildMenus()
{
    QMenu *menu = menuBar()->addMenu(textFor("IDS_MI_MENU"));
    menu->addAction(m_load);
    menu->addAction(m_openFolder);
    menu->addSeparator();
    menu->addAction(m_exit);
    QMenu *tools = menuBar()->addMenu(textFor("IDS_MI_TOOLS"));
    tools->addAction(m_checkUpdate);
    tools->addAction(m_register);
    tools->addAction(m_clearCaches);
    QMenu *help = menuBar()->addMenu(textFor("IDS_MI_HELP"));
    help->addAction(m_help);
    help->addAction(m_feedback);
    help->addAction(m_about);
    for (QMenu *each : {menu, tools, help})
        each->setToolTipsVisible(true);
}

void MainWindow::buildToolBar()
{
    auto *bar = new QToolBar(textFor("IDS_TOOL_BAR"));
    bar->setMovable(false);
    bar->setIconSize({24, 24});
    bar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    bar->setContextMenuPolicy(Qt::PreventContextMenu);
    for (QAction *action : {m_load, m_import, m_save, m_export, m_print, m_search})
        bar->addAction(action);
    bar->addSeparator();
    bar->addAction(m_home);
    auto *space = new QWidget;
    space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    bar->addWidget(space);
    auto *banner = new QLabel(QStringLiteral("<img src=\":res/banner.png\"/>"));
    banner->setObjectName(QStringLiteral("lbBanner"));
    banner->setAccessibleName(textFor("IDS_PRODUCT_NAME"));
    bar->addWidget(banner);
    addToolBar(bar);
}

void MainWindow::buildCentre()
{
    m_tree = new MyTreeView;
    m_tree->setObjectName(QStringLiteral("treeSources"));
    m_tree->setAccessibleName(textFor("IDS_ACC_SOURCES"));
    m_tree->setModel(m_model);
    m_tree->addAction(m_removeLocalDb);
    Report unreadable;
    m_backupsFound = !m_list.backups().isEmpty() || !listBackups(m_roots, unreadable).isEmpty();
    m_start = new StartPage(m_backupsFound ? StartPage::Offer::LoadOnly : StartPage::Offer::LoadOrSample);
    connect(m_start, &StartPage::loadRequested, this, &MainWindow::miLoadiTunesBackup);
    connect(m_start, &StartPage::sampleRequested, this, &MainWindow::makeSample);
    m_views = new ViewStack(m_start);
    connect(m_views, &ViewStack::storeChanged, this, &MainWindow::onStoreChanged);
    connect(m_views, &ViewStack::importRequested, this, &MainWindow::askForCards);
    auto *splitter = new QSplitter;
    splitter->addWidget(m_tree);
    splitter->addWidget(m_views);
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({treeWidth, viewWidth});
    splitter->setChildrenCollapsible(false);
    setCentralWidget(splitter);
}

void MainWindow::buildStatusBar()
{
    statusBar()->setStyleSheet(QStringLiteral("QStatusBar::item{border: 0px}"));
    m_status = new ElidedLabel;
    m_status->setObjectName(QStringLiteral("lbStatus"));
    m_status->setContentsMargins(8, 0, 0, 0);
    statusBar()->addWidget(m_status, 1);
    auto *link = new QLabel(
        QStringLiteral("<a href=\"%1\">%2</a>").arg(commandLinePage(), textFor("IDS_COMMAND_LINE_LINK")));
    link->setObjectName(QStringLiteral("lbOtherProduct"));
    link->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    connect(link, &QLabel::linkActivated, this, [](const QString &page) { openInShell(page); });
    statusBar()->addPermanentWidget(link);
}

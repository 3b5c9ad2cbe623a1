#pragma once

#include "backup/backup_list.h"

#include <QMainWindow>

class BkNode;
class ItemModelBK;
class MyTreeView;
class ElidedLabel;
class QItemSelection;
class QModelIndex;
class StartPage;
class ViewStack;

/// The program's one window: the data sources on the left, the view of what is selected there on the right,
/// and what can be done with it above.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// `roots` are searched for backups.
    explicit MainWindow(const QStringList &roots, QWidget *parent = nullptr);
    ~MainWindow() override;

    /// Brings local databases of an older layout up to date, under a dialog. Call once the window shows.
    void updateLocalDatabases();

    /// Opens the backup in a folder and shows it. False when that failed, the user stopped, or it is open.
    bool loadBackup(const QString &folder);
    /// Opens a message database that does not stand in a backup and shows it. False when that failed or the
    /// user stopped.
    bool loadMessageFile(const QString &path);
    /// Saves the contacts of a file of vCards into the local database in `folder` and shows them there. False
    /// when that failed or the user stopped.
    bool importCards(const QString &file, const QString &folder);

public slots:
    void miLoadiTunesBackup();
    void miImportCards();
    void miOpenAppFolder();
    void miClearCaches();
    void miHelp();
    void miFeedback();
    void miAboutUs();
    void miHome();

private slots:
    /// What was clicked, or chosen by Enter: loads it first when it needs that, asking for a password.
    void bkSelected(const QModelIndex &index);
    void mainTreeContext();
    void mainTreeSelected(const QItemSelection &selected, const QItemSelection &deselected);
    void miUnmountBackup();
    void miClearCacheOfBackup();
    void miCacheMessages();
    void loadSelected();
    void miRemoveLocalDb();
    void makeSample();

private:
    void buildActions();
    void buildMenus();
    void buildToolBar();
    void buildCentre();
    void buildStatusBar();
    QAction *newAction(const char *text, const char *icon, void (MainWindow::*slot)());
    QAction *addUnavailable(const char *text, const char *icon, const char *why);
    void listLoadedBackups();
    BkNode *listBackup(const QString &folder);
    void lookForMissing(BkNode *missing);
    bool needsLoading(BkNode *node) const;
    bool isLocked(BkNode *node) const;
    bool ensureLoaded(BkNode *backup);
    void showCounts(BkNode *backup, const struct BackupCounts &counts);
    bool confirmClearing(const QString &question, qint64 bytes);
    void listLocalDatabases();
    void forgetViews(const BkNode *source);
    BkNode *onStoreChanged(const QString &folder);
    void askForCards(QString folder);
    BkNode *currentNode() const;
    void showCurrent();
    void loadSoon();
    void syncWithView();
    void follow(QAction *own, QAction *theirs, const char *whyNot);
    void focusFilter();

    QStringList m_roots;
    ItemModelBK *m_model;
    BackupList m_list;
    bool m_loadingSelected = false;
    MyTreeView *m_tree = nullptr;
    ViewStack *m_views = nullptr;
    ElidedLabel *m_status = nullptr;
    StartPage *m_start = nullptr;
    bool m_backupsFound = false;               // when the program started
    QList<QMetaObject::Connection> m_followed; // what is heard of the view that is shown
    QAction *m_load = nullptr;
    QAction *m_openFolder = nullptr;
    QAction *m_exit = nullptr;
    QAction *m_checkUpdate = nullptr;
    QAction *m_register = nullptr;
    QAction *m_clearCaches = nullptr;
    QAction *m_help = nullptr;
    QAction *m_feedback = nullptr;
    QAction *m_about = nullptr;
    QAction *m_home = nullptr;
    QAction *m_import = nullptr;
    QAction *m_save = nullptr;
    QAction *m_export = nullptr;
    QAction *m_print = nullptr;
    QAction *m_search = nullptr;
    QAction *m_reload = nullptr;
    QAction *m_unmount = nullptr;
    QAction *m_clearCacheOfBackup = nullptr;
    QAction *m_cacheMessages = nullptr;
    QAction *m_removeLocalDb = nullptr;
};

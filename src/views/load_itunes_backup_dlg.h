#pragma once

#include "backup/backup_info.h"

#include <QDialog>
#include <QSet>

class ItemModelBackups;
class QLabel;
class QListView;
class QPushButton;
class NoticeBar;
class StateStack;

/// Lets the user choose one of the backups on this computer, or another folder, or make a sample backup when
/// there is none. Ends accepted with a folder.
class LoadItunesBackupDlg : public QDialog
{
    Q_OBJECT

public:
    /// `roots` are searched for backups; `loaded` are the uids of those that are open already.
    LoadItunesBackupDlg(const QStringList &roots, const QSet<QString> &loaded, QWidget *parent = nullptr);

    /// The folder of the chosen backup.
    QString selectedFolder() const { return m_selected; }
    /// A message database that was chosen instead; empty otherwise.
    QString selectedMessageFile() const { return m_messageFile; }

    /// Adds the backup in a folder, or those in its sub-folders, as the link does once the user has chosen
    /// one.
    void addFolder(const QString &folder);

public slots:
    void btnLoadClicked();
    void btnAddOtherClicked(QString link);

private slots:
    void makeSample();
    void chooseMessageFile();

private:
    void buildWidgets();
    void refreshState();
    void select(int row);
    bool isLoaded(const QString &folder) const;

    QStringList m_roots;
    QSet<QString> m_loaded;
    QString m_selected;
    QString m_messageFile;
    ItemModelBackups *m_model;
    NoticeBar *m_notices = nullptr;
    StateStack *m_states = nullptr;
    QListView *m_list = nullptr;
    QLabel *m_addOther = nullptr;
    QPushButton *m_load = nullptr;
    QPushButton *m_cancel = nullptr;
};

#pragma once

#include "views/data_view.h"
#include "work/open_backup.h"

class ItemModelFileSys;
class QTimer;
class QTreeView;
class StateStack;
class ViewHeader;

/// The files of one backup as a tree, to be looked through and copied out. Needs a backup with an index.
class FileSysMainForm : public DataView
{
    Q_OBJECT

public:
    explicit FileSysMainForm(OpenBackupPtr backup, QWidget *parent = nullptr);

    QLineEdit *filterEdit() const override { return m_filter; }
    void reload() override;

    /// Copies what is selected into `folder` under the progress dialog. True when it was done.
    bool exportTo(const QString &folder);

protected:
    void exportSelection() override;

private slots:
    void applyFilter();
    void onFilterApplied();

private:
    void buildTree();
    void refresh();
    std::vector<FileTree::Node> selectedNodes() const;

    OpenBackupPtr m_backup;
    ItemModelFileSys *m_model;
    ViewHeader *m_header;
    QLineEdit *m_filter;
    QTreeView *m_tree;
    StateStack *m_states;
    QTimer *m_filterDelay;
};

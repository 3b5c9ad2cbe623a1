#pragma once

#include <QTreeView>

/// The tree of data sources. Tells of every change of its selection and of the wish for a context menu, by
/// mouse or keyboard.
class MyTreeView : public QTreeView
{
    Q_OBJECT

public:
    explicit MyTreeView(QWidget *parent = nullptr);

signals:
    void createContextMenu();
    void onSelectionChanged(const QItemSelection &selected, const QItemSelection &deselected);

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
};

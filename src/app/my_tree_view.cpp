#include "app/my_tree_view.h"

#include "views/roomy_delegate.h"

#include <QContextMenuEvent>

MyTreeView::MyTreeView(QWidget *parent) : QTreeView(parent)
{
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setItemDelegate(new RoomyDelegate(this));
    setTextElideMode(Qt::ElideMiddle);
    setFrameShape(QFrame::NoFrame);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
}

void MyTreeView::contextMenuEvent(QContextMenuEvent *event)
{
    emit createContextMenu();
    event->accept();
}

void MyTreeView::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QTreeView::selectionChanged(selected, deselected);
    emit onSelectionChanged(selected, deselected);
}

#pragma once

#include <QHash>
#include <QStackedWidget>

class BkNode;
class DataView;

/// The right side of the window: one view for each node that was looked at, made on the first look.
class ViewStack : public QStackedWidget
{
    Q_OBJECT

public:
    /// `fallback` is shown for nodes without a view of their own; taken over.
    explicit ViewStack(QWidget *fallback, QWidget *parent = nullptr);

    /// `backupNode` is the backup that the node belongs to, or null.
    void showNode(const BkNode *node, const BkNode *backupNode);
    /// Destroys the view of a node that goes away.
    void forget(const BkNode *node);
    /// The data view that is shown, or null.
    DataView *currentDataView() const;

private:
    QWidget *m_fallback;
    QHash<const BkNode *, QWidget *> m_views;
};

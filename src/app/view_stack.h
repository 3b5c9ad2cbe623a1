#pragma once

#include "personal/data_class.h"
#include "work/open_backup.h"

#include <QHash>
#include <QStackedWidget>

class BkNode;
enum class NodeKind;
class DataView;
struct DataSource;

/// The right side of the window: one view for each node that was looked at, made on the first look.
class ViewStack : public QStackedWidget
{
    Q_OBJECT

public:
    /// `fallback` is shown for nodes without a view of their own; taken over.
    explicit ViewStack(QWidget *fallback, QWidget *parent = nullptr);

    /// `source` is what the node belongs to.
    void showNode(const BkNode *node, const DataSource &source);
    /// Destroys the view of a node that goes away.
    void forget(const BkNode *node);
    /// The data view that is shown, or null.
    DataView *currentDataView() const;

signals:
    /// A view has changed what a local database holds.
    void storeChanged(const QString &folder);
    /// Contacts out of a file are wanted in the local database in `folder`.
    void importRequested(const QString &folder);

private:
    QWidget *makeView(const BkNode *node, const DataSource &source);
    QWidget *makeRecordsView(DataClass dataClass, const DataSource &source);
    QWidget *makeBackupView(NodeKind kind, const OpenBackupPtr &backup);
    QWidget *makeMessagesView(const DataSource &source);

    QWidget *m_fallback;
    QHash<const BkNode *, QWidget *> m_views;
};

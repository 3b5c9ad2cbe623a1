#include "app/view_stack.h"

#include "app/item_model_bk.h"
#include "views/bk_desc_form.h"
#include "views/file_sys_main_form.h"
#include "views/sms_main_form.h"

namespace {
// Null for kinds that have no view.
QWidget *makeView(NodeKind kind, const OpenBackupPtr &backup)
{
    switch (kind) {
    case NodeKind::Backup:
        return new BKDescForm(backup->info());
    case NodeKind::Messages:
        return new SMSMainForm(backup);
    case NodeKind::FileSystem:
        return new FileSysMainForm(backup);
    default:
        return nullptr;
    }
}
} // namespace

ViewStack::ViewStack(QWidget *fallback, QWidget *parent) : QStackedWidget(parent), m_fallback(fallback)
{
    addWidget(fallback);
}

void ViewStack::showNode(const BkNode *node, const BkNode *backupNode)
{
    if (!node || !backupNode) {
        setCurrentWidget(m_fallback);
        return;
    }
    QWidget *&view = m_views[node];
    if (!view) {
        view = makeView(node->kind(), backupNode->backup());
        addWidget(view);
    }
    setCurrentWidget(view);
}

void ViewStack::forget(const BkNode *node)
{
    delete m_views.take(node);
}

DataView *ViewStack::currentDataView() const
{
    return qobject_cast<DataView *>(currentWidget());
}

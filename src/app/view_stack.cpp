#include "app/view_stack.h"

#include "app/item_model_bk.h"
#include "views/bk_desc_form.h"
#include "views/file_sys_main_form.h"
#include "views/records_main_form.h"
#include "views/sms_main_form.h"

ViewStack::ViewStack(QWidget *fallback, QWidget *parent) : QStackedWidget(parent), m_fallback(fallback)
{
    addWidget(fallback);
}

// Null for kinds that have no view.
QWidget *ViewStack::makeView(const BkNode *node, const DataSource &source)
{
    if (const auto dataClass = recordClassOf(node->kind())) {
        auto *form = source.backup
                         ? new RecordsMainForm({source.backup->backup(), {}}, *dataClass)
                         : new RecordsMainForm({nullptr, source.localDatabase->folder()}, *dataClass);
        connect(form, &RecordsMainForm::storeChanged, this, &ViewStack::storeChanged);
        connect(form, &RecordsMainForm::importRequested, this, &ViewStack::importRequested);
        return form;
    }
    if (!source.backup)
        return nullptr;
    switch (node->kind()) {
    case NodeKind::Backup:
        return new BKDescForm(source.backup->backup()->info());
    case NodeKind::Messages:
        return new SMSMainForm({source.backup->backup()});
    case NodeKind::FileSystem:
        return new FileSysMainForm(source.backup->backup());
    default:
        return nullptr;
    }
}

void ViewStack::showNode(const BkNode *node, const DataSource &source)
{
    QWidget *view = m_views.value(node);
    if (!view && node && (source.backup || source.localDatabase)) {
        view = makeView(node, source);
        if (view) {
            m_views.insert(node, view);
            addWidget(view);
        }
    }
    setCurrentWidget(view ? view : m_fallback);
}

void ViewStack::forget(const BkNode *node)
{
    delete m_views.take(node);
}

DataView *ViewStack::currentDataView() const
{
    return qobject_cast<DataView *>(currentWidget());
}

#include "app/view_stack.h"

#include "app/item_model_bk.h"
#include "views/bk_desc_form.h"
#include "views/file_sys_main_form.h"
#include "views/photos_main_form.h"
#include "views/recording_main_form.h"
#include "views/records_main_form.h"
#include "views/sms_main_form.h"
#include "views/voicemail_main_form.h"

ViewStack::ViewStack(QWidget *fallback, QWidget *parent) : QStackedWidget(parent), m_fallback(fallback)
{
    addWidget(fallback);
}

// Null for kinds that have no view.
QWidget *ViewStack::makeView(const BkNode *node, const DataSource &source)
{
    switch (node->kind()) {
    case NodeKind::Contacts:
    case NodeKind::Calendar:
    case NodeKind::Notes:
    case NodeKind::CallHistory:
    case NodeKind::Bookmarks:
        return makeRecordsView(*dataClassOf(node->kind()), source);
    case NodeKind::Messages:
        return makeMessagesView(source);
    default:
        return source.backup ? makeBackupView(node->kind(), source.backup->backup()) : nullptr;
    }
}

QWidget *ViewStack::makeRecordsView(DataClass dataClass, const DataSource &source)
{
    auto *form = source.backup ? new RecordsMainForm({source.backup->backup(), {}}, dataClass)
                               : new RecordsMainForm({nullptr, source.localDatabase->folder()}, dataClass);
    connect(form, &RecordsMainForm::storeChanged, this, &ViewStack::storeChanged);
    connect(form, &RecordsMainForm::importRequested, this, &ViewStack::importRequested);
    return form;
}

QWidget *ViewStack::makeBackupView(NodeKind kind, const OpenBackupPtr &backup)
{
    switch (kind) {
    case NodeKind::Backup:
        return new BKDescForm(backup->info());
    case NodeKind::Photos:
        return new PhotosMainForm(backup, CameraRollKind::Photo);
    case NodeKind::Videos:
        return new PhotosMainForm(backup, CameraRollKind::Video);
    case NodeKind::Voicemail:
        return new VoicemailMainForm(backup);
    case NodeKind::Recordings:
        return new RecordingMainForm(backup);
    case NodeKind::FileSystem:
        return new FileSysMainForm(backup);
    default:
        return nullptr;
    }
}

QWidget *ViewStack::makeMessagesView(const DataSource &source)
{
    MessageOrigin origin{source.backup ? source.backup->backup() : nullptr};
    if (source.localDatabase)
        origin.localDatabase = source.localDatabase->folder();
    if (source.messageFile)
        origin.file = source.messageFile->folder();
    auto *form = new SMSMainForm(origin);
    connect(form, &SMSMainForm::storeChanged, this, &ViewStack::storeChanged);
    return form;
}

void ViewStack::showNode(const BkNode *node, const DataSource &source)
{
    QWidget *view = m_views.value(node);
    if (!view && node && source.node()) {
        view = makeView(node, source);
        if (view) {
            m_views.insert(node, view);
            addWidget(view);
        }
    }
    if (auto *description = qobject_cast<BKDescForm *>(view))
        description->setReport(source.backup->report());
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

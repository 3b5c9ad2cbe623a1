#include "views/message_actions.h"

#include "base/texts.h"
#include "views/local_database_dlg.h"
#include "work/attachment_extract_thread.h"
#include "work/backup_mms_thread.h"
#include "work/delete_mms_thread.h"
#include "work/message_boxes.h"
#include "work/print_messages_thread.h"
#include "work/run_job.h"

#include <QAction>
#include <QDir>
#include <QFileDialog>
#include <QIcon>
#include <QPrintDialog>
#include <QPrinter>

MessageActions::MessageActions(const MessageOrigin &origin, std::function<Selection()> selected,
                               QWidget *view)
    : QObject(view),
      m_origin(origin),
      m_selected(std::move(selected)),
      m_view(view),
      m_save(newAction("IDS_SAVE_TO_DATABASE", "actSave", ":/res/act_save.png",
                       &MessageActions::saveToDatabase)),
      m_remove(newAction("IDS_DELETE", "actRemove", ":/res/act_remove.png", &MessageActions::askAndRemove)),
      m_print(newAction("IDS_PRINT", "actPrint", ":/res/act_print.png", &MessageActions::print)),
      m_attachments(newAction("IDS_SAVE_ATTACHMENTS", "actAttachments", ":/res/act_save.png",
                              &MessageActions::extractAttachments))
{
    m_remove->setShortcut(QKeySequence::Delete);
    m_remove->setShortcutContext(Qt::WidgetShortcut);
}

QAction *MessageActions::newAction(const char *text, const char *name, const char *icon,
                                   void (MessageActions::*slot)())
{
    auto *action = new QAction(QIcon(QLatin1String(icon)), textFor(text), this);
    action->setObjectName(QLatin1String(name));
    action->setEnabled(false);
    connect(action, &QAction::triggered, this, slot);
    return action;
}

void MessageActions::setState(const QString &what, const QString &whyNot)
{
    const auto show = [&](QAction *action, const char *text, const char *withWhat) {
        action->setText(what.isEmpty() ? textFor(text) : textFor(withWhat).arg(what));
        action->setToolTip(whyNot.isEmpty() ? action->text() : whyNot);
        action->setEnabled(whyNot.isEmpty());
    };
    show(m_save, "IDS_SAVE_TO_DATABASE", "IDS_SAVE_%1");
    show(m_remove, "IDS_DELETE", "IDS_DELETE_%1");
    show(m_print, "IDS_PRINT", "IDS_PRINT_%1");
    show(m_attachments, "IDS_SAVE_ATTACHMENTS", "IDS_SAVE_ATTACHMENTS_OF_%1");
    m_attachments->setText(textFor("IDS_SAVE_ATTACHMENTS"));
}

void MessageActions::saveToDatabase()
{
    const QString suggestion = m_origin.backup ? m_origin.backup->info().displayName : QString();
    bool update = true;
    const QString folder = chooseLocalDatabase(suggestion, m_view, &update);
    if (!folder.isEmpty())
        saveInto(folder, update ? ChangedMessages::Update : ChangedMessages::Keep);
}

bool MessageActions::saveInto(const QString &folder, ChangedMessages changed)
{
    Selection selection = m_selected();
    auto worker = std::make_unique<BackupMMSThread>(std::move(selection.messages), selection.owner,
                                                    selection.owner->files, folder, changed);
    if (!runJob(textFor("IDS_BACKUPING_MESSAGES"), worker, m_view))
        return false;
    emit storeChanged(folder);
    return true;
}

void MessageActions::askAndRemove()
{
    if (askQuestion(textFor("IDS_CONFIRM_DEL_MESSAGES")))
        remove();
}

bool MessageActions::remove()
{
    std::vector<qint64> rowids;
    for (const MessageRef &ref : m_selected().messages)
        rowids.push_back(ref.message->rowid);
    auto worker = std::make_unique<DeleteMMSThread>(m_origin.localDatabase, std::move(rowids));
    if (!runJob(textFor("IDS_DELETING_MESSAGES"), worker, m_view))
        return false;
    emit storeChanged(m_origin.localDatabase);
    emit outdated();
    return true;
}

void MessageActions::extractAttachments()
{
    const QString folder =
        QFileDialog::getExistingDirectory(m_view, textFor("IDS_EXPORT_INTO_FOLDER"), QDir::homePath());
    if (!folder.isEmpty())
        extractAttachmentsTo(folder);
}

bool MessageActions::extractAttachmentsTo(const QString &folder)
{
    Selection selection = m_selected();
    auto worker = std::make_unique<AttachmentExtractThread>(std::move(selection.messages), selection.owner,
                                                            selection.owner->files, folder);
    return runJob(textFor("IDS_EXTRACTING_ATTACHMENTS"), worker, m_view, folder);
}

void MessageActions::print()
{
    auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    printer->setDocName(textFor("IDS_MESSAGES"));
    QPrintDialog dialog(printer.get(), m_view);
    dialog.setWindowTitle(m_print->text());
    if (dialog.exec() == QDialog::Accepted)
        printOn(printer);
}

bool MessageActions::printOn(std::shared_ptr<QPrinter> printer)
{
    Selection selection = m_selected();
    PrintMessagesThread::Paper paper{printer, [printer] { printer->abort(); }};
    auto worker = std::make_unique<PrintMessagesThread>(std::move(selection.messages), selection.owner,
                                                        selection.owner->files, std::move(paper));
    return runJob(textFor("IDS_PRINTING_MESSAGES"), worker, m_view);
}

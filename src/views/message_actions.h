#pragma once

#include "messages/message_versions.h"
#include "work/loaded_messages.h"

#include <QObject>

#include <functional>

class QAction;
class QPrinter;
class QWidget;

/// What can be done with the messages that are selected in a view, besides exporting them: printing, saving
/// into a local database, deleting there, saving their attachments.
class MessageActions : public QObject
{
    Q_OBJECT

public:
    /// Messages that are selected, some of `owner`'s, by conversation in the order of the exports.
    struct Selection
    {
        LoadedMessagesPtr owner;
        std::vector<MessageRef> messages;
    };

    /// `selected` is asked when something is to be done. Boxes belong to `view`.
    MessageActions(const MessageOrigin &origin, std::function<Selection()> selected, QWidget *view);

    /// Null for a local database, which is where messages are saved.
    QAction *saveAction() const { return isLocal() ? nullptr : m_save; }
    /// Null for anything but a local database.
    QAction *removeAction() const { return isLocal() ? m_remove : nullptr; }
    QAction *printAction() const { return m_print; }
    QAction *attachmentsAction() const { return m_attachments; }

    /// `what` is selected, such as "3 messages". Nothing can be done with it when there is a reason why not.
    void setState(const QString &what, const QString &whyNot);

    /// Each runs one job under the progress dialog; true when it was done.
    bool saveInto(const QString &folder, ChangedMessages changed = ChangedMessages::Update);
    bool remove();
    bool extractAttachmentsTo(const QString &folder);
    bool printOn(std::shared_ptr<QPrinter> printer);

signals:
    /// A local database has got messages, or lost some.
    void storeChanged(const QString &folder);
    /// The messages that the view shows are others now.
    void outdated();

private:
    bool isLocal() const { return !m_origin.localDatabase.isEmpty(); }
    QAction *newAction(const char *text, const char *name, const char *icon, void (MessageActions::*slot)());
    void saveToDatabase();
    void askAndRemove();
    void extractAttachments();
    void print();

    MessageOrigin m_origin;
    std::function<Selection()> m_selected;
    QWidget *m_view;
    QAction *m_save;
    QAction *m_remove;
    QAction *m_print;
    QAction *m_attachments;
};

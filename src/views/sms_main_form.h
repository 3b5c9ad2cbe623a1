#pragma once

#include "views/data_view.h"
#include "views/message_actions.h"
#include "work/loaded_messages.h"

#include <memory>

class BackgroundJob;
class ConversationFilter;
class ConversationSummary;
class ConversationView;
class DateRangeEdit;
class FindMessagesThread;
class ItemModelSms;
class LoadMessagesThread;
class NoticeBar;
class QStackedWidget;
class QTreeView;
class StateStack;
class ViewHeader;
struct MessageExportChoice;
struct _MsgChat;

/// The messages of one source: its conversations on the left, the selected one on the right, or what is to be
/// known of several. Loads them on a worker when it is made and again on reload().
class SMSMainForm : public DataView
{
    Q_OBJECT

public:
    explicit SMSMainForm(MessageOrigin origin, QWidget *parent = nullptr);
    ~SMSMainForm() override;

    QLineEdit *filterEdit() const override { return m_filter; }
    QAction *saveAction() const override { return m_actions->saveAction(); }
    QAction *removeAction() const override { return m_actions->removeAction(); }
    QAction *printAction() const override { return m_actions->printAction(); }
    void reload() override;

    /// Exports what is selected as chosen, under the progress dialog. True when it was done.
    bool exportTo(const MessageExportChoice &choice);
    /// The other things that can be done with what is selected.
    MessageActions &actions() const { return *m_actions; }

signals:
    /// A local database has got messages, or lost some.
    void storeChanged(const QString &folder);

protected:
    void exportSelection() override;

private:
    void buildWidgets();
    void buildList();
    void onLoaded(const LoadMessagesThread &worker);
    void showEmpty(const Report &report);
    void onFailed(const QString &text);
    void onFilterChanged();
    void keepSelected(const std::function<void()> &change);
    void search();
    void onFound(const FindMessagesThread &worker);
    void refresh();
    void showDetail(const std::vector<const _MsgChat *> &chats);
    void showFound(const _MsgChat &chat);
    void showActions();
    void disableActions(const QString &whyNot);
    void showCounts(std::size_t selected);
    QString selectedText() const;
    std::vector<const _MsgChat *> selectedChats() const;
    MessageActions::Selection selection() const;

    MessageOrigin m_origin;
    Scope m_scope = Scope::Usual;
    LoadedMessagesPtr m_messages;
    std::unique_ptr<BackgroundJob> m_job;
    std::unique_ptr<BackgroundJob> m_search;
    qint64 m_shownFound = 0; // the message that was turned to because it was found
    MessageActions *m_actions;
    ItemModelSms *m_model;
    ConversationFilter *m_proxy;
    ViewHeader *m_header = nullptr;
    QLineEdit *m_filter = nullptr;
    DateRangeEdit *m_range = nullptr;
    NoticeBar *m_notices = nullptr;
    StateStack *m_states = nullptr;
    QTreeView *m_list = nullptr;
    QStackedWidget *m_detail = nullptr;
    ConversationSummary *m_summary = nullptr;
    ConversationView *m_conversation = nullptr;
};

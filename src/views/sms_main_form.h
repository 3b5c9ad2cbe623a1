#pragma once

#include "views/data_view.h"
#include "work/loaded_messages.h"

#include <memory>

class BackgroundJob;
class ConversationFilter;
class ConversationSummary;
class ConversationView;
class DateRangeEdit;
class ItemModelSms;
class LoadMessagesThread;
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
    void reload() override;

    /// Exports the selected conversations as chosen, under the progress dialog. True when it was done.
    bool exportTo(const MessageExportChoice &choice);

protected:
    void exportSelection() override;

private:
    void buildWidgets();
    void buildList();
    void onLoaded(const LoadMessagesThread &worker);
    void onFailed(const QString &text);
    void onFilterChanged();
    void refresh();
    void showCounts(std::size_t selected);
    std::vector<const _MsgChat *> selectedChats() const;

    MessageOrigin m_origin;
    LoadedMessagesPtr m_messages;
    std::unique_ptr<BackgroundJob> m_job;
    ItemModelSms *m_model;
    ConversationFilter *m_proxy;
    ViewHeader *m_header = nullptr;
    QLineEdit *m_filter = nullptr;
    DateRangeEdit *m_range = nullptr;
    StateStack *m_states = nullptr;
    QTreeView *m_list = nullptr;
    QStackedWidget *m_detail = nullptr;
    ConversationSummary *m_summary = nullptr;
    ConversationView *m_conversation = nullptr;
};

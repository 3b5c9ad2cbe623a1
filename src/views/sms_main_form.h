#pragma once

#include "views/data_view.h"
#include "work/open_backup.h"

#include <memory>

class AbsMessageDb;
class BackgroundJob;
class ConversationFilter;
class ConversationSummary;
class DateRangeEdit;
class ItemModelSms;
class LoadMessagesThread;
class QTreeView;
class StateStack;
class ViewHeader;
struct MessageExportChoice;
struct _MsgChat;

/// The messages of one backup: its conversations on the left, what is to be known of the selected ones on the
/// right. Loads them on a worker when it is made and again on reload().
class SMSMainForm : public DataView
{
    Q_OBJECT

public:
    explicit SMSMainForm(OpenBackupPtr backup, QWidget *parent = nullptr);
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
    void onLoaded(LoadMessagesThread &worker);
    void onFailed(const QString &text);
    void onFilterChanged();
    void refresh();
    void showCounts(std::size_t selected);
    std::vector<const _MsgChat *> selectedChats() const;

    OpenBackupPtr m_backup;
    std::shared_ptr<AbsMessageDb> m_messages;
    std::unique_ptr<BackgroundJob> m_job;
    ItemModelSms *m_model;
    ConversationFilter *m_proxy;
    ViewHeader *m_header = nullptr;
    QLineEdit *m_filter = nullptr;
    DateRangeEdit *m_range = nullptr;
    StateStack *m_states = nullptr;
    QTreeView *m_list = nullptr;
    ConversationSummary *m_summary = nullptr;
};

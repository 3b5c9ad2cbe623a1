#pragma once

#include "messages/abs_message_db.h"
#include "views/date_range_edit.h"

#include <QWidget>

#include <memory>

class ElidedLabel;
class ItemModelMessages;
class QLabel;
class QListView;
class StateStack;

/// Tells about the selected conversations without opening them: who takes part, how many messages there are,
/// from when to when, and the newest of them.
class ConversationSummary : public QWidget
{
    Q_OBJECT

public:
    explicit ConversationSummary(QWidget *parent = nullptr);

    /// `chats`, at least one, belong to `owner`, which is kept. Messages outside of `range` do not count.
    void showConversations(const std::vector<const _MsgChat *> &chats, const DateRange &range,
                           std::shared_ptr<const void> owner);
    /// What stands here while nothing is selected.
    void showNothing(const QString &text);

private:
    StateStack *m_states;
    ElidedLabel *m_title;
    QLabel *m_people;
    QLabel *m_facts;
    QLabel *m_newest;
    QListView *m_list;
    ItemModelMessages *m_model;
};

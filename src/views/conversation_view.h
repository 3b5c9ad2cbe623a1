#pragma once

#include "views/date_range_edit.h"
#include "work/loaded_messages.h"

#include <QWidget>

#include <vector>

class BubbleViewMgr;
class ElidedLabel;
class ItemModelMessages;
class QButtonGroup;
class QLabel;
class QListView;
class QStackedWidget;
class QToolButton;

/// One conversation: who takes part and when above, below its messages as bubbles, page by page, or as a list
/// to choose some from.
class ConversationView : public QWidget
{
    Q_OBJECT

public:
    explicit ConversationView(QWidget *parent = nullptr);
    ~ConversationView() override;

    /// `chat` is one of `owner`'s; messages outside of `range` are left out. Keeps its place when nothing has
    /// changed.
    void showConversation(const _MsgChat &chat, const DateRange &range, LoadedMessagesPtr owner);
    /// Lets go of the messages.
    void clear();
    /// Turns to a message; nothing happens when it is not here.
    void showMessage(qint64 rowid);

    /// What is chosen in the list; empty while bubbles are shown.
    std::vector<MessageRef> chosenMessages() const;
    std::size_t chosenCount() const;
    /// The list that messages are chosen in.
    QListView *messageList() const { return m_list; }

signals:
    void choiceChanged();

protected:
    void changeEvent(QEvent *event) override;

private:
    enum Look { Bubbles, List };

    QWidget *buildTop();
    QWidget *buildPageBar();
    void buildList();
    QToolButton *addLook(Look look, const char *text);
    QToolButton *addPageButton(QWidget *bar, const char *text, void (BubbleViewMgr::*turn)());
    BubbleViewMgr &bubbles();
    bool isList() const;
    void showLook();
    void showPlace();
    void setFacts(const _MsgChat &chat);

    LoadedMessagesPtr m_owner;
    const _MsgChat *m_chat = nullptr;
    DateRange m_range;
    std::vector<MessageRef> m_messages;
    BubbleViewMgr *m_bubbles = nullptr;
    bool m_bubblesCurrent = false; // they show m_messages
    ItemModelMessages *m_model;
    ElidedLabel *m_title;
    ElidedLabel *m_facts;
    QButtonGroup *m_looks;
    QStackedWidget *m_stack;
    QWidget *m_pageBar = nullptr;
    QLabel *m_place = nullptr;
    std::vector<QToolButton *> m_back;
    std::vector<QToolButton *> m_forward;
    QListView *m_list = nullptr;
};

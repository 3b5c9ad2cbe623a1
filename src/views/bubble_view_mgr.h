#pragma once

#include "work/loaded_messages.h"

#include <QObject>
#include <QUrl>

#include <memory>

class BackgroundJob;
class ConversationWebPage;
class PageServer;
class QWebEngineProfile;
class QWebEngineView;

/// Shows the messages of one conversation as chat bubbles, 50 to a page, in a web view that runs nothing and
/// loads nothing from outside.
class BubbleViewMgr : public QObject
{
    Q_OBJECT

public:
    /// Drives `view`, which must outlive it or be its child.
    explicit BubbleViewMgr(QWebEngineView *view, QObject *parent = nullptr);
    ~BubbleViewMgr() override;

    /// The messages to show, in their order, some of `owner`'s. Shows the first page; an empty one when there
    /// are none.
    void setMessages(std::vector<MessageRef> messages, LoadedMessagesPtr owner);
    /// From 1; 0 when there are no messages.
    int page() const { return m_page; }
    int pageCount() const { return m_pageCount; }
    /// Turns to the page that has the message, and to the message on it. False when it is not among them.
    bool showMessage(qint64 rowid);
    /// Follows the window's colours.
    void setDark(bool dark);

public slots:
    void firstPage();
    void prePage();
    void nextPage();
    void lastPage();
    void onLoadFinish(bool ok);
    void onLinkClicked(const QUrl &url);

signals:
    void pageChanged();

private:
    void render(int page, const QString &anchor);
    void openOrSave(const _MsgAttachment &attachment);
    void fetch(const _MsgAttachment &attachment, const QString &copyToOpen);

    QWebEngineView *m_view;
    std::unique_ptr<PageServer> m_server;
    std::unique_ptr<QWebEngineProfile> m_profile;
    std::unique_ptr<ConversationWebPage> m_web;
    std::unique_ptr<BackgroundJob> m_fetch;
    std::vector<MessageRef> m_messages;
    LoadedMessagesPtr m_owner;
    int m_page = 0;
    int m_pageCount = 0;
    QString m_anchor;
};

#pragma once

#include "export/conversation_page.h"
#include "work/loaded_messages.h"

#include <QThreadPool>
#include <QWebEngineUrlSchemeHandler>

#include <atomic>
#include <functional>
#include <unordered_map>

/// One page as it is shown, with all that its addresses lead to. Read by several threads.
struct ShownPage
{
    ConversationPage page;
    LoadedMessagesPtr owner;
    std::unordered_map<qint64, const _MsgAttachment *> attachments; // by row id
    mutable std::atomic<bool> left = false; // nobody looks at it any more: what is under way may stop

    const _MsgAttachment *attachment(qint64 rowid) const;
};

/// Answers what a conversation's page asks for: the page itself, its style, emoji, small pictures.
/// Attachments are fetched when the page asks for them, on threads of this object's own. Used by the window's
/// thread.
class PageServer : public QWebEngineUrlSchemeHandler
{
    Q_OBJECT

public:
    explicit PageServer(QObject *parent = nullptr);
    ~PageServer() override;

    /// Shows the page from now on, and gives the address to load, which no page had before.
    QUrl show(std::shared_ptr<ShownPage> page);
    /// The attachment that an address of the page means, or null.
    const _MsgAttachment *attachmentOf(const QUrl &url) const;
    void setDark(bool dark) { m_dark = dark; }

    void requestStarted(QWebEngineUrlRequestJob *job) override;

private:
    struct Answer
    {
        QByteArray type;
        QByteArray content;
    };

    void answerLater(QWebEngineUrlRequestJob *job, std::function<Answer()> make);
    static void answer(QWebEngineUrlRequestJob *job, const Answer &answer);
    QByteArray styleSheet() const;

    std::shared_ptr<ShownPage> m_page;
    quint64 m_shown = 0;
    bool m_dark = false;
    QThreadPool m_threads;
};

#include "work/find_messages_thread.h"

#include "export/message_text.h"

#include <QStringMatcher>

namespace {
constexpr int messagesBetweenLooks = 1000;

bool says(const _MsgMessage &message, const QStringMatcher &wanted)
{
    if (message.item_type != 0)
        return wanted.indexIn(systemText(message)) >= 0;
    return wanted.indexIn(message.text) >= 0 || wanted.indexIn(message.subject) >= 0;
}
} // namespace

FoundMessages findMessages(const AbsMessageDb &messages, const QString &text, qint64 from, qint64 to,
                           Progress &progress)
{
    const QStringMatcher wanted(text, Qt::CaseInsensitive);
    FoundMessages found;
    int looked = 0;
    for (const _MsgChat *chat : messages.conversations())
        for (const _MsgMessage *message : chat->messages) {
            if (++looked % messagesBetweenLooks == 0)
                progress.check();
            if (message->date < from || message->date > to)
                continue;
            if (!says(*message, wanted))
                continue;
            found.emplace(chat, message->rowid);
            break;
        }
    return found;
}

FindMessagesThread::FindMessagesThread(LoadedMessagesPtr messages, QString text, qint64 from, qint64 to)
    : m_messages(std::move(messages)), m_text(std::move(text)), m_from(from), m_to(to)
{
}

QString FindMessagesThread::work(Progress &progress)
{
    m_found = findMessages(*m_messages->database, m_text, m_from, m_to, progress);
    return {};
}

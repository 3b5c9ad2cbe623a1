#include "work/count_messages_thread.h"

#include "messages/message_source.h"

CountMessagesThread::CountMessagesThread(QString path) : m_path(std::move(path)) {}

QString CountMessagesThread::work(Progress &progress)
{
    const MessageSource source = openMessageFile(m_path);
    progress.check();
    m_count = source.database->countMessages();
    return {};
}

#include "work/load_messages_thread.h"

LoadMessagesThread::LoadMessagesThread(MessageOrigin origin) : m_origin(std::move(origin)) {}

QString LoadMessagesThread::work(Progress &progress)
{
    m_messages = loadMessages(m_origin, progress);
    return {};
}

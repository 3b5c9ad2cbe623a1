#include "work/load_messages_thread.h"

LoadMessagesThread::LoadMessagesThread(MessageOrigin origin, Scope scope)
    : m_origin(std::move(origin)), m_scope(scope)
{
}

Report LoadMessagesThread::report() const
{
    Report report;
    if (m_messages)
        report.merge(m_messages->database->report());
    if (m_origin.backup)
        report.merge(m_origin.backup->manifest().report());
    return report;
}

QString LoadMessagesThread::work(Progress &progress)
{
    m_messages = loadMessages(m_origin, progress, m_scope);
    return {};
}

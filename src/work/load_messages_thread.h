#pragma once

#include "work/loaded_messages.h"
#include "work/worker_thread.h"

/// Reads all conversations and messages of one origin.
class LoadMessagesThread : public WorkerThread
{
    Q_OBJECT

public:
    explicit LoadMessagesThread(MessageOrigin origin, Scope scope = Scope::Usual);

    /// To be read after success. Null when the origin has no message database.
    const LoadedMessagesPtr &messages() const { return m_messages; }
    /// What does not come with them, and what the backup's catalogue lost.
    Report report() const;

protected:
    QString work(Progress &progress) override;

private:
    MessageOrigin m_origin;
    Scope m_scope;
    LoadedMessagesPtr m_messages;
};

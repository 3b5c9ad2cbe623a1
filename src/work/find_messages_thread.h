#pragma once

#include "work/loaded_messages.h"
#include "work/worker_thread.h"

#include <unordered_map>

/// By conversation, the row id of the first message that was found in it.
using FoundMessages = std::unordered_map<const _MsgChat *, qint64>;

/// Looks in the subjects and texts of the messages, and in what is said of system items, between two dates
/// (Apple absolute seconds, both count) for `text`, whatever its case. Throws Cancelled.
FoundMessages findMessages(const AbsMessageDb &messages, const QString &text, qint64 from, qint64 to,
                           Progress &progress);

/// Finds the conversations that say something.
class FindMessagesThread : public WorkerThread
{
    Q_OBJECT

public:
    FindMessagesThread(LoadedMessagesPtr messages, QString text, qint64 from, qint64 to);

    /// To be read after success.
    const FoundMessages &found() const { return m_found; }

protected:
    QString work(Progress &progress) override;

private:
    LoadedMessagesPtr m_messages;
    QString m_text;
    qint64 m_from;
    qint64 m_to;
    FoundMessages m_found;
};

#pragma once

#include "messages/msg_records.h"
#include "work/message_files.h"
#include "work/worker_thread.h"

#include <functional>

class QPagedPaintDevice;

/// Prints messages.
class PrintMessagesThread : public WorkerThread
{
    Q_OBJECT

public:
    struct Paper
    {
        std::shared_ptr<QPagedPaintDevice> device;
        std::function<void()> abort; // called on failure and cancel, before the device is let go; may be empty
    };

    /// `messages` point into records that must live until the worker has ended: `owner` is kept for that.
    PrintMessagesThread(std::vector<MessageRef> messages, std::shared_ptr<const void> owner,
                        MessageFiles files, Paper paper);

protected:
    QString work(Progress &progress) override;

private:
    std::vector<MessageRef> m_messages;
    std::shared_ptr<const void> m_owner;
    MessageFiles m_files;
    Paper m_paper;
};

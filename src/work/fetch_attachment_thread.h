#pragma once

#include "work/loaded_messages.h"
#include "work/worker_thread.h"

#include <optional>

/// Gets one attachment as a file of this computer.
class FetchAttachmentThread : public WorkerThread
{
    Q_OBJECT

public:
    /// `attachment` is one of `owner`'s.
    FetchAttachmentThread(const _MsgAttachment &attachment, LoadedMessagesPtr owner);

    /// To be read after success: where the file is. Nothing when it is not there.
    const std::optional<QString> &path() const { return m_path; }

protected:
    QString work(Progress &progress) override;

private:
    const _MsgAttachment &m_attachment;
    LoadedMessagesPtr m_owner;
    std::optional<QString> m_path;
};

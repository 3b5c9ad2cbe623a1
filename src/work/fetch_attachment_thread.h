#pragma once

#include "work/loaded_messages.h"
#include "work/worker_thread.h"

#include <optional>

/// Gets one attachment as a file of this computer.
class FetchAttachmentThread : public WorkerThread
{
    Q_OBJECT

public:
    /// `attachment` is one of `owner`'s. With a destination the file is copied there; without one it stays
    /// where it is when it lies on this computer, and must not be changed.
    FetchAttachmentThread(const _MsgAttachment &attachment, LoadedMessagesPtr owner,
                          QString destination = {});

    /// To be read after success: where the file is. Nothing when it is not there.
    const std::optional<QString> &path() const { return m_path; }

protected:
    QString work(Progress &progress) override;

private:
    const _MsgAttachment &m_attachment;
    LoadedMessagesPtr m_owner;
    QString m_destination;
    std::optional<QString> m_path;
};

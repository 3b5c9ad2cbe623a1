#pragma once

#include "export/message_export.h"
#include "work/message_files.h"
#include "work/worker_thread.h"

/// Copies every attachment of the messages into a folder, each once, under a free name. Throws Error and
/// Cancelled; what was copied by then stays.
ExportedMessages extractAttachments(const std::vector<MessageRef> &messages, const MessageFiles &files,
                                    const QString &folder, Progress &progress);

/// Copies attachments of messages to a folder.
class AttachmentExtractThread : public WorkerThread
{
    Q_OBJECT

public:
    /// `messages` point into records that must live until the worker has ended: `owner` is kept for that.
    AttachmentExtractThread(std::vector<MessageRef> messages, std::shared_ptr<const void> owner,
                            MessageFiles files, QString folder);

protected:
    QString work(Progress &progress) override;

private:
    std::vector<MessageRef> m_messages;
    std::shared_ptr<const void> m_owner;
    MessageFiles m_files;
    QString m_folder;
};

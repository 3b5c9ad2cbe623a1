#pragma once

#include "export/message_export.h"
#include "work/message_files.h"
#include "work/worker_thread.h"

/// The success text of an export, followed by what was left out and why.
QString messageExportText(const ExportedMessages &exported);

/// Exports messages.
class ExportMessagesThread : public WorkerThread
{
    Q_OBJECT

public:
    /// `messages` point into records that must live until the worker has ended: `owner` is kept for that.
    ExportMessagesThread(std::vector<MessageRef> messages, std::shared_ptr<const void> owner,
                         MessageFormat format, QString target, MessageFiles files);

    /// To be read after success.
    const ExportedMessages &exported() const { return m_exported; }

protected:
    QString work(Progress &progress) override;

private:
    std::vector<MessageRef> m_messages;
    std::shared_ptr<const void> m_owner;
    MessageFormat m_format;
    QString m_target;
    MessageFiles m_files;
    ExportedMessages m_exported;
};

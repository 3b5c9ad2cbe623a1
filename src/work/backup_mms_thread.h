#pragma once

#include "messages/save_messages.h"
#include "work/message_files.h"
#include "work/worker_thread.h"

/// Saves messages into the store in a local database's folder. Throws Error and Cancelled.
SavedMessages backUpMessages(const std::vector<MessageRef> &messages, const MessageFiles &files,
                             const QString &folder, ChangedMessages changed, Progress &progress);

/// The success text of such a job, followed by what was left out and why.
QString messageSaveText(const SaveReport &saved);

/// Saves messages into a local database.
class BackupMMSThread : public WorkerThread
{
    Q_OBJECT

public:
    /// `messages` point into records that must live until the worker has ended: `owner` is kept for that.
    /// `folder` is the local database's.
    BackupMMSThread(std::vector<MessageRef> messages, std::shared_ptr<const void> owner, MessageFiles files,
                    QString folder, ChangedMessages changed);

    /// To be read after success.
    const SavedMessages &saved() const { return m_saved; }

protected:
    QString work(Progress &progress) override;

private:
    std::vector<MessageRef> m_messages;
    std::shared_ptr<const void> m_owner;
    MessageFiles m_files;
    QString m_folder;
    ChangedMessages m_changed;
    SavedMessages m_saved;
};

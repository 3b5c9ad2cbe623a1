#pragma once

#include "messages/local_message_store.h"
#include "messages/message_import.h"

#include <optional>

/// One job that adds messages, with their files, to the message store in a folder, in one transaction.
/// Without finish(), and when the process is killed, the store is as it was before.
class MessageSaving
{
public:
    /// Opens the store, or makes it. `source` has the files of attachments and may be null; `messages` are
    /// those that will be added. Throws Error.
    MessageSaving(const QString &folder, FileSource *source, const std::vector<MessageRef> &messages,
                  ChangedMessages changed);
    MessageSaving(const MessageSaving &) = delete;
    MessageSaving &operator=(const MessageSaving &) = delete;

    /// Throws Error.
    void add(const MessageRef &ref) { m_import->add(ref); }
    /// Makes it last. Throws Error.
    SavedMessages finish();

private:
    /// Takes a store away again that was not there before, and the folder that was made for it: an empty one
    /// is a change, too.
    class AsBefore
    {
    public:
        explicit AsBefore(const QString &folder);
        ~AsBefore();
        AsBefore(const AsBefore &) = delete;
        AsBefore &operator=(const AsBefore &) = delete;

        /// The store is open and locked by this job: what is in it now was not written by another one.
        void lockedStore(Sqlite3DB &store);
        void dismiss() { m_dismissed = true; }

    private:
        QString m_folder;
        bool m_folderWasThere;
        bool m_storeWasThere;
        bool m_storeIsOurs = false;
        bool m_dismissed = false;
    };

    // Destroyed from the last to the first: the new files go while the store is still locked, its own file
    // when it is closed.
    AsBefore m_asBefore;
    LocalMessageStore m_store;
    std::optional<Sqlite3Transaction> m_transaction;
    std::optional<AttachmentIntake> m_files;
    std::optional<MessageImport> m_import;
};

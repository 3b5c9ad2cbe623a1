#pragma once

#include "export/abs_format_export.h"
#include "messages/message_saving.h"

/// Messages as a message database: "messages.db" in a folder, with the attachments beside it, in the form of
/// the local message store, so that it can be opened as a source of messages. One that is there already is
/// added to.
class ExportMessagesDb : public AbsFormatExport<MessageRef>
{
public:
    /// `messages` are those that will be written; `source` has their attachments and may be null.
    ExportMessagesDb(QString folder, FileSource *source, const std::vector<MessageRef> &messages);

    void begin() override;
    void write(const MessageRef &ref) override;
    void end() override;

    QString path() const { return LocalMessageStore::pathIn(m_folder); }
    /// To be read after end().
    const SavedMessages &saved() const { return m_saved; }

private:
    QString m_folder;
    FileSource *m_source;
    const std::vector<MessageRef> &m_messages;
    std::optional<MessageSaving> m_saving;
    SavedMessages m_saved;
};

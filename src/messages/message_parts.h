#pragma once

#include "backup/scratch_folder.h"
#include "messages/msg_records.h"

#include <QHash>

/// One row of the parts that a multimedia message of iOS 5 or earlier is made of.
struct MessagePart
{
    qint64 rowid = 0;
    qint64 messageId = 0;
    qint64 partId = 0;
    qint64 groupId = 0;
    bool isOutgoing = false;
    QString contentType;
    QString contentLocation; // the name that the sender gave it
    QByteArray data;         // empty when the device keeps it in a file

    bool isText() const;
    /// Layout, which nobody wants to see, and parts of no kind.
    bool isHidden() const;
    /// Where the device keeps its file, without a leading "/".
    QString devicePath() const;
};

/// Makes attachments out of parts. Parts whose bytes stand in the database get a file in a private folder,
/// which goes with this object.
class MessageParts
{
public:
    MessageParts();

    /// Fills the record of a part that is neither text nor hidden; its name is unlike those of the parts of
    /// the same message before it. Throws Error when the bytes cannot be written; the record is whole but for
    /// its local path then.
    void fill(_MsgAttachment &attachment, const MessagePart &part);
    void clear();

private:
    QString freeName(const MessagePart &part);

    ScratchFolder m_scratch;
    QHash<qint64, QHash<QString, int>>
        m_names; // by message: the names in use, and the last number that was appended
};

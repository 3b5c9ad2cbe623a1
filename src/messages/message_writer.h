#pragma once

#include "messages/msg_records.h"
#include "messages/record_insert.h"

#include <optional>

/// Registers the functions that the triggers of a device call, which do nothing here, and forgets what a
/// device has noted about deleted messages, where there are such tables. Throws Error.
void prepareForWriting(Sqlite3DB &db);

/// Writes records into tables of the iOS 6+ kind: the message store, a copy of a device's database. Adapts to
/// the columns that the tables have. The statements are prepared once and kept; the database must outlive
/// this object, and the caller opens and ends the transaction. Everything throws Error.
class MessageWriter
{
public:
    /// Takes note of the columns; `db` is one that prepareForWriting() was called for.
    explicit MessageWriter(Sqlite3DB &db);

    std::optional<qint64> findChat(const QString &guid);
    std::optional<qint64> findHandle(const QString &id, const QString &service);
    std::optional<qint64> findMessage(const QString &guid);
    std::optional<qint64> findAttachment(const QString &guid);
    /// Nothing, too, where messages have no such column.
    std::optional<qint64> findByLogicHash(const QString &hash);

    /// Each inserts a record and gives its row id. A handle keeps its own where that is free: the handles of
    /// a conversation are named in the order of their row ids.
    qint64 insertChat(const _MsgChat &chat);
    qint64 insertHandle(const _MsgHandle &handle);
    qint64 insertAttachment(const _MsgAttachment &attachment);
    struct MessageLinks
    {
        qint64 handle = 0;
        qint64 otherHandle = -1;
        QString logicHash;
    };
    /// Nothing when the GUID is taken already. The row ids of the handles are those of this database.
    std::optional<qint64> insertMessage(const _MsgMessage &message, const MessageLinks &links);

    /// True when the text, the date and the direction of a message are those of the row.
    bool hasContent(qint64 row, const _MsgMessage &message);
    /// Gives a row of the message store the content of a newer version of its message: text, sender, dates
    /// and read state.
    void updateMessage(qint64 row, const _MsgMessage &message, const MessageLinks &links);
    /// Notes in a row of the message store that its message was delivered and read in the meantime. A message
    /// of another GUID, which the row stands for as well, says nothing of that.
    void raiseReadState(qint64 row, const _MsgMessage &message);

    void joinHandle(qint64 chat, qint64 handle);
    bool isJoined(qint64 chat, qint64 message);
    void joinMessage(qint64 chat, qint64 message, int date);
    void joinAttachment(qint64 message, qint64 attachment);
    /// Gives a handle that has no name yet that of the record, and its picture.
    void nameHandle(qint64 handle, const _MsgHandle &named);
    void setLastAddressedHandle(qint64 chat, const QString &handle);
    /// Raises the date of the chat's newest message; never lowers it.
    void raiseLast(qint64 chat, int date);

    /// Deletes the chat when it has no message left.
    void deleteEmptyChat(qint64 chat);

private:
    std::optional<qint64> find(const Sqlite3Sql &sql);
    std::optional<qint64> find(const char *sql, const QString &key);
    void run(const char *sql, std::initializer_list<qint64> values);
    qint64 inserted(Sqlite3Cursor &statement);

    Sqlite3DB &m_db;
    bool m_hasLogicHash;
    bool m_hasLast;
    bool m_hasMessageDate;
    bool m_hasNames;
    DateUnit m_dateUnit;
    RecordInsert<_MsgChat> m_chat;
    RecordInsert<_MsgHandle> m_handle;
    RecordInsert<_MsgMessage> m_message;
    RecordInsert<_MsgAttachment> m_attachment;
    int m_handlePosition;
    int m_otherHandlePosition;
    int m_hashPosition;
};

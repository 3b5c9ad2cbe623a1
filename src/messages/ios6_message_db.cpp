#include "messages/ios6_message_db.h"

#include "messages/message_columns.h"
#include "personal/ios_contacts_mem_db.h"

#include <QScopeGuard>

namespace {
// The statement's name for the conversation a listing is restricted to; empty for all.
QString onlyChat(const QString &column, qint64 chatId)
{
    return chatId > 0 ? QStringLiteral(" and %1=%2").arg(column).arg(chatId) : QString();
}
} // namespace

IOS6MessageDb::IOS6MessageDb(const DatabaseFile &file, FileSource *source, ContactNames names)
    : AbsIOSMessageDb(file, source, names)
{
}

// From iOS 11 on the dates of messages count nanoseconds.
DateUnit IOS6MessageDb::dateUnit() const
{
    return hasColumn(QStringLiteral("message"), QStringLiteral("ck_record_id")) ? DateUnit::Nanoseconds
                                                                                : DateUnit::Seconds;
}

// The joins that every listing and count of messages is made over.
QString IOS6MessageDb::listedMessages() const
{
    QString sql = QStringLiteral("chat_message_join as j inner join message as m on j.message_id = m.rowid");
    if (hasColumn(QStringLiteral("message"), QStringLiteral("item_type")))
        sql += QStringLiteral(" and m.item_type <> 4");
    return sql;
}

qint64 IOS6MessageDb::countMessages()
{
    Sqlite3Cursor cursor = m_db.queryThrow(QStringLiteral("select count(*) from ") + listedMessages());
    return cursor.moveNext() ? cursor.getInt64(0) : 0;
}

std::unordered_map<qint64, qint64> IOS6MessageDb::countMessagesByChat()
{
    std::unordered_map<qint64, qint64> counts;
    Sqlite3Cursor cursor = m_db.queryThrow(
        QStringLiteral("select j.chat_id, count(*) from %1 group by j.chat_id").arg(listedMessages()));
    while (cursor.moveNext())
        counts[cursor.getInt64(0)] = cursor.getInt64(1);
    return counts;
}

void IOS6MessageDb::loadChats()
{
    clear();
    readChats();
    if (!hasColumn(QStringLiteral("chat"), QStringLiteral("_last INTEGER")))
        computeLastDates();
    readHandles();
    sortChats();
}

void IOS6MessageDb::readChats()
{
    forEachRow(Listing::Essential, QStringLiteral("select * from chat"), [this](const Sqlite3Cursor &cursor) {
        return [this, columns = chatColumns(cursor)]() mutable {
            _MsgChat read;
            columns.fill(read);
            if (m_chatById.contains(read.rowid))
                return;
            _MsgChat &chat = m_chats.emplace_back(std::move(read));
            m_chatById.emplace(chat.rowid, &chat);
            m_chatList.push_back(&chat);
        };
    });
}

void IOS6MessageDb::computeLastDates()
{
    static const QString sql = QStringLiteral(
        "select chat_id, max(date) as last from ( select cm.chat_id, m.date from chat_message_join "
        "as cm inner join message as m on cm.message_id=m.rowid ) as tmp group by chat_id");
    forEachRow(Listing::Extra, sql, [this](const Sqlite3Cursor &cursor) {
        return [this, &cursor, unit = dateUnit()] {
            if (_MsgChat *known = chat(cursor.getInt64(0)))
                known->_last = recordDate(cursor.getInt64(1), unit);
        };
    });
}

void IOS6MessageDb::readHandles()
{
    static const QString sql = QStringLiteral(
        "select j.chat_id, h.* from chat_handle_join as j inner join handle as h on j.handle_id = h.rowid");
    const std::unique_ptr<IOSContactsMemDb> contacts = openContacts();
    forEachRow(Listing::Extra, sql, [&](const Sqlite3Cursor &cursor) {
        return [&, columns = handleColumns(cursor),
                rowid = cursor.columnIndex(QStringLiteral("rowid"))]() mutable {
            _MsgHandle *&handle = m_handleById[cursor.getInt64(rowid)];
            if (!handle) {
                handle = &m_handles.emplace_back();
                columns.fill(*handle);
                nameHandle(*handle, contacts.get());
            }
            if (_MsgChat *known = chat(cursor.getInt64(0)))
                known->handles.push_back(handle);
        };
    });
    if (m_names == ContactNames::AsStored)
        readSenders();
}

// A store may hold the messages of somebody who has left the conversation, without any conversation of
// theirs.
void IOS6MessageDb::readSenders()
{
    forEachRow(Listing::Extra, QStringLiteral("select * from handle"), [this](const Sqlite3Cursor &cursor) {
        return [this, &cursor, columns = handleColumns(cursor),
                rowid = cursor.columnIndex(QStringLiteral("rowid"))]() mutable {
            _MsgHandle *&handle = m_handleById[cursor.getInt64(rowid)];
            if (handle)
                return;
            handle = &m_handles.emplace_back();
            columns.fill(*handle);
        };
    });
}

void IOS6MessageDb::loadMessages(qint64 chatId, Progress &progress)
{
    // A load that is stopped half way leaves lists that are in order as far as they go.
    const auto inOrder = qScopeGuard([&] { sortMessages(chatId); });
    readMessages(chatId, progress);
    if (hasTable(QStringLiteral("attachment")) && hasTable(QStringLiteral("message_attachment_join")))
        readAttachments(chatId, progress);
}

void IOS6MessageDb::readMessages(qint64 chatId, Progress &progress)
{
    const QString sql = QStringLiteral("select j.chat_id, m.* from ") + listedMessages() +
                        onlyChat(QStringLiteral("j.chat_id"), chatId);
    RowWatch watch(progress);
    forEachRow(Listing::Essential, sql, [&](const Sqlite3Cursor &cursor) {
        return [&, columns = messageColumns(cursor, dateUnit()),
                rowid = cursor.columnIndex(QStringLiteral("rowid")),
                itemType = cursor.columnIndex(QStringLiteral("item_type"))]() mutable {
            watch.row();
            if (cursor.getInt(itemType) != 0)
                return;
            _MsgMessage *&message = m_messageById[cursor.getInt64(rowid)];
            if (!message) {
                message = &m_messages.emplace_back();
                columns.fill(*message);
                completeMessage(*message);
            }
            _MsgChat *holder = chat(cursor.getInt64(0));
            if (!message->chat)
                message->chat = holder;
            if (holder)
                holder->messages.push_back(message);
        };
    });
}

void IOS6MessageDb::completeMessage(_MsgMessage &message)
{
    message.sourceRowid = message.rowid;
    takeTextOfBody(message);
    message.handle = handle(message.handle_id);
    if (message.handle && message.country.isEmpty())
        message.country = message.handle->country;
    if (message.other_handle_id > 0)
        message.otherHandle = handle(message.other_handle_id);
}

void IOS6MessageDb::readAttachments(qint64 chatId, Progress &progress)
{
    const QString sql = QStringLiteral("select ma.message_id, ma.attachment_id, cm.chat_id, a.* from "
                                       "message_attachment_join as ma inner join attachment as a on "
                                       "ma.attachment_id=a.rowid inner join chat_message_join as cm on "
                                       "ma.message_id=cm.message_id") +
                        onlyChat(QStringLiteral("cm.chat_id"), chatId);
    RowWatch watch(progress);
    forEachRow(Listing::Extra, sql, [&](const Sqlite3Cursor &cursor) {
        return [&, columns = attachmentColumns(cursor)]() mutable {
            watch.row();
            const auto message = m_messageById.constFind(cursor.getInt64(0));
            if (message == m_messageById.constEnd())
                return;
            _MsgAttachment *&attachment = m_attachmentById[cursor.getInt64(1)];
            if (!attachment) {
                attachment = &m_attachments.emplace_back();
                columns.fill(*attachment);
                placeAttachment(*attachment);
            }
            (*message)->attachments.push_back(attachment);
        };
    });
}

#include "messages/ios6_message_db.h"

#include "messages/attachment_content.h"
#include "messages/message_columns.h"
#include "personal/ios_contacts_mem_db.h"

#include <QScopeGuard>

namespace {
// The statement's name for the conversation a listing is restricted to; empty for all.
QString onlyChat(const QString &column, qint64 chatId)
{
    return chatId > 0 ? QStringLiteral(" and %1=%2").arg(column).arg(chatId) : QString();
}

// The messages m that stand in no conversation.
const QString ofNoChat =
    QStringLiteral("m.rowid not in (select message_id from chat_message_join where message_id is not null)");
} // namespace

IOS6MessageDb::IOS6MessageDb(const DatabaseFile &file, FileSource *source, ContactNames names)
    : AbsIOSMessageDb(file, source, names)
{
    noteDamage();
}

void IOS6MessageDb::noteDamage()
{
    AbsIOSMessageDb::noteDamage();
    requireColumns({{"chat", {"guid", "style", "chat_identifier", "service_name"}},
                    {"handle", {"id", "service"}},
                    {"message", {"guid", "text", "handle_id", "date", "is_from_me", "service"}},
                    {"attachment", {"guid", "filename", "mime_type"}},
                    {"message_attachment_join", {"message_id", "attachment_id"}},
                    {"chat_message_join", {"chat_id", "message_id"}},
                    {"chat_handle_join", {"chat_id", "handle_id"}}});
}

// From iOS 11 on the dates of messages count nanoseconds.
DateUnit IOS6MessageDb::dateUnit() const
{
    return hasColumn(QStringLiteral("message"), QStringLiteral("ck_record_id")) ? DateUnit::Nanoseconds
                                                                                : DateUnit::Seconds;
}

void IOS6MessageDb::clear()
{
    AbsIOSMessageDb::clear();
    m_hiddenItems.clear();
    m_lostAttachments.clear();
}

// The joins that every count of messages is made over, each once, whatever a damaged table repeats.
QString IOS6MessageDb::listedMessages() const
{
    const bool hasKey =
        hasColumn(QStringLiteral("chat_message_join"), QStringLiteral("PRIMARY KEY (chat_id, message_id)"));
    QString sql = QStringLiteral("select%1 ifnull(j.chat_id, 0) as chat_id, j.message_id from chat_message_join "
                                 "as j inner join message as m on j.message_id = m.rowid")
                      .arg(hasKey ? QString() : QStringLiteral(" distinct"));
    return sql + usualItems();
}

// The rest of a condition that leaves out what the scope does not have. What is no number counts as 0, as it
// does where the rows are read.
QString IOS6MessageDb::usualItems() const
{
    const bool leavesOut =
        m_scope == Scope::Usual && hasColumn(QStringLiteral("message"), QStringLiteral("item_type"));
    return leavesOut ? QStringLiteral(" and ifnull(cast(m.item_type as integer), 0) = 0") : QString();
}

// Of a message whose conversation cannot be read nobody knows that it stood in none.
bool IOS6MessageDb::listsThoseOfNoChat() const
{
    return m_scope == Scope::Everything || hasLost(QStringLiteral("chat_message_join"));
}

qint64 IOS6MessageDb::number(const QString &sql) const
{
    Sqlite3Cursor cursor = m_db.queryThrow(sql);
    return cursor.moveNext() ? cursor.getInt64(0) : 0;
}

// Counts the messages that stand in conversations that are not there, and in no other.
QString IOS6MessageDb::countOfMissingChats() const
{
    return QStringLiteral(
               "select count(distinct message_id) from (%1) where chat_id not in (select rowid from chat) "
               "and message_id not in (select message_id from chat_message_join where message_id is "
               "not null and chat_id in (select rowid from chat))")
        .arg(listedMessages());
}

qint64 IOS6MessageDb::countMessages()
{
    return aroundDamage([this] { return countListed(); });
}

qint64 IOS6MessageDb::countListed()
{
    qint64 count = number(QStringLiteral("select count(*) from (%1)").arg(listedMessages()));
    // A conversation that is not there is none, like that of a message in no conversation at all.
    if (const qint64 joins =
            number(QStringLiteral("select count(*) from (%1) where chat_id not in (select rowid "
                                  "from chat)")
                       .arg(listedMessages()))) {
        const qint64 messages = number(countOfMissingChats());
        noteMissingChats(messages);
        count += messages - joins;
    }
    if (listsThoseOfNoChat())
        count += number(QStringLiteral("select count(*) from message as m where ") + ofNoChat + usualItems());
    return count;
}

void IOS6MessageDb::checkContent()
{
    if (!hasTable(QStringLiteral("attachment")) || !hasTable(QStringLiteral("message_attachment_join")))
        return;
    const QString sql =
        QStringLiteral("select a.rowid, a.* from attachment as a where a.rowid in (select attachment_id from "
                       "message_attachment_join where message_id in (select message_id from (%1)))")
            .arg(listedMessages());
    aroundDamage([&] {
        Report lost;
        forEachRow(Listing::Extra, sql, [&](const Sqlite3Cursor &cursor) {
            return [&, columns = attachmentColumns(cursor)]() mutable {
                _MsgAttachment attachment;
                columns.fill(attachment);
                placeAttachment(attachment);
                noteLostContent(lost, attachment, m_source);
            };
        });
        m_report.merge(lost);
    });
}

std::unordered_map<qint64, qint64> IOS6MessageDb::countMessagesByChat()
{
    return aroundDamage([this] {
    std::unordered_map<qint64, qint64> counts;
    Sqlite3Cursor cursor = m_db.queryThrow(
        QStringLiteral("select chat_id, count(*) from (%1) group by chat_id").arg(listedMessages()));
    while (cursor.moveNext())
        counts[cursor.getInt64(0)] = cursor.getInt64(1);
    return counts;
    });
}

void IOS6MessageDb::loadChats()
{
    aroundDamage([this] { readConversations(); });
}

void IOS6MessageDb::readConversations()
{
    clear();
    readChats();
    if (!hasColumn(QStringLiteral("chat"), QStringLiteral("_last INTEGER")))
        computeLastDates();
    readHandles();
    sortChats();
    forEachRow(Listing::Extra, countOfMissingChats(), [this](const Sqlite3Cursor &cursor) {
        return [this, &cursor] { noteMissingChats(cursor.getInt64(0)); };
    });
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
    readSenders(contacts.get());
}

// Somebody who has left every conversation still is the sender of messages.
void IOS6MessageDb::readSenders(const IOSContactsMemDb *contacts)
{
    forEachRow(Listing::Extra, QStringLiteral("select * from handle"), [&](const Sqlite3Cursor &cursor) {
        return [&, columns = handleColumns(cursor),
                rowid = cursor.columnIndex(QStringLiteral("rowid"))]() mutable {
            _MsgHandle *&handle = m_handleById[cursor.getInt64(rowid)];
            if (handle)
                return;
            handle = &m_handles.emplace_back();
            columns.fill(*handle);
            nameHandle(*handle, contacts);
        };
    });
}

void IOS6MessageDb::loadMessages(qint64 chatId, Progress &progress)
{
    // A load that is stopped half way leaves lists that are in order as far as they go.
    const auto inOrder = qScopeGuard([&] { sortMessages(chatId); });
    const qsizetype hiddenBefore = m_hiddenItems.size();
    aroundDamage([&] { readConversation(chatId, progress); });
    tellHidden(hiddenBefore, chatId);
}

void IOS6MessageDb::readConversation(qint64 chatId, Progress &progress)
{
    readMessages(
        QStringLiteral("select j.chat_id, m.* from chat_message_join as j inner join message as m on "
                       "j.message_id = m.rowid") +
            onlyChat(QStringLiteral("j.chat_id"), chatId),
        Join::Chat, progress);
    if (chatId <= 0 && listsThoseOfNoChat())
        readMessages(QStringLiteral("select 0, m.* from message as m where ") + ofNoChat, Join::None,
                     progress);
    if (hasTable(QStringLiteral("attachment")) && hasTable(QStringLiteral("message_attachment_join")))
        readAttachments(chatId, progress);
}

// Of a table that could not be read to its end nobody knows in which conversation the rest stands.
void IOS6MessageDb::tellHidden(qsizetype itemsBefore, qint64 chatId)
{
    const auto tell = [this](const char *what, qint64 count) {
        if (count > 0)
            m_report.add({.kind = IssueKind::Hidden, .what = what, .count = count});
    };
    tell("IDS_ISSUE_SYSTEM_ITEMS", m_hiddenItems.size() - itemsBefore);
    if (chatId > 0 || m_scope == Scope::Everything || m_report.count("IDS_ISSUE_MESSAGE_LISTINGS") > 0)
        return;
    try {
        tell("IDS_ISSUE_MESSAGES_OF_NO_CHAT", number(QStringLiteral("select count(*) from message")) -
                                                  m_messageById.size() - m_hiddenItems.size());
    } catch (const Error &error) {
        addIssue("IDS_ISSUE_MESSAGE_LISTINGS", error.sentence());
    }
}

void IOS6MessageDb::readMessages(const QString &sql, Join join, Progress &progress)
{
    RowWatch watch(progress);
    forEachRow(Listing::Essential, sql, [&](const Sqlite3Cursor &cursor) {
        return [&, columns = messageColumns(cursor, dateUnit()),
                rowid = cursor.columnIndex(QStringLiteral("rowid")),
                itemType = cursor.columnIndex(QStringLiteral("item_type"))]() mutable {
            watch.row();
            if (m_scope == Scope::Usual && cursor.getInt64(itemType) != 0) {
                m_hiddenItems.insert(cursor.getInt64(rowid));
                return;
            }
            _MsgMessage *&message = m_messageById[cursor.getInt64(rowid)];
            if (!message) {
                message = &m_messages.emplace_back();
                if (!columns.fill(*message))
                    addIssue("IDS_ISSUE_MESSAGE_DATES");
                completeMessage(*message);
            }
            _MsgChat *holder = join == Join::Chat ? chat(cursor.getInt64(0)) : nullptr;
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
    // Not joined with the conversations: a message that stands a thousand times in one would have each of its
    // attachments as often.
    QString sql =
        QStringLiteral("select ma.message_id, ma.attachment_id, a.rowid is null, a.* from "
                       "message_attachment_join as ma left join attachment as a on ma.attachment_id=a.rowid");
    if (chatId > 0)
        sql += QStringLiteral(
                   " where ma.message_id in (select message_id from chat_message_join where chat_id=%1)")
                   .arg(chatId);
    RowWatch watch(progress);
    forEachRow(Listing::Extra, sql, [&](const Sqlite3Cursor &cursor) {
        return [&, columns = attachmentColumns(cursor)]() mutable {
            watch.row();
            const auto message = m_messageById.constFind(cursor.getInt64(0));
            if (message == m_messageById.constEnd())
                return;
            if (cursor.getInt(2) != 0) {
                noteLostAttachment(message.key(), cursor.getInt64(1));
                return;
            }
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

// A conversation may be loaded more than once.
void IOS6MessageDb::noteLostAttachment(qint64 message, qint64 attachment)
{
    const std::pair lost(message, attachment);
    if (m_lostAttachments.contains(lost))
        return;
    m_lostAttachments.insert(lost);
    addIssue("IDS_ISSUE_ATTACHMENT_ROWS");
}

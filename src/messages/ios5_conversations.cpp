#include "messages/ios5_conversations.h"

#include "messages/derived_identity.h"
#include "messages/listed_texts.h"
#include "messages/record_columns.h"
#include "personal/ios_contacts_mem_db.h"

#include <algorithm>

namespace {
constexpr int oneToOneStyle = 45;
constexpr int groupStyle = 43;
constexpr int joinedState = 3;
} // namespace

IOS5Conversations::~IOS5Conversations() = default;

void IOS5Conversations::clear()
{
    AbsIOSMessageDb::clear();
    m_contacts.reset();
    m_ids.clear();
    for (auto &handles : m_handlesOf)
        handles.clear();
    m_iMessageChats.clear();
    m_members.clear();
}

void IOS5Conversations::noteDamage()
{
    AbsIOSMessageDb::noteDamage();
    requireColumns({{"msg_group", {"newest_message"}},
                    {"group_member", {"group_id", "address"}},
                    {"message", {"text", "date", "flags", "group_id", "address"}}});
    // The first systems had no multimedia messages, and before iOS 5 there was no iMessage.
    if (hasColumn(QStringLiteral("message"), QStringLiteral("is_madrid")))
        requireColumns({{"msg_pieces", {"message_id", "content_type", "data"}},
                        {"madrid_chat", {"chat_identifier", "participants"}},
                        {"madrid_attachment", {"attachment_guid", "filename"}}});
}

void IOS5Conversations::loadChats()
{
    aroundDamage([this] { readConversations(); });
}

void IOS5Conversations::readConversations()
{
    clear();
    if (hasTable(QStringLiteral("msg_group")))
        readGroups();
    if (hasTable(QStringLiteral("group_member")))
        readMembers();
    nameTextChats();
    if (hasTable(QStringLiteral("madrid_chat"))) {
        readIMessageChats();
        readLastDates();
    }
    sortChats();
    readMissingGroups();
}

qint64 IOS5Conversations::shifted(qint64 iMessageRowid)
{
    constexpr qint64 last = std::numeric_limits<qint64>::max() - firstIMessageRowid;
    return iMessageRowid > 0 && iMessageRowid <= last ? iMessageRowid + firstIMessageRowid - 1 : 0;
}

bool IOS5Conversations::addChat(_MsgChat &&chat)
{
    if (m_chatById.contains(chat.rowid)) {
        addIssue("IDS_ISSUE_MESSAGE_ROWS");
        return false;
    }
    _MsgChat &added = m_chats.emplace_back(std::move(chat));
    m_chatById.emplace(added.rowid, &added);
    m_chatList.push_back(&added);
    return true;
}

// The text messages that stand in a group, as a condition.
QString IOS5Conversations::textsOfGroups() const
{
    const QString table = QStringLiteral("message");
    return hasColumn(table, QStringLiteral("is_madrid"))
               ? QStringLiteral("coalesce(is_madrid, 0) = 0 and group_id is not null")
               : QStringLiteral("group_id is not null");
}

// A group whose newest message is not there has the others still; one without any is left over.
void IOS5Conversations::readGroups()
{
    QString sql = QStringLiteral("select g.rowid,g.*,m.date-978307200 as last_date from msg_group as g inner "
                                 "join message as m on g.newest_message=m.rowid");
    if (hasColumn(QStringLiteral("message"), QStringLiteral("group_id")))
        sql = QStringLiteral(
                  "select g.rowid,g.*,coalesce(m.date,n.newest)-978307200 as last_date from msg_group as g "
                  "left join message as m on g.newest_message=m.rowid left join (select group_id,max(date) "
                  "as newest from message where %1 group by group_id) as n on n.group_id=g.rowid "
                  "where m.rowid is not null or n.group_id is not null")
                  .arg(textsOfGroups());
    forEachRow(Listing::Essential, sql, [this](const Sqlite3Cursor &cursor) {
        return [this, &cursor, rowid = cursor.columnIndex(QStringLiteral("rowid")),
                hash = cursor.columnIndex(QStringLiteral("hash")),
                last = cursor.columnIndex(QStringLiteral("last_date"))] {
            _MsgChat chat;
            chat.rowid = cursor.getInt64(rowid);
            chat.guid = QStringLiteral("SMS;-;%1").arg(cursor.getInt64(hash));
            chat.chat_identifier = QStringLiteral("unknown");
            chat.style = oneToOneStyle;
            chat.state = joinedState;
            chat.service_name = QStringLiteral("SMS");
            chat.account_login = QStringLiteral("E:");
            chat._last = recordDate(cursor.getInt64(last), DateUnit::Seconds);
            if (chat.rowid >= firstIMessageRowid)
                addIssue("IDS_ISSUE_MESSAGE_ROWS");
            else
                addChat(std::move(chat));
        };
    });
}

void IOS5Conversations::readMissingGroups()
{
    if (!hasTable(QStringLiteral("msg_group")) || !hasTable(QStringLiteral("group_member")) ||
        !hasColumn(QStringLiteral("message"), QStringLiteral("group_id")))
        return;
    const QString sql =
        QStringLiteral("select count(*) from message where %1 and group_id not in (select rowid "
                       "from msg_group) and group_id in (select group_id from group_member)");
    forEachRow(Listing::Extra, sql.arg(textsOfGroups()), [this](const Sqlite3Cursor &cursor) {
        return [this, &cursor] { noteMissingChats(cursor.getInt64(0)); };
    });
}

void IOS5Conversations::readMembers()
{
    forEachRow(
        Listing::Extra, QStringLiteral("select * from group_member"), [this](const Sqlite3Cursor &cursor) {
            return [this, &cursor, groupId = cursor.columnIndex(QStringLiteral("group_id")),
                    address = cursor.columnIndex(QStringLiteral("address")),
                    country = cursor.columnIndex(QStringLiteral("country"))] {
                if (_MsgChat *chat = groupChat(cursor.getInt64(groupId)))
                    addMember(*chat,
                              handleOf(Service::Sms, cursor.getText(address), cursor.getText(country)));
            };
        });
}

// A group is told from others by all of its members and by the device's own hash of them: an identifier out
// of the first member alone would be that of many groups.
void IOS5Conversations::nameTextChats()
{
    for (_MsgChat &chat : m_chats) {
        if (chat.handles.empty())
            continue;
        if (!chat.isGroup()) {
            chat.chat_identifier = chat.handles.front()->id;
            chat.guid = QStringLiteral("SMS;-;") + chat.chat_identifier;
            continue;
        }
        QStringList ids;
        for (const _MsgHandle *handle : chat.handles)
            ids.append(handle->id);
        ids.sort();
        chat.chat_identifier = groupIdentifierFrom(chat.guid + u';' + ids.join(u';'));
        chat.guid = QStringLiteral("SMS;+;") + chat.chat_identifier;
        chat.room_name = chat.chat_identifier;
        chat.style = groupStyle;
        chat.group_id = guidFrom(chat.guid);
    }
}

void IOS5Conversations::readIMessageChats()
{
    forEachRow(Listing::Essential, QStringLiteral("select rowid,* from madrid_chat"),
               [this](const Sqlite3Cursor &cursor) {
                   RecordColumns<_MsgChat> columns(cursor);
                   columns.bigNumbers({{"rowid", &_MsgChat::rowid}});
                   columns.texts({{"account_id", &_MsgChat::account_id},
                                  {"account_login", &_MsgChat::account_login},
                                  {"chat_identifier", &_MsgChat::chat_identifier}});
                   columns.numbers({{"style", &_MsgChat::style}, {"state", &_MsgChat::state}});
                   return [this, &cursor, columns,
                           participants = cursor.columnIndex(QStringLiteral("participants"))]() mutable {
                       _MsgChat chat;
                       columns.fill(chat);
                       chat.rowid = shifted(chat.rowid);
                       chat.service_name = QStringLiteral("iMessage");
                       const QString address = chat.chat_identifier;
                       chat.chat_identifier = idOf(address, {});
                       if (chat.rowid == 0 || !addChat(std::move(chat)))
                           return;
                       _MsgChat &added = m_chats.back();
                       readParticipants(added, cursor.getBlob(participants));
                       if (added.isGroup())
                           added.style = groupStyle;
                       if (added.style != groupStyle && added.handles.empty())
                           addMember(added, handleOf(Service::IMessage, address, {}));
                       const QLatin1String kind(added.style == groupStyle ? "iMessage;+;" : "iMessage;-;");
                       added.guid = kind + added.chat_identifier;
                       if (!m_iMessageChats.contains(added.chat_identifier))
                           m_iMessageChats.insert(added.chat_identifier, &added);
                   };
               });
}

void IOS5Conversations::readParticipants(_MsgChat &chat, const QByteArray &participants)
{
    if (participants.isEmpty())
        return;
    const std::optional<QStringList> addresses = listedTexts(participants);
    if (!addresses)
        addIssue("IDS_ISSUE_PARTICIPANT_LISTS");
    for (const QString &address : addresses.value_or(QStringList()))
        addMember(chat, handleOf(Service::IMessage, address, {}));
}

void IOS5Conversations::readLastDates()
{
    const QString table = QStringLiteral("message");
    const QString room = QStringLiteral("madrid_roomname");
    const QString handle = QStringLiteral("madrid_handle");
    if (hasColumn(table, room))
        readLastDatesBy(room, {});
    // What somebody said in a room is no part of the conversation with them alone.
    if (hasColumn(table, handle))
        readLastDatesBy(handle, hasColumn(table, room)
                                    ? QStringLiteral(" where coalesce(madrid_roomname, '') = ''")
                                    : QString());
}

void IOS5Conversations::readLastDatesBy(const QString &column, const QString &condition)
{
    const QString sql =
        QStringLiteral("select %1,max(date) as last_date from message%2 group by %1 having %1 is "
                       "not null and %1 <> ''")
            .arg(column, condition);
    forEachRow(Listing::Extra, sql, [this](const Sqlite3Cursor &cursor) {
        return [this, &cursor] {
            if (_MsgChat *chat = iMessageChat(cursor.getText(0), {}))
                chat->_last = std::max(chat->_last, recordDate(cursor.getInt64(1), DateUnit::Seconds));
        };
    });
}

_MsgChat *IOS5Conversations::groupChat(qint64 groupId) const
{
    return groupId < firstIMessageRowid ? chat(groupId) : nullptr;
}

_MsgChat *IOS5Conversations::iMessageChat(const QString &room, const QString &address)
{
    return m_iMessageChats.value(idOf(room.isEmpty() ? address : room, {}));
}

const _MsgHandle *IOS5Conversations::handleOf(Service service, const QString &address, const QString &country)
{
    const QString id = idOf(address, country);
    if (id.isEmpty())
        return nullptr;
    const _MsgHandle *&handle = m_handlesOf[static_cast<int>(service)][id];
    if (handle)
        return handle;
    if (!m_contacts)
        m_contacts = openContacts();
    _MsgHandle &made = m_handles.emplace_back();
    made.rowid = static_cast<qint64>(m_handles.size());
    made.id = address;
    made.country = country;
    made.service = service == Service::Sms ? QStringLiteral("SMS") : QStringLiteral("iMessage");
    nameHandle(made, m_contacts.get());
    m_handleById.emplace(made.rowid, &made);
    handle = &made;
    return handle;
}

void IOS5Conversations::addMember(_MsgChat &chat, const _MsgHandle *handle)
{
    const auto isNew = [&] {
        const std::pair member(chat.rowid, handle->rowid);
        if (m_members.contains(member))
            return false;
        m_members.insert(member);
        return true;
    };
    if (handle && isNew())
        chat.handles.push_back(handle);
}

// The same few addresses stand in row after row.
QString IOS5Conversations::idOf(const QString &address, const QString &country)
{
    const QString key = country + u'\n' + address;
    const auto known = m_ids.constFind(key);
    return known != m_ids.constEnd() ? *known : *m_ids.insert(key, normalised(address, country));
}

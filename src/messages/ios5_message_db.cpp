#include "messages/ios5_message_db.h"

#include "base/apple_time.h"
#include "messages/attachment_content.h"
#include "messages/derived_identity.h"
#include "messages/listed_texts.h"
#include "messages/record_columns.h"
#include "messages/typed_stream.h"
#include "personal/ios_contacts_mem_db.h"

#include <QScopeGuard>

#include <algorithm>

namespace {
const QString messageTable = QStringLiteral("message");
constexpr int flagsOfSent = 3;

// Text messages count from 1970.
qint64 secondsOfText(qint64 unixSeconds)
{
    constexpr qint64 farAway = 1'000'000'000'000;
    return appleFromUnix(std::clamp(unixSeconds, -farAway, farAway));
}

// What these databases do not say and the newer ones do.
_MsgMessage newMessage()
{
    _MsgMessage message;
    message.is_finished = 1;
    message.is_prepared = 1;
    message.is_read = 1;
    message.was_data_detected = 1;
    return message;
}

RecordColumns<_MsgAttachment> attachmentColumns(const Sqlite3Cursor &cursor)
{
    using Attachment = _MsgAttachment;
    RecordColumns<Attachment> columns(cursor);
    columns.bigNumbers({{"rowid", &Attachment::rowid}, {"total_bytes", &Attachment::total_bytes}});
    columns.texts({{"attachment_guid", &Attachment::guid}, {"filename", &Attachment::filename}});
    columns.repeatedTexts({{"uti_type", &Attachment::uti}, {"mime_type", &Attachment::mime_type}});
    columns.dates({{"created_date", &Attachment::created_date}, {"start_date", &Attachment::start_date}},
                  DateUnit::Seconds);
    columns.numbers({{"transfer_state", &Attachment::transfer_state}});
    return columns;
}
} // namespace

/// The columns of `message`, resolved once.
struct IOS5MessageDb::Columns
{
    explicit Columns(const Sqlite3Cursor &row)
        : cursor(&row),
          shared(row),
          iMessage(row),
          isMadrid(index("is_madrid")),
          room(index("madrid_roomname")),
          madridHandle(index("madrid_handle")),
          attachments{index("madrid_attachment"), index("madrid_attachmentInfo")},
          rowid(index("rowid")),
          groupId(index("group_id")),
          address(index("address")),
          date(index("date")),
          flags(index("flags"))
    {
        using Message = _MsgMessage;
        shared.bigNumbers({{"rowid", &Message::rowid}});
        shared.texts({{"text", &Message::text}});
        shared.repeatedTexts({{"svc_center", &Message::service_center},
                              {"subject", &Message::subject},
                              {"country", &Message::country}});
        iMessage.texts({{"madrid_guid", &Message::guid}});
        iMessage.repeatedTexts(
            {{"madrid_account", &Message::account}, {"madrid_account_guid", &Message::account_guid}});
        iMessage.bytes({{"madrid_attributedBody", &Message::attributedBody}});
        iMessage.numbers({{"madrid_error", &Message::error}});
        iMessage.dates({{"date", &Message::date},
                        {"madrid_date_read", &Message::date_read},
                        {"madrid_date_delivered", &Message::date_delivered}},
                       DateUnit::Seconds);
    }

    int index(const char *name) const { return cursor->columnIndex(QLatin1String(name)); }

    const Sqlite3Cursor *cursor;
    RecordColumns<_MsgMessage> shared;
    RecordColumns<_MsgMessage> iMessage;
    int isMadrid;
    int room;
    int madridHandle;
    int attachments[2];
    int rowid;
    int groupId;
    int address;
    int date;
    int flags;
};

IOS5MessageDb::IOS5MessageDb(const DatabaseFile &file, FileSource *source)
    : IOS5Conversations(file, source, ContactNames::FromAddressBook)
{
    noteDamage();
}

IOS5MessageDb::~IOS5MessageDb() = default;

void IOS5MessageDb::clear()
{
    IOS5Conversations::clear();
    m_parts.clear();
    m_takenParts.clear();
    m_awaiting.clear();
}

bool IOS5MessageDb::hasIMessages() const
{
    return hasColumn(messageTable, QStringLiteral("is_madrid"));
}

// The clause that leaves out what cannot belong to the conversation; empty for all.
QString IOS5MessageDb::onlyChat(const QString &before, qint64 chatId) const
{
    if (chatId <= 0)
        return {};
    if (chatId < firstIMessageRowid)
        return before + QStringLiteral("m.group_id=%1").arg(chatId);
    return hasIMessages() ? before + QStringLiteral("m.is_madrid<>0") : QString();
}

qint64 IOS5MessageDb::countMessages()
{
    // An index would count what the table has lost.
    return aroundDamage([this] {
        readMissingGroups();
        Sqlite3Cursor cursor = m_db.queryThrow(QStringLiteral("select count(*) from message not indexed"));
        return cursor.moveNext() ? cursor.getInt64(0) : qint64(0);
    });
}

// Their attachments stand in lists and parts of messages, and these databases are small.
void IOS5MessageDb::checkContent()
{
    NoProgress progress;
    loadChats();
    loadMessages(0, progress);
    noteLostContent(m_report,
                    select({}, std::numeric_limits<qint64>::min(), std::numeric_limits<qint64>::max()),
                    m_source);
}

std::unordered_map<qint64, qint64> IOS5MessageDb::countMessagesByChat()
{
    return aroundDamage([this] { return countByChat(); });
}

std::unordered_map<qint64, qint64> IOS5MessageDb::countByChat()
{
    std::unordered_map<qint64, qint64> counts;
    if (hasColumn(messageTable, QStringLiteral("group_id"))) {
        Sqlite3Cursor cursor = m_db.queryThrow(
            QStringLiteral("select group_id, count(*) from message%1 group by group_id")
                .arg(hasIMessages() ? QStringLiteral(" where coalesce(is_madrid, 0) = 0") : QString()));
        while (cursor.moveNext())
            if (const _MsgChat *found = groupChat(cursor.getInt64(0)))
                counts[found->rowid] += cursor.getInt64(1);
    }
    if (hasIMessages()) {
        Sqlite3Cursor cursor = m_db.queryThrow(
            QStringLiteral("select madrid_roomname, madrid_handle, count(*) from message where "
                           "is_madrid <> 0 group by madrid_roomname, madrid_handle"));
        while (cursor.moveNext())
            if (const _MsgChat *found = iMessageChat(cursor.getText(0), cursor.getText(1)))
                counts[found->rowid] += cursor.getInt64(2);
    }
    return counts;
}

void IOS5MessageDb::loadMessages(qint64 chatId, Progress &progress)
{
    // A load that is stopped half way leaves lists that are in order as far as they go.
    const auto inOrder = qScopeGuard([&] { sortMessages(chatId); });
    aroundDamage([&] { readConversation(chatId, progress); });
}

void IOS5MessageDb::readConversation(qint64 chatId, Progress &progress)
{
    readMessages(chatId, progress);
    if (hasTable(QStringLiteral("madrid_attachment")))
        readAttachments(progress);
    for (const std::vector<_MsgMessage *> &messages : std::as_const(m_awaiting))
        for (std::size_t lost = 0; lost < messages.size(); ++lost)
            addIssue("IDS_ISSUE_ATTACHMENT_ROWS");
    m_awaiting.clear();
    if (hasTable(QStringLiteral("msg_pieces")))
        readParts(chatId, progress);
}

void IOS5MessageDb::readMessages(qint64 chatId, Progress &progress)
{
    RowWatch watch(progress);
    const QString sql =
        QStringLiteral("select m.rowid,m.* from message as m") + onlyChat(QStringLiteral(" where "), chatId);
    forEachRow(Listing::Essential, sql, [&](const Sqlite3Cursor &cursor) {
        return [&, columns = Columns(cursor)]() mutable {
            watch.row();
            takeMessage(columns, chatId);
        };
    });
}

void IOS5MessageDb::takeMessage(Columns &columns, qint64 chatId)
{
    const Sqlite3Cursor &row = *columns.cursor;
    const bool isIMessage = row.getInt(columns.isMadrid) != 0;
    _MsgChat *holder = isIMessage ? iMessageChat(row.getText(columns.room), row.getText(columns.madridHandle))
                                  : groupChat(row.getInt64(columns.groupId));
    if (chatId > 0 && (!holder || holder->rowid != chatId))
        return;
    _MsgMessage *&message = m_messageById[row.getInt64(columns.rowid)];
    if (message)
        return;
    message = &m_messages.emplace_back(newMessage());
    columns.shared.fill(*message);
    message->sourceRowid = message->rowid;
    message->chat = holder;
    if (holder)
        holder->messages.push_back(message);
    if (isIMessage)
        fillIMessage(*message, columns);
    else
        fillTextMessage(*message, columns);
    if (message->guid.isEmpty())
        message->guid =
            guidFrom(QStringLiteral("%1;%2;%3").arg(message->service).arg(message->rowid).arg(message->date) +
                     u';' + row.getText(columns.address));
    if (message->handle && message->country.isEmpty())
        message->country = message->handle->country;
}

void IOS5MessageDb::fillIMessage(_MsgMessage &message, Columns &columns)
{
    const Sqlite3Cursor &row = *columns.cursor;
    if (!columns.iMessage.fill(message))
        addIssue("IDS_ISSUE_MESSAGE_DATES");
    message.service = QStringLiteral("iMessage");
    // There is no column for the direction; only what was sent is told to have been delivered.
    message.is_from_me = message.date_delivered >= 1;
    takeTextOfBody(message);
    setSender(message, Service::IMessage, row.getText(columns.madridHandle));
    for (const int column : columns.attachments)
        if (const QByteArray guids = row.getBlob(column); !guids.isEmpty())
            awaitAttachments(message, guids);
}

void IOS5MessageDb::fillTextMessage(_MsgMessage &message, Columns &columns)
{
    const Sqlite3Cursor &row = *columns.cursor;
    message.service = QStringLiteral("SMS");
    message.account = QStringLiteral("e:");
    const qint64 date = secondsOfText(row.getInt64(columns.date));
    message.date = recordDate(date, DateUnit::Seconds);
    if (!isRecordDate(date, DateUnit::Seconds))
        addIssue("IDS_ISSUE_MESSAGE_DATES");
    message.is_from_me = row.getInt(columns.flags) == flagsOfSent;
    setSender(message, Service::Sms, row.getText(columns.address));
}

// Somebody who has left the group, or whose conversation is gone, still is the sender.
void IOS5MessageDb::setSender(_MsgMessage &message, Service service, const QString &address)
{
    if (message.chat && message.chat->handles.size() == 1)
        message.handle = message.chat->handles.front();
    else if (!message.is_from_me)
        message.handle = handleOf(service, address, service == Service::Sms ? message.country : QString());
    message.handle_id = message.handle ? message.handle->rowid : 0;
}

void IOS5MessageDb::awaitAttachments(_MsgMessage &message, const QByteArray &guids)
{
    const std::optional<QStringList> listed = listedTexts(guids);
    if (!listed)
        addIssue("IDS_ISSUE_ATTACHMENT_LISTS");
    for (const QString &guid : listed.value_or(QStringList()))
        m_awaiting[guid].push_back(&message);
}

// One pass over the table: it need not have an index that finds a GUID.
void IOS5MessageDb::readAttachments(Progress &progress)
{
    if (m_awaiting.isEmpty())
        return;
    RowWatch watch(progress);
    const QString sql = QStringLiteral("select rowid,* from madrid_attachment");
    forEachRow(Listing::Extra, sql, [&](const Sqlite3Cursor &cursor) {
        return [&, columns = attachmentColumns(cursor),
                guid = cursor.columnIndex(QStringLiteral("attachment_guid")),
                isIncoming = cursor.columnIndex(QStringLiteral("is_incoming"))]() mutable {
            watch.row();
            const auto awaiting = m_awaiting.find(cursor.getText(guid));
            if (awaiting == m_awaiting.end())
                return;
            _MsgAttachment read;
            columns.fill(read);
            read.is_outgoing = cursor.getInt(isIncoming) == 0;
            takeAttachment(std::move(read), *awaiting);
            m_awaiting.erase(awaiting);
        };
    });
}

void IOS5MessageDb::takeAttachment(_MsgAttachment &&read, const std::vector<_MsgMessage *> &messages)
{
    read.rowid = shifted(read.rowid);
    if (read.rowid == 0) {
        addIssue("IDS_ISSUE_MESSAGE_ROWS");
        return;
    }
    _MsgAttachment *&attachment = m_attachmentById[read.rowid];
    if (!attachment) {
        attachment = &m_attachments.emplace_back(std::move(read));
        placeAttachment(*attachment);
    }
    for (_MsgMessage *message : messages) {
        message->attachments.push_back(attachment);
        message->cache_has_attachments = 1;
    }
}

void IOS5MessageDb::readParts(qint64 chatId, Progress &progress)
{
    const QString sql =
        QStringLiteral("select p.rowid,p.*,m.group_id,m.flags as msg_flags from msg_pieces as p inner join "
                       "message as m on p.message_id=m.rowid%1 order by p.rowid")
            .arg(onlyChat(QStringLiteral(" and "), chatId));
    RowWatch watch(progress);
    forEachRow(Listing::Extra, sql, [&](const Sqlite3Cursor &cursor) {
        const auto index = [&](const char *name) { return cursor.columnIndex(QLatin1String(name)); };
        return [&, rowid = index("rowid"), messageId = index("message_id"), partId = index("part_id"),
                groupId = index("group_id"), flags = index("msg_flags"), type = index("content_type"),
                location = index("content_loc"), data = index("data")] {
            watch.row();
            const auto message = m_messageById.constFind(cursor.getInt64(messageId));
            const qint64 part = cursor.getInt64(rowid);
            if (message == m_messageById.constEnd() || m_takenParts.contains(part))
                return;
            m_takenParts.insert(part);
            takePart(**message, {part, cursor.getInt64(messageId), cursor.getInt64(partId),
                                 cursor.getInt64(groupId), cursor.getInt(flags) == flagsOfSent,
                                 cursor.getText(type), cursor.getText(location), cursor.getBlob(data)});
        };
    });
}

void IOS5MessageDb::takePart(_MsgMessage &message, const MessagePart &part)
{
    if (part.isHidden())
        return;
    if (part.isText()) {
        message.text += u'\n' + QString::fromUtf8(part.data);
        message.text = std::move(message.text).trimmed();
        return;
    }
    _MsgAttachment &attachment = m_attachments.emplace_back();
    m_attachmentById.insert(part.rowid, &attachment);
    message.attachments.push_back(&attachment);
    message.cache_has_attachments = 1;
    try {
        m_parts.fill(attachment, part);
    } catch (const Error &error) {
        // On a full disk it is the same with every other one.
        m_report.add("IDS_ISSUE_PARTS_NOT_WRITTEN", error.at(m_db.name()));
    }
    if (m_source)
        attachment.source = m_source->fileOfDevicePath(part.devicePath());
}

#include "messages/message_import.h"

#include "messages/derived_identity.h"
#include "messages/logic_hash.h"

#include <algorithm>

namespace {
// Messages of no conversation have to stand in one, or no reader of the store would find them.
const _MsgChat &unknownChat()
{
    static const _MsgChat chat = [] {
        _MsgChat unknown;
        unknown.guid = unknown.chat_identifier = QStringLiteral("unknown");
        unknown.style = 45;
        return unknown;
    }();
    return chat;
}

// Tables refuse records without a GUID, and messages must not be lost for that.
template <typename Record>
Record withGuid(const Record &record, const QString &guid)
{
    Record copy = record;
    copy.guid = guid;
    return copy;
}
} // namespace

MessageImport::MessageImport(Sqlite3DB &store, AttachmentIntake &files,
                             const std::vector<MessageRef> &messages)
    : m_db(store), m_writer(store), m_files(files)
{
    for (const MessageRef &ref : messages)
        if (ref.chat != ref.message->chat)
            m_shared.insert(ref.message);
}

void MessageImport::add(const MessageRef &ref)
{
    const _MsgMessage &message = *ref.message;
    const bool isShared = m_shared.contains(&message);
    if (isShared)
        if (const auto known = m_sharedRowids.find(&message); known != m_sharedRowids.end())
            return m_writer.joinMessage(chatFor(ref.chat).rowid, known->second, message.date);
    const QString hash = logicHash(message);
    std::optional<qint64> stored = m_writer.findByLogicHash(hash);
    if (stored) {
        ++m_summary.merged;
        if (isShared)
            m_writer.joinMessage(chatFor(ref.chat).rowid, *stored, message.date);
        if (!message.attachments.empty())
            completeAttachments(message, *stored);
    } else if ((stored = insert(ref, hash))) {
        ++m_summary.added;
    } else {
        m_summary.refused.append(
            QStringLiteral("%1: another message with this GUID is there already.").arg(message.guid));
        return;
    }
    if (isShared)
        m_sharedRowids.emplace(&message, *stored);
}

std::optional<qint64> MessageImport::insert(const MessageRef &ref, const QString &hash)
{
    const _MsgMessage &message = *ref.message;
    StoredChat &chat = chatFor(ref.chat);
    const MessageWriter::MessageLinks links{
        .handle = handleFor(message.handle, 0),
        .otherHandle = handleFor(message.otherHandle, std::min(message.other_handle_id, 0)),
        .logicHash = hash,
    };
    const auto stored = message.guid.isEmpty()
                            ? m_writer.insertMessage(withGuid(message, guidFrom(hash)), links)
                            : m_writer.insertMessage(message, links);
    if (!stored)
        return std::nullopt;
    m_writer.joinMessage(chat.rowid, *stored, message.date);
    chat.last = std::max(chat.last, message.date);
    if (!message.attachments.empty())
        addAttachments(message, *stored, hash);
    return stored;
}

MessageImport::StoredChat &MessageImport::chatFor(const _MsgChat *source)
{
    const _MsgChat &chat = source ? *source : unknownChat();
    const auto [known, isFirst] = m_chats.try_emplace(&chat);
    StoredChat &stored = known->second;
    if (!isFirst)
        return stored;
    stored.rowid = insertedChat(chat, stored.isNew);
    for (const _MsgHandle *handle : chat.handles)
        m_writer.joinHandle(stored.rowid, handleFor(handle, 0));
    return stored;
}

qint64 MessageImport::insertedChat(const _MsgChat &chat, bool &isNew)
{
    const QString guid = chat.guid.isEmpty() ? guidFrom(chat.service_name + chat.chat_identifier) : chat.guid;
    if (const auto known = m_writer.findChat(guid))
        return *known;
    isNew = true;
    _MsgChat record = withGuid(chat, guid);
    record._last = 0; // of what is in the store, not of what was in the source
    return m_writer.insertChat(record);
}

qint64 MessageImport::handleFor(const _MsgHandle *handle, qint64 none)
{
    if (!handle)
        return none;
    const auto [stored, isFirst] = m_handles.try_emplace(handle, 0);
    if (!isFirst)
        return stored->second;
    const auto known = m_writer.findHandle(handle->id, handle->service);
    stored->second = known ? *known : m_writer.insertHandle(*handle);
    if (known && !handle->_ct_name.isEmpty())
        m_writer.nameHandle(*known, *handle);
    return stored->second;
}

void MessageImport::addAttachments(const _MsgMessage &message, qint64 stored, const QString &hash)
{
    for (const _MsgAttachment *attachment : message.attachments) {
        const _MsgAttachment record = attachment->guid.isEmpty()
                                          ? withGuid(*attachment, guidFrom(hash + attachment->displayName()))
                                          : *attachment;
        const auto known = m_writer.findAttachment(record.guid);
        m_writer.joinAttachment(stored, known ? *known : m_writer.insertAttachment(record));
        m_files.take(record, record.guid, StoredAttachments::placeOf(record));
    }
}

// A later backup may have the file that an earlier one lacked. The GUIDs may differ, the names do not.
void MessageImport::completeAttachments(const _MsgMessage &message, qint64 stored)
{
    const auto nameOf = [](const _MsgAttachment &attachment) {
        return attachment.filename.section(u'/', -1).toLower();
    };
    Sqlite3Cursor &row = m_db.cachedThrow(
        Sqlite3Sql(QStringLiteral("select a.guid, a.filename, a.transfer_name from message_attachment_join "
                                  "as j inner join attachment as a on a.rowid=j.attachment_id where "
                                  "j.message_id=?"))
            .addInt64Param(stored));
    while (row.moveNext()) {
        _MsgAttachment kept;
        kept.guid = row.getText(0);
        kept.filename = row.getText(1);
        kept.transfer_name = row.getText(2);
        const auto &all = message.attachments;
        const auto same = std::find_if(all.begin(), all.end(), [&](const _MsgAttachment *attachment) {
            return nameOf(*attachment) == nameOf(kept);
        });
        if (same != all.end())
            m_files.take(**same, kept.guid, StoredAttachments::placeOf(kept));
    }
}

MessageSaveSummary MessageImport::finish()
{
    for (const auto &[source, chat] : m_chats) {
        m_writer.raiseLast(chat.rowid, chat.last);
        if (chat.isNew)
            m_writer.deleteEmptyChat(chat.rowid);
    }
    m_summary.attachmentsCopied = m_files.copied();
    m_summary.missingAttachments = m_files.missing();
    return m_summary;
}

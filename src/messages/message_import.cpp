#include "messages/message_import.h"

#include "messages/derived_identity.h"
#include "messages/logic_hash.h"

#include <algorithm>
#include <iterator>

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
                             const std::vector<MessageRef> &messages, Options options)
    : m_db(store),
      m_writer(store),
      m_versions(store, options.takenAt),
      m_files(files),
      m_changed(options.changed)
{
    for (const MessageRef &ref : messages)
        if (ref.chat != ref.message->chat)
            m_shared.insert(ref.message);
}

void MessageImport::add(const MessageRef &ref)
{
    const bool isShared = m_shared.contains(ref.message);
    if (isShared)
        if (const auto known = m_sharedRowids.find(ref.message); known != m_sharedRowids.end()) {
            if (known->second != nowhere)
                join(ref, known->second);
            return;
        }
    const qint64 stored = rowFor(ref);
    if (isShared)
        m_sharedRowids.emplace(ref.message, stored);
}

qint64 MessageImport::rowFor(const MessageRef &ref)
{
    const QString hash = logicHash(*ref.message);
    if (const auto same = m_writer.findByLogicHash(hash)) {
        takeSame(ref, *same, hash);
        return *same;
    }
    const std::optional<qint64> added = insert(ref, hash);
    if (!added)
        return takeChanged(ref, hash);
    ++m_saved.added;
    if (m_firstAdded == 0)
        m_firstAdded = *added;
    return *added;
}

std::optional<qint64> MessageImport::insert(const MessageRef &ref, const QString &hash)
{
    const _MsgMessage &message = *ref.message;
    StoredChat &chat = chatFor(ref.chat);
    const MessageWriter::MessageLinks links = linksOf(message, hash);
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

MessageWriter::MessageLinks MessageImport::linksOf(const _MsgMessage &message, const QString &hash)
{
    return {
        .handle = handleFor(message.handle, 0),
        .otherHandle = handleFor(message.otherHandle, std::min(message.other_handle_id, 0)),
        .logicHash = hash,
    };
}

// Row ids grow: what this job has added lies above all that was there.
bool MessageImport::standsForAnother(qint64 stored) const
{
    return (m_firstAdded > 0 && stored >= m_firstAdded) || m_merged.contains(stored);
}

void MessageImport::takeSame(const MessageRef &ref, qint64 stored, const QString &hash)
{
    const _MsgMessage &message = *ref.message;
    ++m_saved.merged;
    join(ref, stored);
    if (standsForAnother(stored)) {
        ++m_equal;
        if (!message.attachments.empty())
            addAttachments(message, stored, hash);
        return;
    }
    m_merged.insert(stored);
    if (!message.attachments.empty())
        completeAttachments(message, stored);
    if (m_changed == ChangedMessages::Update)
        m_writer.raiseReadState(stored, message);
}

// The GUID is that of a row with other content. The row that stands for the message now is returned.
qint64 MessageImport::takeChanged(const MessageRef &ref, const QString &hash)
{
    const _MsgMessage &message = *ref.message;
    const std::optional<qint64> stored = m_writer.findMessage(message.guid);
    if (!stored || standsForAnother(*stored)) {
        ++m_kept;
        return nowhere;
    }
    if (m_changed == ChangedMessages::Update) {
        takeVersion(ref, *stored, hash);
    } else if (m_versions.isFormerText(*stored, message.text)) {
        ++m_saved.merged;
    } else {
        ++m_kept;
        if (!m_writer.hasContent(*stored, message))
            return nowhere;
    }
    join(ref, *stored);
    return *stored;
}

void MessageImport::takeVersion(const MessageRef &ref, qint64 stored, const QString &hash)
{
    const _MsgMessage &message = *ref.message;
    ++m_saved.merged;
    if (m_versions.isNewest(stored)) {
        ++m_updated;
        m_merged.insert(stored);
        m_versions.keepTextBefore(stored, message.text);
        m_writer.updateMessage(stored, message, linksOf(message, hash));
    } else {
        m_versions.addFormerText(stored, message);
    }
    addAttachments(message, stored, hash);
}

void MessageImport::join(const MessageRef &ref, qint64 stored)
{
    StoredChat &chat = chatFor(ref.chat);
    chat.last = std::max(chat.last, ref.message->date);
    if (!m_writer.isJoined(chat.rowid, stored))
        m_writer.joinMessage(chat.rowid, stored, ref.message->date);
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

// A later backup may have the file that an earlier one lacked. Where the GUIDs differ, the names do not.
void MessageImport::completeAttachments(const _MsgMessage &message, qint64 stored)
{
    const auto nameOf = [](const QString &filename) { return filename.section(u'/', -1).toLower(); };
    QHash<QString, const _MsgAttachment *> byGuid;
    QHash<QString, const _MsgAttachment *> byName;
    for (const _MsgAttachment *attachment : message.attachments) {
        byGuid.insert(attachment->guid, attachment);
        if (!m_writer.findAttachment(attachment->guid))
            byName.insert(nameOf(attachment->filename), attachment);
    }
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
        const _MsgAttachment *same = byGuid.value(kept.guid, byName.value(nameOf(kept.filename)));
        if (same)
            m_files.take(*same, kept.guid, StoredAttachments::placeOf(kept));
    }
}

void MessageImport::tell(IssueKind kind, const char *what, qint64 count)
{
    if (count > 0)
        m_saved.report.add({.kind = kind, .what = what, .count = count});
}

SavedMessages MessageImport::finish()
{
    for (const auto &[source, chat] : m_chats) {
        m_writer.raiseLast(chat.rowid, chat.last);
        if (chat.isNew)
            m_writer.deleteEmptyChat(chat.rowid);
    }
    std::vector<qint64> rows(m_merged.begin(), m_merged.end());
    std::sort(rows.begin(), rows.end());
    for (auto first = rows.begin(); first != rows.end();) {
        auto next = std::adjacent_find(first, rows.end(), [](qint64 a, qint64 b) { return b != a + 1; });
        next = next == rows.end() ? next : std::next(next);
        m_versions.rowsSeen(*first, *std::prev(next));
        first = next;
    }
    if (m_firstAdded > 0)
        m_versions.rowsSeen(m_firstAdded, m_firstAdded + m_saved.added - 1);
    m_versions.finish();
    tell(IssueKind::LeftOut, "IDS_ISSUE_EQUAL_MESSAGES", m_equal);
    tell(IssueKind::LeftOut, "IDS_ISSUE_CHANGED_MESSAGES", m_kept);
    tell(IssueKind::Remark, "IDS_ISSUE_UPDATED_MESSAGES", m_updated);
    for (const Issue &issue : m_files.report().issues())
        m_saved.report.add(issue);
    m_saved.report.done = m_saved.handled();
    m_saved.attachmentsCopied = m_files.report().done;
    return m_saved;
}

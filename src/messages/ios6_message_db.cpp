#include "messages/ios6_message_db.h"

#include "base/error.h"
#include "messages/device_path.h"
#include "messages/message_columns.h"
#include "messages/typed_stream.h"
#include "personal/country_lib_db.h"
#include "personal/ios_contacts_mem_db.h"

#include <QScopeGuard>

#include <algorithm>

namespace {
constexpr int rowsBetweenChecks = 256;

// Counts rows and asks now and then whether the user wants to stop.
class RowWatch
{
public:
    explicit RowWatch(Progress &progress) : m_progress(progress) {}
    void row()
    {
        if (++m_rows % rowsBetweenChecks == 0)
            m_progress.check();
    }

private:
    Progress &m_progress;
    int m_rows = 0;
};

// The statement's name for the conversation a listing is restricted to; empty for all.
QString onlyChat(const QString &column, qint64 chatId)
{
    return chatId > 0 ? QStringLiteral(" and %1=%2").arg(column).arg(chatId) : QString();
}

template <typename Record>
void sortUnique(std::vector<Record *> &records)
{
    const auto before = [](const Record *a, const Record *b) { return a->rowid < b->rowid; };
    if (!std::is_sorted(records.begin(), records.end(), before))
        std::sort(records.begin(), records.end(), before);
    records.erase(std::unique(records.begin(), records.end()), records.end());
}
// Handles stand in the order of their row ids as decimal texts: 1, 10, 2.
void sortByDecimalText(std::vector<const _MsgHandle *> &handles)
{
    std::sort(handles.begin(), handles.end(), [](const _MsgHandle *a, const _MsgHandle *b) {
        return std::to_string(a->rowid) < std::to_string(b->rowid);
    });
    handles.erase(std::unique(handles.begin(), handles.end()), handles.end());
}
} // namespace

IOS6MessageDb::IOS6MessageDb(const QString &path, FileSource *source, ContactNames names)
    : m_source(source),
      m_names(names),
      m_normalise([](const QString &number, const QString &) { return CountryLibDb::normalise(number, {}); })
{
    m_db.openThrow(path);
    Sqlite3Cursor cursor = m_db.queryThrow(QStringLiteral("select * from sqlite_master where type='table'"));
    const int name = cursor.columnIndex(QStringLiteral("name"));
    const int sql = cursor.columnIndex(QStringLiteral("sql"));
    while (cursor.moveNext())
        m_createTexts.insert(cursor.getText(name).toLower(), cursor.getText(sql));
}

void IOS6MessageDb::setNumbers(NumberNormaliser normalise, const QString &defaultCountry)
{
    m_normalise = std::move(normalise);
    m_defaultCountry = defaultCountry.toLower();
}

bool IOS6MessageDb::hasTable(const QString &table) const
{
    return m_createTexts.contains(table);
}

bool IOS6MessageDb::hasColumn(const QString &table, const QString &column) const
{
    return m_createTexts.value(table).contains(column, Qt::CaseInsensitive);
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

// Runs a listing. Damage ends it early and keeps what was read before; when nothing at all can be read, that
// is a failure of a listing without which there is nothing to show. `prepare` resolves the columns and gives
// what is to be done for each row.
template <typename Prepare>
void IOS6MessageDb::forEachRow(Listing listing, const QString &sql, Prepare prepare)
{
    qint64 rows = 0;
    try {
        Sqlite3Cursor cursor = m_db.queryThrow(sql);
        auto takeRow = prepare(cursor);
        for (; cursor.moveNext(); ++rows)
            takeRow();
    } catch (const Error &error) {
        if (rows == 0 && listing == Listing::Essential)
            throw;
        m_warnings.append(error.sentence());
    }
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

void IOS6MessageDb::clear()
{
    m_chatById.clear();
    m_chatList.clear();
    m_handleById.clear();
    m_messageById.clear();
    m_attachmentById.clear();
    m_chats.clear();
    m_handles.clear();
    m_messages.clear();
    m_attachments.clear();
    m_skippedRows = 0;
    m_unreadableTexts = 0;
    m_warnings.clear();
}

void IOS6MessageDb::loadChats()
{
    clear();
    readChats();
    if (!hasColumn(QStringLiteral("chat"), QStringLiteral("_last INTEGER")))
        computeLastDates();
    readHandles();
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
    sortUnique(m_chatList);
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
    std::unique_ptr<IOSContactsMemDb> contacts;
    if (m_source && m_names == ContactNames::FromAddressBook)
        contacts = std::make_unique<IOSContactsMemDb>(*m_source, m_normalise);
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
    for (_MsgChat &chat : m_chats)
        sortByDecimalText(chat.handles);
}

void IOS6MessageDb::nameHandle(_MsgHandle &handle, const IOSContactsMemDb *contacts) const
{
    handle.id = m_normalise(handle.id, handle.country);
    if (handle.country.isEmpty())
        handle.country = m_defaultCountry;
    const std::optional<ContactName> contact = contacts ? contacts->find(handle.id) : std::nullopt;
    if (!contact)
        return;
    handle._ct_name = contact->name;
    handle._photo = contact->photo;
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
    if (message.text.isEmpty() && !message.attributedBody.isEmpty()) {
        const std::optional<QString> text = typedStreamText(message.attributedBody);
        message.text = text.value_or(QString());
        m_unreadableTexts += text ? 0 : 1;
    }
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
                if (m_source && !attachment->filename.isEmpty())
                    attachment->source = m_source->fileOfDevicePath(devicePathOf(attachment->filename));
            }
            (*message)->attachments.push_back(attachment);
        };
    });
}

void IOS6MessageDb::sortMessages(qint64 chatId)
{
    for (_MsgChat &chat : m_chats)
        if (chatId <= 0 || chat.rowid == chatId)
            sortUnique(chat.messages);
    for (_MsgMessage &message : m_messages)
        if (message.attachments.size() > 1)
            sortUnique(message.attachments);
}

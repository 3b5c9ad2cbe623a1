#include "messages/message_writer.h"

#include "base/error.h"
#include "messages/message_columns.h"

#include <sqlite3.h>

#include <limits>

namespace {
// Above the largest row id ever used a table gives out the next ones; from the greatest number there is none.
constexpr qint64 largestKeptRowid = std::numeric_limits<qint32>::max();

bool hasColumn(const Sqlite3DB &db, const char *table, const char *column)
{
    return db.tbCols(QLatin1String(table)).contains(QLatin1String(column));
}

DateUnit dateUnitOf(const Sqlite3DB &db)
{
    return hasColumn(db, "message", "ck_record_id") ? DateUnit::Nanoseconds : DateUnit::Seconds;
}

void doNothing(sqlite3_context *, int, sqlite3_value **) {}

void registerFunctions(Sqlite3DB &db)
{
    constexpr std::pair<const char *, int> functions[] = {{"delete_attachment_path", 1},
                                                          {"before_delete_attachment_path", 2}};
    for (const auto &[name, arguments] : functions)
        if (sqlite3_create_function_v2(db.handle(), name, arguments, SQLITE_UTF8 | SQLITE_INNOCUOUS, nullptr,
                                       doNothing, nullptr, nullptr, nullptr) != SQLITE_OK)
            throw Error(QStringLiteral("can not prepare %1. %2")
                            .arg(db.path(), QString::fromUtf8(sqlite3_errmsg(db.handle()))));
}
} // namespace

void prepareForWriting(Sqlite3DB &db)
{
    registerFunctions(db);
    for (const char *table :
         {"sync_deleted_attachments", "sync_deleted_chats", "sync_deleted_messages", "deleted_messages"})
        if (db.hasTable(QLatin1String(table)))
            db.executeThrow(QStringLiteral("delete from ") + QLatin1String(table));
}

MessageWriter::MessageWriter(Sqlite3DB &db)
    : m_db(db),
      m_hasLogicHash(hasColumn(db, "message", "logic_hash")),
      m_hasLast(hasColumn(db, "chat", "_last")),
      m_hasMessageDate(hasColumn(db, "chat_message_join", "message_date")),
      m_hasNames(hasColumn(db, "handle", "_ct_name")),
      m_dateUnit(dateUnitOf(db)),
      m_chat(chatInsert(db)),
      m_handle(handleInsert(db)),
      m_message(messageInsert(db, m_dateUnit)),
      m_attachment(attachmentInsert(db)),
      m_handlePosition(m_message.position("handle_id")),
      m_otherHandlePosition(m_message.position("other_handle")),
      m_hashPosition(m_message.position("logic_hash"))
{
}

std::optional<qint64> MessageWriter::find(const Sqlite3Sql &sql)
{
    Sqlite3Cursor &row = m_db.cachedThrow(sql);
    const std::optional<qint64> found = row.moveNext() ? std::optional(row.getInt64(0)) : std::nullopt;
    row.reset();
    return found;
}

std::optional<qint64> MessageWriter::find(const char *sql, const QString &key)
{
    return find(Sqlite3Sql(QLatin1String(sql)).addTextParam(key));
}

std::optional<qint64> MessageWriter::findChat(const QString &guid)
{
    return find("select rowid from chat where guid=?", guid);
}

std::optional<qint64> MessageWriter::findHandle(const QString &id, const QString &service)
{
    return find(Sqlite3Sql(QStringLiteral("select rowid from handle where id=? and service=?"))
                    .addTextParam(id)
                    .addTextParam(service));
}

std::optional<qint64> MessageWriter::findMessage(const QString &guid)
{
    return find("select rowid from message where guid=?", guid);
}

std::optional<qint64> MessageWriter::findAttachment(const QString &guid)
{
    return find("select rowid from attachment where guid=?", guid);
}

std::optional<qint64> MessageWriter::findByLogicHash(const QString &hash)
{
    if (!m_hasLogicHash)
        return std::nullopt;
    return find("select rowid from message where logic_hash=?", hash);
}

qint64 MessageWriter::inserted(Sqlite3Cursor &statement)
{
    statement.execute();
    return m_db.lastInsertId();
}

qint64 MessageWriter::insertChat(const _MsgChat &chat)
{
    return inserted(m_chat.bind(chat));
}

qint64 MessageWriter::insertHandle(const _MsgHandle &handle)
{
    const bool isFree =
        handle.rowid > 0 && handle.rowid <= largestKeptRowid &&
        !find(
            Sqlite3Sql(QStringLiteral("select rowid from handle where rowid=?")).addInt64Param(handle.rowid));
    Sqlite3Cursor &statement = m_handle.bind(handle);
    if (isFree)
        statement.bindInt64(1, handle.rowid);
    return inserted(statement);
}

qint64 MessageWriter::insertAttachment(const _MsgAttachment &attachment)
{
    return inserted(m_attachment.bind(attachment));
}

std::optional<qint64> MessageWriter::insertMessage(const _MsgMessage &message, const MessageLinks &links)
{
    Sqlite3Cursor &statement = m_message.bind(message);
    statement.bindInt64(m_handlePosition, links.handle);
    statement.bindInt64(m_otherHandlePosition, links.otherHandle);
    statement.bindText(m_hashPosition, links.logicHash);
    return statement.executeUnlessTaken() ? std::optional(m_db.lastInsertId()) : std::nullopt;
}

bool MessageWriter::hasContent(qint64 row, const _MsgMessage &message)
{
    return find(Sqlite3Sql(QStringLiteral(
                               "select 1 from message where rowid=? and ifnull(text, '')=? and date=? and "
                               "is_from_me=?"))
                    .addInt64Param(row)
                    .addTextParam(message.text)
                    .addInt64Param(message.date)
                    .addInt64Param(message.is_from_me))
        .has_value();
}

void MessageWriter::updateMessage(qint64 row, const _MsgMessage &message, const MessageLinks &links)
{
    m_db.executeCachedThrow(
        Sqlite3Sql(QStringLiteral(
                       "update message set text=?, subject=?, attributedBody=?, handle_id=?, other_handle=?, "
                       "date=?, date_read=?, date_delivered=?, date_played=?, error=?, is_from_me=?, "
                       "is_delivered=?, "
                       "is_read=?, is_sent=?, is_played=?, logic_hash=? where rowid=?"))
            .addTextParam(message.text)
            .addTextParam(message.subject)
            .addBlobParam(message.attributedBody)
            .addInt64Param(links.handle)
            .addInt64Param(links.otherHandle)
            .addInt64Param(message.date)
            .addInt64Param(message.date_read)
            .addInt64Param(message.date_delivered)
            .addInt64Param(message.date_played)
            .addInt64Param(message.error)
            .addInt64Param(message.is_from_me)
            .addInt64Param(message.is_delivered)
            .addInt64Param(message.is_read)
            .addInt64Param(message.is_sent)
            .addInt64Param(message.is_played)
            .addTextParam(links.logicHash)
            .addInt64Param(row));
}

void MessageWriter::raiseReadState(qint64 row, const _MsgMessage &message)
{
    m_db.executeCachedThrow(
        Sqlite3Sql(
            QStringLiteral("update message set date_read=max(ifnull(date_read, 0), ?3), "
                           "date_delivered=max(ifnull(date_delivered, 0), ?4), is_read=max(is_read, ?5), "
                           "is_delivered=max(is_delivered, ?6) where rowid=?1 and guid=?2 and "
                           "(ifnull(date_read, 0) < ?3 or "
                           "ifnull(date_delivered, 0) < ?4 or is_read < ?5 or is_delivered < ?6)"))
            .addInt64Param(row)
            .addTextParam(message.guid)
            .addInt64Param(message.date_read)
            .addInt64Param(message.date_delivered)
            .addInt64Param(message.is_read)
            .addInt64Param(message.is_delivered));
}

void MessageWriter::run(const char *sql, std::initializer_list<qint64> values)
{
    Sqlite3Sql statement{QLatin1String(sql)};
    for (const qint64 value : values)
        statement.addInt64Param(value);
    m_db.executeCachedThrow(statement);
}

void MessageWriter::joinHandle(qint64 chat, qint64 handle)
{
    const auto joined = find(Sqlite3Sql(QStringLiteral("select 1 from chat_handle_join where chat_id=? and "
                                                       "handle_id=?"))
                                 .addInt64Param(chat)
                                 .addInt64Param(handle));
    if (!joined)
        run("replace into chat_handle_join(chat_id,handle_id) values(?,?)", {chat, handle});
}

bool MessageWriter::isJoined(qint64 chat, qint64 message)
{
    return find(Sqlite3Sql(QStringLiteral("select 1 from chat_message_join where chat_id=? and message_id=?"))
                    .addInt64Param(chat)
                    .addInt64Param(message))
        .has_value();
}

void MessageWriter::joinMessage(qint64 chat, qint64 message, int date)
{
    if (m_hasMessageDate)
        run("replace into chat_message_join(chat_id,message_id,message_date) values(?,?,?)",
            {chat, message, storedDate(date, DateUnit::Nanoseconds)});
    else
        run("replace into chat_message_join(chat_id,message_id) values(?,?)", {chat, message});
}

void MessageWriter::joinAttachment(qint64 message, qint64 attachment)
{
    run("replace into message_attachment_join(message_id,attachment_id) values(?,?)", {message, attachment});
}

void MessageWriter::nameHandle(qint64 handle, const _MsgHandle &named)
{
    if (!m_hasNames)
        return;
    m_db.executeCachedThrow(
        Sqlite3Sql(QStringLiteral("update handle set _ct_name=?, _photo=? where rowid=? and "
                                  "ifnull(_ct_name, '')=''"))
            .addTextParam(named._ct_name)
            .addBlobParam(named._photo)
            .addInt64Param(handle));
}

void MessageWriter::setLastAddressedHandle(qint64 chat, const QString &handle)
{
    m_db.executeCachedThrow(
        Sqlite3Sql(QStringLiteral("update chat set last_addressed_handle=? where rowid=?"))
            .addTextParam(handle)
            .addInt64Param(chat));
}

void MessageWriter::raiseLast(qint64 chat, int date)
{
    if (m_hasLast)
        run("update chat set _last=? where rowid=? and _last < ?", {date, chat, date});
}

void MessageWriter::deleteEmptyChat(qint64 chat)
{
    run("DELETE FROM chat WHERE rowid=? and (SELECT 1 from chat_message_join WHERE chat_id=? LIMIT 1) IS "
        "NULL",
        {chat, chat});
}

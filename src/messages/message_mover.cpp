#include "messages/message_mover.h"

#include <QStringList>

MessageMover::MessageMover(Sqlite3DB &db, const QString &from, const QString &to)
    : m_db(db),
      m_from(from),
      m_to(to),
      m_chat(table("chat")),
      m_handle(table("handle")),
      m_message(table("message", {QStringLiteral("handle_id"), QStringLiteral("other_handle")})),
      m_attachment(table("attachment")),
      m_sweep(db, from, QStringLiteral("clean_orphaned_messages"))
{
}

MessageMover::Table MessageMover::table(const char *name, const QSet<QString> &except) const
{
    const auto columnsIn = [&](const QString &schema) {
        QStringList names;
        Sqlite3Cursor row =
            m_db.queryThrow(QStringLiteral("pragma %1.table_info(\"%2\")").arg(schema, QLatin1String(name)));
        while (row.moveNext())
            names.append(row.getText(1).toLower());
        return names;
    };
    const QStringList there = columnsIn(m_to);
    QStringList both;
    for (const QString &column : columnsIn(m_from))
        if (column != QLatin1String("rowid") && there.contains(column) && !except.contains(column))
            both.append(column);
    return {QLatin1String(name), both.join(u',')};
}

// A statement with FROM and TO in place of the names of the stores.
QString MessageMover::in(const QString &sql) const
{
    QString text = sql;
    return text.replace(QLatin1String("FROM."), m_from + u'.').replace(QLatin1String("TO."), m_to + u'.');
}

Sqlite3Cursor &MessageMover::query(const QString &sql, std::initializer_list<qint64> values)
{
    Sqlite3Sql statement(in(sql));
    for (const qint64 value : values)
        statement.addInt64Param(value);
    return m_db.cachedThrow(statement);
}

QList<qint64> MessageMover::numbers(const QString &sql, std::initializer_list<qint64> values)
{
    Sqlite3Cursor &row = query(sql, values);
    QList<qint64> found;
    while (row.moveNext())
        found.append(row.getInt64(0));
    row.reset();
    return found;
}

std::optional<qint64> MessageMover::number(const QString &sql, std::initializer_list<qint64> values)
{
    const QList<qint64> found = numbers(sql, values);
    return found.isEmpty() ? std::nullopt : std::optional(found.first());
}

void MessageMover::run(const QString &sql, std::initializer_list<qint64> values)
{
    query(sql, values).execute();
}

bool MessageMover::hasMessage(qint64 rowid)
{
    return number(QStringLiteral("select 1 from FROM.message where rowid=?"), {rowid}).has_value();
}

void MessageMover::move(qint64 rowid)
{
    const qint64 copy = copyMessage(rowid);
    copyHistory(rowid, copy);
    const QList<qint64> chats =
        numbers(QStringLiteral("select chat_id from FROM.chat_message_join where message_id=?"), {rowid});
    for (const qint64 chat : chats)
        run(QStringLiteral("insert or ignore into TO.chat_message_join(chat_id,message_id) values(?,?)"),
            {copyChat(chat), copy});
    const QList<qint64> attachments = numbers(
        QStringLiteral("select attachment_id from FROM.message_attachment_join where message_id=?"), {rowid});
    for (const qint64 attachment : attachments)
        run(QStringLiteral("insert or ignore into TO.message_attachment_join(message_id,attachment_id) "
                           "values(?,?)"),
            {copy, copyRow(m_attachment, attachment, QStringLiteral("t.guid=f.guid"), m_attachments)});
    remove(rowid);
}

// The row id that a row f of the source is to have in the target: its own, or else the next.
QString MessageMover::freeRowid(const Table &table)
{
    return QStringLiteral("case when exists(select 1 from TO.%1 where rowid=f.rowid) then NULL else f.rowid "
                          "end")
        .arg(table.name);
}

// `find` says when a row t of the target is the same as the row f of the source.
qint64 MessageMover::copyRow(const Table &table, qint64 rowid, const QString &find,
                             QHash<qint64, qint64> &copies)
{
    if (const auto known = copies.constFind(rowid); known != copies.constEnd())
        return *known;
    std::optional<qint64> copy =
        number(QStringLiteral("select t.rowid from TO.%1 as t inner join FROM.%1 as f on %2 where f.rowid=?")
                   .arg(table.name, find),
               {rowid});
    if (!copy) {
        run(QStringLiteral("insert into TO.%1(rowid,%2) select %3,%2 from FROM.%1 as f where rowid=?")
                .arg(table.name, table.columns, freeRowid(table)),
            {rowid});
        copy = m_db.changes() > 0 ? m_db.lastInsertId() : 0;
    }
    copies.insert(rowid, *copy);
    return *copy;
}

qint64 MessageMover::copyHandle(qint64 rowid)
{
    return rowid > 0
               ? copyRow(m_handle, rowid, QStringLiteral("t.id=f.id and t.service=f.service"), m_handles)
               : rowid;
}

qint64 MessageMover::copyChat(qint64 rowid)
{
    if (const auto known = m_chats.constFind(rowid); known != m_chats.constEnd())
        return *known;
    const qint64 copy = copyRow(m_chat, rowid, QStringLiteral("t.guid=f.guid"), m_chats);
    const QList<qint64> handles =
        numbers(QStringLiteral("select handle_id from FROM.chat_handle_join where chat_id=?"), {rowid});
    for (const qint64 handle : handles)
        run(QStringLiteral("insert or ignore into TO.chat_handle_join(chat_id,handle_id) values(?,?)"),
            {copy, copyHandle(handle)});
    return copy;
}

// What is the same message to a save is the same message here.
qint64 MessageMover::copyMessage(qint64 rowid)
{
    const auto same = number(
        QStringLiteral("select t.rowid from TO.message as t inner join FROM.message as f on "
                       "t.guid=f.guid where f.rowid=? union all select t.rowid from TO.message as t inner "
                       "join FROM.message as f on t.logic_hash=f.logic_hash where f.rowid=?"),
        {rowid, rowid});
    if (same)
        return *same;
    const auto handle = number(QStringLiteral("select handle_id from FROM.message where rowid=?"), {rowid});
    const auto other = number(QStringLiteral("select other_handle from FROM.message where rowid=?"), {rowid});
    run(QStringLiteral("insert into TO.message(rowid,handle_id,other_handle,%1) select %2,?,?,%1 from "
                       "FROM.message as f where rowid=?")
            .arg(m_message.columns, freeRowid(m_message)),
        {copyHandle(handle.value_or(0)), copyHandle(other.value_or(-1)), rowid});
    return m_db.lastInsertId();
}

void MessageMover::copyHistory(qint64 rowid, qint64 copy)
{
    run(QStringLiteral("insert or ignore into TO.message_history(message_id,text,date,taken_at) select "
                       "?,text,date,taken_at from FROM.message_history where message_id=?"),
        {copy, rowid});
}

void MessageMover::remove(qint64 rowid)
{
    run(QStringLiteral("DELETE FROM FROM.message WHERE rowid=?"), {rowid});
    run(QStringLiteral("DELETE FROM FROM.chat_message_join where message_id=?"), {rowid});
    run(QStringLiteral("DELETE FROM FROM.message_attachment_join where message_id=?"), {rowid});
}

void MessageMover::finish()
{
    for (auto chat = m_chats.cbegin(); chat != m_chats.cend(); ++chat) {
        run(QStringLiteral(
                "DELETE FROM FROM.chat WHERE rowid=? and (SELECT 1 from FROM.chat_message_join WHERE "
                "chat_id=? LIMIT 1) IS NULL"),
            {chat.key(), chat.key()});
        setLast(m_from, chat.key());
        setLast(m_to, chat.value());
    }
    m_sweep.restore();
}

void MessageMover::setLast(const QString &store, qint64 chat)
{
    run(QStringLiteral(
            "update %1.chat set _last=(select ifnull(max(m.date), 0) from %1.message as m inner join "
            "%1.chat_message_join as j on j.message_id=m.rowid and j.chat_id=?) where rowid=?")
            .arg(store),
        {chat, chat});
}

#pragma once

#include "base/error.h"
#include "sqlite/sqlite3_db.h"

#include <QString>

/// A message database as a device of one generation makes it, filled by plain statements.
class DeviceMessages
{
public:
    enum Generation { Ios6 = 6, Ios9 = 9, Ios12 = 12, Ios17 = 17, LocalStore };

    DeviceMessages(const QString &path, Generation generation)
    {
        m_db.openThrow(path, SqliteOpen::ReadWriteCreate);
        run(QStringLiteral(
                "create table message(ROWID INTEGER PRIMARY KEY AUTOINCREMENT, guid TEXT, text TEXT, "
                "replace INTEGER DEFAULT 0, service_center TEXT, handle_id INTEGER DEFAULT 0, "
                "subject TEXT, country TEXT, attributedBody BLOB, version INTEGER DEFAULT 0, "
                "type INTEGER DEFAULT 0, service TEXT, account TEXT, account_guid TEXT, error INTEGER "
                "DEFAULT 0, date INTEGER, date_read INTEGER, date_delivered INTEGER, is_from_me "
                "INTEGER DEFAULT 0, is_read INTEGER DEFAULT 0, cache_roomnames TEXT%1);"
                "create table chat(ROWID INTEGER PRIMARY KEY AUTOINCREMENT, guid TEXT, style INTEGER, "
                "state INTEGER, account_id TEXT, properties BLOB, chat_identifier TEXT, service_name "
                "TEXT, room_name TEXT, account_login TEXT, is_archived INTEGER, "
                "last_addressed_handle TEXT%2);"
                "create table handle(ROWID INTEGER PRIMARY KEY AUTOINCREMENT UNIQUE, id TEXT, country "
                "TEXT, service TEXT, uncanonicalized_id TEXT%3);"
                "create table attachment(ROWID INTEGER PRIMARY KEY AUTOINCREMENT, guid TEXT, "
                "created_date INTEGER, start_date INTEGER, filename TEXT, uti TEXT, mime_type TEXT, "
                "transfer_state INTEGER, is_outgoing INTEGER%4);"
                "create table chat_handle_join(chat_id INTEGER, handle_id INTEGER);"
                "create table chat_message_join(chat_id INTEGER, message_id INTEGER);"
                "create table message_attachment_join(message_id INTEGER, attachment_id INTEGER);")
                .arg(messageColumns(generation), chatColumns(generation),
                     generation == LocalStore ? QStringLiteral(", _ct_name TEXT, _photo BLOB") : QString(),
                     generation == Ios6 ? QString()
                                        : QStringLiteral(", user_info BLOB, transfer_name TEXT, total_bytes "
                                                         "INTEGER")));
    }

    void run(const QString &script)
    {
        if (!m_db.exec(script))
            throw Error(m_db.lastError());
    }

    /// A message of one conversation, with further columns as "name" and SQL value.
    void message(int rowid, int chat, qint64 date, const QString &text, const QString &columns = {},
                 const QString &values = {})
    {
        m_db.executeThrow(
            Sqlite3Sql(QStringLiteral("insert into message(ROWID, guid, date, text%1) values(?, ?, ?, "
                                      "?%2)")
                           .arg(columns.isEmpty() ? columns : u',' + columns,
                                values.isEmpty() ? values : u',' + values))
                .addIntParam(rowid)
                .addTextParam(QStringLiteral("guid-%1").arg(rowid))
                .addInt64Param(date)
                .addTextParam(text));
        run(QStringLiteral("insert into chat_message_join values(%1, %2)").arg(chat).arg(rowid));
    }

    void chat(int rowid, const QString &identifier, const QList<int> &handles = {})
    {
        run(QStringLiteral(
                "insert into chat(ROWID, guid, style, chat_identifier) values(%1, 'chat-%1', 45, '%2')")
                .arg(rowid)
                .arg(identifier));
        for (const int handle : handles)
            run(QStringLiteral("insert into chat_handle_join values(%1, %2)").arg(rowid).arg(handle));
    }

    void handle(int rowid, const QString &id, const QString &country = {})
    {
        run(QStringLiteral("insert into handle(ROWID, id, country, service) values(%1, '%2', '%3', 'SMS')")
                .arg(rowid)
                .arg(id, country));
    }

    Sqlite3DB &db() { return m_db; }

private:
    static QString messageColumns(Generation generation)
    {
        QString columns;
        if (generation >= Ios9)
            columns +=
                QStringLiteral(", date_played INTEGER, item_type INTEGER DEFAULT 0, other_handle INTEGER "
                               "DEFAULT -1, group_title TEXT, group_action_type INTEGER DEFAULT 0");
        if (generation >= Ios12 && generation != LocalStore)
            columns += QStringLiteral(", ck_sync_state INTEGER DEFAULT 0, ck_record_id TEXT");
        return columns;
    }

    static QString chatColumns(Generation generation)
    {
        QString columns;
        if (generation >= Ios9)
            columns += QStringLiteral(", display_name TEXT, group_id TEXT");
        if (generation == LocalStore)
            columns += QStringLiteral(", _last INTEGER DEFAULT 0");
        return columns;
    }

    Sqlite3DB m_db;
};

#pragma once

#include "base/error.h"
#include "sample/plist_value.h"
#include "sqlite/sqlite3_db.h"

/// A message database as a device with iOS 5 makes it, filled by plain statements.
class OldMessages
{
public:
    enum class IMessages { Without, With };

    explicit OldMessages(const QString &path, IMessages iMessages = IMessages::With)
    {
        m_db.openThrow(path, SqliteOpen::ReadWriteCreate);
        run(QStringLiteral("pragma synchronous=off"));
        run(QStringLiteral(
                "create table message(ROWID INTEGER PRIMARY KEY AUTOINCREMENT, address TEXT, date INTEGER, "
                "text "
                "TEXT, flags INTEGER, replace INTEGER, svc_center TEXT, group_id INTEGER, association_id "
                "INTEGER, "
                "height INTEGER, UIFlags INTEGER, version INTEGER, subject TEXT, country TEXT, headers BLOB, "
                "recipients BLOB, read INTEGER%1);"
                "create table msg_group(ROWID INTEGER PRIMARY KEY AUTOINCREMENT, type INTEGER, "
                "newest_message "
                "INTEGER, unread_count INTEGER, hash INTEGER);"
                "create table group_member(ROWID INTEGER PRIMARY KEY AUTOINCREMENT, group_id INTEGER, "
                "address TEXT, "
                "country TEXT);"
                "create table msg_pieces(ROWID INTEGER PRIMARY KEY AUTOINCREMENT, message_id INTEGER, data "
                "BLOB, "
                "part_id INTEGER, preview_part INTEGER, content_type TEXT, height INTEGER, version INTEGER, "
                "flags "
                "INTEGER, content_id TEXT, content_loc TEXT, headers BLOB);")
                .arg(iMessages == IMessages::With
                         ? QStringLiteral(
                               ", madrid_attributedBody BLOB, madrid_handle TEXT, madrid_version INTEGER, "
                               "madrid_guid TEXT, madrid_type INTEGER, madrid_roomname TEXT, madrid_service "
                               "TEXT, "
                               "madrid_account TEXT, madrid_account_guid TEXT, madrid_flags INTEGER, "
                               "madrid_attachmentInfo BLOB, madrid_url TEXT, madrid_error INTEGER, is_madrid "
                               "INTEGER, madrid_date_read INTEGER, madrid_date_delivered INTEGER")
                         : QString()));
        if (iMessages == IMessages::With)
            run(QStringLiteral(
                "create table madrid_chat(ROWID INTEGER PRIMARY KEY AUTOINCREMENT, style INTEGER, state "
                "INTEGER, "
                "account_id TEXT, properties BLOB, chat_identifier TEXT, service_name TEXT, guid TEXT, "
                "room_name "
                "TEXT, account_login TEXT, participants BLOB);"
                "create table madrid_attachment(ROWID INTEGER PRIMARY KEY AUTOINCREMENT, attachment_guid "
                "TEXT, "
                "created_date INTEGER, start_date INTEGER, filename TEXT, uti_type TEXT, mime_type TEXT, "
                "transfer_state INTEGER, is_incoming INTEGER);"));
    }

    void run(const QString &script)
    {
        if (!m_db.exec(script))
            throw Error(m_db.lastError());
    }

    void group(int rowid, int newest, const QStringList &members, qint64 hash = 0)
    {
        run(QStringLiteral("insert into msg_group(ROWID, newest_message, hash) values(%1, %2, %3)")
                .arg(rowid)
                .arg(newest)
                .arg(hash));
        for (const QString &member : members)
            run(QStringLiteral("insert into group_member(group_id, address, country) values(%1, '%2', 'us')")
                    .arg(rowid)
                    .arg(member));
    }

    void text(int rowid, int group, qint64 unixDate, int flags, const QString &address, const QString &text)
    {
        m_db.executeThrow(
            Sqlite3Sql(QStringLiteral("insert into message(ROWID, group_id, date, flags, address, text, "
                                      "country) values(?, ?, ?, ?, ?, ?, 'us')"))
                .addIntParam(rowid)
                .addIntParam(group)
                .addInt64Param(unixDate)
                .addIntParam(flags)
                .addTextParam(address)
                .addTextParam(text));
    }

    void chat(int rowid, int style, const QString &identifier, const QByteArray &participants)
    {
        m_db.executeThrow(
            Sqlite3Sql(QStringLiteral("insert into madrid_chat(ROWID, style, state, account_id, "
                                      "account_login, chat_identifier, participants) values(?, ?, 3, "
                                      "'ACCOUNT', 'E:me@example.org', ?, ?)"))
                .addIntParam(rowid)
                .addIntParam(style)
                .addTextParam(identifier)
                .addBlobParam(participants));
    }

    /// `attachments` is the property list that names them; empty for none.
    void iMessage(int rowid, const QString &room, const QString &handle, int date, int delivered,
                  const QString &text, const QByteArray &attachments = {})
    {
        m_db.executeThrow(
            Sqlite3Sql(QStringLiteral("insert into message(ROWID, is_madrid, madrid_guid, "
                                      "madrid_roomname, madrid_handle, date, madrid_date_delivered, "
                                      "text, madrid_attachmentInfo) values(?, 1, ?, ?, ?, ?, ?, ?, ?)"))
                .addIntParam(rowid)
                .addTextParam(QStringLiteral("GUID-%1").arg(rowid))
                .addTextParam(room)
                .addTextParam(handle)
                .addIntParam(date)
                .addIntParam(delivered)
                .addTextParam(text)
                .addBlobParam(attachments));
    }

    void attachment(int rowid, const QString &guid, const QString &filename)
    {
        m_db.executeThrow(Sqlite3Sql(QStringLiteral("insert into madrid_attachment values(?, ?, 7, 8, ?, "
                                                    "'public.jpeg', 'image/jpeg', 5, 1)"))
                              .addIntParam(rowid)
                              .addTextParam(guid)
                              .addTextParam(filename));
    }

    void part(int message, int part, const QString &type, const QString &location,
              const QByteArray &data = {})
    {
        m_db.executeThrow(
            Sqlite3Sql(QStringLiteral("insert into msg_pieces(message_id, part_id, content_type, "
                                      "content_loc, data) values(?, ?, ?, ?, ?)"))
                .addIntParam(message)
                .addIntParam(part)
                .addTextParam(type)
                .addTextParam(location)
                .addBlobParam(data));
    }

    static QByteArray list(const QStringList &texts)
    {
        sample::PlistValue::Array items;
        for (const QString &text : texts)
            items.emplace_back(text);
        return sample::binaryPlist(items);
    }

private:
    Sqlite3DB m_db;
};

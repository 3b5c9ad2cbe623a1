#include "sample/old_message_database.h"

#include "base/apple_time.h"
#include "sample/keyed_archive.h"

#include <QCryptographicHash>
#include <QtEndian>

namespace sample {

namespace {

constexpr int receivedFlags = 2;
constexpr int sentFlags = 3;

constexpr const char *tables =
    "CREATE TABLE _SqliteDatabaseProperties (key TEXT, value TEXT, UNIQUE(key));"
    "CREATE TABLE message (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, address TEXT, date INTEGER, text TEXT, "
    "flags "
    "INTEGER, replace INTEGER, svc_center TEXT, group_id INTEGER, association_id INTEGER, height INTEGER, "
    "UIFlags "
    "INTEGER, version INTEGER, subject TEXT, country TEXT, headers BLOB, recipients BLOB, read INTEGER, "
    "madrid_attributedBody BLOB, madrid_handle TEXT, madrid_version INTEGER, madrid_guid TEXT, madrid_type "
    "INTEGER, "
    "madrid_roomname TEXT, madrid_service TEXT, madrid_account TEXT, madrid_account_guid TEXT, madrid_flags "
    "INTEGER, madrid_attachmentInfo BLOB, madrid_url TEXT, madrid_error INTEGER, is_madrid INTEGER, "
    "madrid_date_read INTEGER, madrid_date_delivered INTEGER);"
    "CREATE TABLE msg_group (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, type INTEGER, newest_message INTEGER, "
    "unread_count INTEGER, hash INTEGER);"
    "CREATE TABLE group_member (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, group_id INTEGER, address TEXT, "
    "country "
    "TEXT);"
    "CREATE TABLE msg_pieces (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, message_id INTEGER, data BLOB, "
    "part_id "
    "INTEGER, preview_part INTEGER, content_type TEXT, height INTEGER, version INTEGER, flags INTEGER, "
    "content_id "
    "TEXT, content_loc TEXT, headers BLOB);"
    "CREATE TABLE madrid_chat (ROWID INTEGER PRIMARY KEY AUTOINCREMENT UNIQUE, style INTEGER, state INTEGER, "
    "account_id TEXT, properties BLOB, chat_identifier TEXT, service_name TEXT, guid TEXT UNIQUE, room_name "
    "TEXT, "
    "account_login TEXT, participants BLOB);"
    "CREATE TABLE madrid_attachment (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, attachment_guid TEXT UNIQUE "
    "NOT NULL, "
    "created_date INTEGER DEFAULT 0, start_date INTEGER DEFAULT 0, filename TEXT, uti_type TEXT, mime_type "
    "TEXT, "
    "transfer_state INTEGER DEFAULT 0, is_incoming INTEGER DEFAULT 1);";

constexpr const char *indexes = "CREATE INDEX message_group_index ON message(group_id, ROWID);"
                                "CREATE INDEX message_flags_index ON message(flags);"
                                "CREATE INDEX message_madrid_handle_index ON message(madrid_handle);"
                                "CREATE INDEX message_madrid_roomname_index ON message(madrid_roomname);"
                                "CREATE INDEX pieces_message_index ON msg_pieces(message_id)";

/// What a device tells groups apart by.
int hashOf(const QStringList &addresses)
{
    const QByteArray hash =
        QCryptographicHash::hash(addresses.join(QLatin1Char(';')).toUtf8(), QCryptographicHash::Sha1);
    return qFromBigEndian<qint32>(hash.constData());
}

void bindText(Statement &statement, int position, const QByteArray &utf8)
{
    if (utf8.isNull())
        statement.bind(position, nullptr);
    else
        statement.bind(position, Utf8{utf8});
}

} // namespace

QByteArray textList(const QStringList &texts, ListForm form)
{
    KeyedArchive archive;
    PlistValue::Array items;
    for (const QString &text : texts)
        items.emplace_back(form == ListForm::Array ? PlistValue(text) : PlistValue(archive.add(text)));
    if (form == ListForm::Array)
        return binaryPlist(items);
    const PlistUid type = archive.addClass({QStringLiteral("NSArray"), QStringLiteral("NSObject")});
    return archive.finish(archive.add(PlistValue::Dictionary{{QStringLiteral("NS.objects"), std::move(items)},
                                                             {QStringLiteral("$class"), type}}));
}

struct OldMessageDatabase::Statements
{
    Statement text;
    Statement iMessage;
};

OldMessageDatabase::OldMessageDatabase(const QString &path, const Generation &generation) : m_file(path)
{
    m_file.execute(tables + ("INSERT INTO _SqliteDatabaseProperties VALUES('_ClientVersion', '" +
                             QByteArray::number(generation.messageClientVersion) + "')"));
    m_statements.reset(new Statements{
        {m_file,
         "insert into message(group_id, address, country, text, subject, date, flags, replace, UIFlags, "
         "version, read, madrid_error, is_madrid) values(?,?,?,?,?,?,?,0,4,0,1,0,0)"},
        {m_file,
         "insert into message(madrid_guid, madrid_roomname, madrid_handle, text, madrid_attributedBody, "
         "madrid_attachmentInfo, date, madrid_date_read, madrid_date_delivered, madrid_version, "
         "madrid_type, madrid_service, madrid_account, madrid_flags, madrid_error, is_madrid, replace, "
         "UIFlags, version, flags, read, group_id) "
         "values(?,?,?,?,?,?,?,?,?,10,0,'Madrid','E:jordis@example.org',?,0,1,0,0,0,0,1,0)"},
    });
}

qint64 OldMessageDatabase::addGroup(const QStringList &addresses, const QString &country)
{
    Statement(m_file, "insert into msg_group(type, newest_message, unread_count, hash) values(?,0,0,?)")
        .run(addresses.size() > 1, hashOf(addresses));
    const qint64 group = m_file.lastInsertId();
    Statement member(m_file, "insert into group_member(group_id, address, country) values(?,?,?)");
    for (const QString &address : addresses)
        member.run(group, address, country);
    return group;
}

qint64 OldMessageDatabase::addChat(const QString &identifier, bool group, const QByteArray &participants)
{
    const QString guid = QLatin1String(group ? "Madrid;+;" : "Madrid;-;") + identifier;
    Statement(m_file,
              "insert into madrid_chat(style, state, account_id, chat_identifier, service_name, guid, "
              "room_name, account_login, participants) "
              "values(?,3,'6E1F2A7C-0000-4000-8000-00C0FFEE0005',?,'Madrid',?,?,'E:jordis@example.org',?)")
        .run(group ? 43 : 45, identifier, guid, group ? identifier : QString(), participants);
    return m_file.lastInsertId();
}

qint64 OldMessageDatabase::addText(const OldTextRow &row)
{
    Statement &insert = m_statements->text;
    bindText(insert, 4, row.text);
    insert.bind(1, row.group);
    insert.bind(2, row.address);
    insert.bind(3, row.country);
    insert.bind(5, row.subject);
    insert.bind(6, qint64(unixFromApple(row.date)));
    insert.bind(7, row.fromMe ? sentFlags : receivedFlags);
    insert.step();
    return m_file.lastInsertId();
}

qint64 OldMessageDatabase::addIMessage(const OldIMessageRow &row)
{
    Statement &insert = m_statements->iMessage;
    bindText(insert, 1, row.guid);
    insert.bind(2, row.room);
    insert.bind(3, row.handle);
    bindText(insert, 4, row.text);
    insert.bind(5, row.attributedBody);
    insert.bind(6, row.attachmentInfo);
    insert.bind(7, row.date);
    insert.bind(8, row.dateRead);
    insert.bind(9, row.dateDelivered);
    insert.bind(10, row.dateDelivered > 0 ? 36869 : 12289);
    insert.step();
    return m_file.lastInsertId();
}

void OldMessageDatabase::addPart(const OldPartRow &row)
{
    Statement insert(m_file,
                     "insert into msg_pieces(message_id, data, part_id, preview_part, content_type, height, "
                     "version, flags, content_id, content_loc) values(?,?,?,?,?,0,0,0,?,?)");
    insert.run(row.message, row.data, row.part, row.part == 0 ? 1 : -1, Utf8{row.contentType},
               QStringLiteral("<%1>").arg(row.part), row.location);
}

void OldMessageDatabase::addAttachment(const OldAttachmentRow &row)
{
    Statement(m_file,
              "insert into madrid_attachment(attachment_guid, created_date, start_date, filename, uti_type, "
              "mime_type, transfer_state, is_incoming) values(?,?,?,?,?,?,5,?)")
        .run(Utf8{row.guid}, row.created, row.created, row.filename, Utf8{row.uti}, Utf8{row.mimeType},
             !row.outgoing);
}

void OldMessageDatabase::finish()
{
    m_statements.reset();
    m_file.execute(indexes);
    m_file.execute("update msg_group set newest_message=coalesce((select max(ROWID) from message where "
                   "group_id=msg_group.ROWID), 0)");
    m_file.close(SqliteFile::Journal::Rollback);
}

} // namespace sample

#include "sample/message_database.h"

#include "sample/message_schema.h"
#include "sample/seeded_generator.h"

#include <algorithm>

namespace sample {

namespace {

/// How a value of a record reaches its column.
template <typename Row>
struct BoundColumn
{
    const char *name;
    void (*bind)(Statement &, int position, const Row &, const Generation &);
};

qint64 stored(qint64 appleSeconds, const Generation &generation)
{
    return generation.nanosecondDates() ? appleSeconds * 1000000000 : appleSeconds;
}

void bindText(Statement &statement, int position, const QByteArray &utf8)
{
    if (utf8.isNull())
        statement.bind(position, nullptr);
    else
        statement.bind(position, Utf8{utf8});
}

void bindText(Statement &statement, int position, const QString &text)
{
    statement.bind(position, text);
}

using S = Statement;
using M = MessageRow;
using G = Generation;

constexpr BoundColumn<M> messageBindings[] = {
    {"guid", [](S &s, int p, const M &m, const G &) { bindText(s, p, m.guid); }},
    {"text", [](S &s, int p, const M &m, const G &) { bindText(s, p, m.text); }},
    {"handle_id", [](S &s, int p, const M &m, const G &) { s.bind(p, m.handleId); }},
    {"subject", [](S &s, int p, const M &m, const G &) { bindText(s, p, m.subject); }},
    {"attributedBody", [](S &s, int p, const M &m, const G &) { s.bind(p, m.attributedBody); }},
    {"version", [](S &s, int p, const M &, const G &) { s.bind(p, 10); }},
    {"service", [](S &s, int p, const M &m, const G &) { s.bind(p, Utf8{m.service}); }},
    {"account", [](S &s, int p, const M &, const G &) { s.bind(p, Utf8{"E:jordis@example.org"}); }},
    {"date", [](S &s, int p, const M &m, const G &g) { s.bind(p, stored(m.date, g)); }},
    {"date_read", [](S &s, int p, const M &m, const G &g) { s.bind(p, stored(m.dateRead, g)); }},
    {"date_delivered", [](S &s, int p, const M &m, const G &g) { s.bind(p, stored(m.dateDelivered, g)); }},
    {"is_delivered", [](S &s, int p, const M &m, const G &) { s.bind(p, m.dateDelivered != 0); }},
    {"is_finished", [](S &s, int p, const M &, const G &) { s.bind(p, 1); }},
    {"is_from_me", [](S &s, int p, const M &m, const G &) { s.bind(p, m.fromMe); }},
    {"is_read", [](S &s, int p, const M &m, const G &) { s.bind(p, m.dateRead != 0); }},
    {"is_sent", [](S &s, int p, const M &m, const G &) { s.bind(p, m.fromMe); }},
    {"cache_has_attachments", [](S &s, int p, const M &m, const G &) { s.bind(p, m.hasAttachments); }},
    {"cache_roomnames", [](S &s, int p, const M &m, const G &) { bindText(s, p, m.roomName); }},
    {"was_data_detected", [](S &s, int p, const M &, const G &) { s.bind(p, 1); }},
    {"is_audio_message", [](S &s, int p, const M &m, const G &) { s.bind(p, m.audio); }},
    {"item_type", [](S &s, int p, const M &m, const G &) { s.bind(p, m.itemType); }},
    {"other_handle", [](S &s, int p, const M &m, const G &) { s.bind(p, m.otherHandle); }},
    {"group_title", [](S &s, int p, const M &m, const G &) { bindText(s, p, m.groupTitle); }},
    {"group_action_type", [](S &s, int p, const M &m, const G &) { s.bind(p, m.groupActionType); }},
    {"share_status", [](S &s, int p, const M &m, const G &) { s.bind(p, m.shareStatus); }},
    {"associated_message_guid", [](S &s, int p, const M &m, const G &) { bindText(s, p, m.associatedGuid); }},
    {"associated_message_type", [](S &s, int p, const M &m, const G &) { s.bind(p, m.associatedType); }},
    {"associated_message_range_length",
     [](S &s, int p, const M &m, const G &) { s.bind(p, m.associatedType != 0); }},
    {"message_summary_info", [](S &s, int p, const M &m, const G &) { s.bind(p, m.summaryInfo); }},
    {"destination_caller_id", [](S &s, int p, const M &, const G &) { s.bind(p, Utf8{"+14155550100"}); }},
    {"thread_originator_guid",
     [](S &s, int p, const M &m, const G &) { bindText(s, p, m.threadOriginator); }},
    {"thread_originator_part",
     [](S &s, int p, const M &m,
        const G &) { m.threadOriginator.isNull() ? s.bind(p, nullptr) : s.bind(p, Utf8{"0:0:1"}); }},
    {"reply_to_guid", [](S &s, int p, const M &m, const G &) { bindText(s, p, m.threadOriginator); }},
    {"date_retracted", [](S &s, int p, const M &m, const G &g) { s.bind(p, stored(m.dateRetracted, g)); }},
    {"date_edited", [](S &s, int p, const M &m, const G &g) { s.bind(p, stored(m.dateEdited, g)); }},
    {"part_count", [](S &s, int p, const M &, const G &) { s.bind(p, 1); }},
};

using A = AttachmentRow;

constexpr BoundColumn<A> attachmentBindings[] = {
    {"guid", [](S &s, int p, const A &a, const G &) { bindText(s, p, a.guid); }},
    {"created_date", [](S &s, int p, const A &a, const G &) { s.bind(p, a.created); }},
    {"start_date", [](S &s, int p, const A &a, const G &) { s.bind(p, a.created); }},
    {"filename", [](S &s, int p, const A &a, const G &) { bindText(s, p, a.filename); }},
    {"uti", [](S &s, int p, const A &a, const G &) { bindText(s, p, a.uti); }},
    {"mime_type", [](S &s, int p, const A &a, const G &) { bindText(s, p, a.mimeType); }},
    {"transfer_state", [](S &s, int p, const A &, const G &) { s.bind(p, 5); }},
    {"is_outgoing", [](S &s, int p, const A &a, const G &) { s.bind(p, a.outgoing); }},
    {"transfer_name", [](S &s, int p, const A &a, const G &) { bindText(s, p, a.transferName); }},
    {"total_bytes", [](S &s, int p, const A &a, const G &) { s.bind(p, a.totalBytes); }},
    {"original_guid", [](S &s, int p, const A &a, const G &) { bindText(s, p, a.guid); }},
};

/// An INSERT for those columns that the generation has.
template <typename Row>
class Insert
{
public:
    Insert(SqliteFile &file, const char *table, std::span<const BoundColumn<Row>> bindings,
           std::span<const Column> schema, const Generation &generation)
        : m_used(usedOf(bindings, columnNames(schema, generation.ios))),
          m_statement(file, sqlOf(table, m_used)),
          m_generation(generation)
    {
    }

    void run(const Row &row)
    {
        int position = 0;
        for (const BoundColumn<Row> &column : m_used)
            column.bind(m_statement, ++position, row, m_generation);
        m_statement.step();
    }

private:
    static std::vector<BoundColumn<Row>> usedOf(std::span<const BoundColumn<Row>> bindings,
                                                const QByteArrayList &present)
    {
        std::vector<BoundColumn<Row>> used;
        std::copy_if(bindings.begin(), bindings.end(), std::back_inserter(used),
                     [&](const BoundColumn<Row> &column) { return present.contains(column.name); });
        return used;
    }

    static QByteArray sqlOf(const char *table, const std::vector<BoundColumn<Row>> &used)
    {
        QByteArrayList names;
        for (const BoundColumn<Row> &column : used)
            names << column.name;
        QByteArray places = QByteArray("?,").repeated(names.size());
        places.chop(1);
        return QByteArray("insert into ") + table + '(' + names.join(',') + ") values(" + places + ')';
    }

    std::vector<BoundColumn<Row>> m_used;
    Statement m_statement;
    const Generation &m_generation;
};

QString nullWhenEmpty(const QString &text)
{
    return text.isEmpty() ? QString() : text;
}

} // namespace

struct MessageDatabase::Statements
{
    Insert<MessageRow> message;
    Insert<AttachmentRow> attachment;
    Statement joinMessage;
    Statement joinAttachment;
};

MessageDatabase::MessageDatabase(const QString &path, const Generation &generation, quint64 seed)
    : m_generation(generation), m_file(path), m_seed(seed)
{
    m_file.execute(messageTables(generation));
    const char *join = generation.ios >= 11 ? "insert into chat_message_join values(?1,?2,?3)"
                                            : "insert into chat_message_join values(?1,?2)";
    m_statements.reset(new Statements{
        {m_file, "message", messageBindings, messageColumns(), generation},
        {m_file, "attachment", attachmentBindings, attachmentColumns(), generation},
        {m_file, join},
        {m_file, "insert into message_attachment_join values(?,?)"},
    });
}

MessageDatabase::~MessageDatabase() = default;

qint64 MessageDatabase::addHandle(const HandleRow &row)
{
    Statement(m_file, "insert into handle(id, country, service) values(?,?,?)")
        .run(row.id, nullWhenEmpty(row.country), row.service);
    return m_file.lastInsertId();
}

qint64 MessageDatabase::addChat(const ChatRow &row)
{
    const QString guid =
        row.service + (row.group ? QStringLiteral(";+;") : QStringLiteral(";-;")) + row.identifier;
    Statement(m_file,
              "insert into chat(guid, style, state, account_id, chat_identifier, service_name, room_name, "
              "account_login, last_addressed_handle) values(?,?,3,?,?,?,?,?,?)")
        .run(guid, row.group ? 43 : 45, QString::fromLatin1(SeededGenerator(m_seed).fork("account").uuid()),
             row.identifier, row.service, row.group ? row.identifier : QString(),
             QStringLiteral("E:jordis@example.org"), QStringLiteral("+14155550100"));
    const qint64 chat = m_file.lastInsertId();
    if (m_generation.ios >= 7)
        Statement(m_file, "update chat set display_name=? where ROWID=?").run(row.displayName, chat);
    Statement join(m_file, "insert into chat_handle_join values(?,?)");
    for (const qint64 handle : row.handles)
        join.run(chat, handle);
    return chat;
}

qint64 MessageDatabase::addMessage(const MessageRow &row, qint64 chat)
{
    m_statements->message.run(row);
    const qint64 message = m_file.lastInsertId();
    if (chat > 0)
        join(chat, message, row.date);
    return message;
}

void MessageDatabase::join(qint64 chat, qint64 message, qint64 date)
{
    Statement &statement = m_statements->joinMessage;
    if (m_generation.ios >= 11)
        statement.bind(3, stored(date, m_generation));
    statement.run(chat, message);
}

qint64 MessageDatabase::addAttachment(const AttachmentRow &row, qint64 message)
{
    m_statements->attachment.run(row);
    const qint64 attachment = m_file.lastInsertId();
    m_statements->joinAttachment.run(message, attachment);
    return attachment;
}

void MessageDatabase::beginWal()
{
    m_file.execute(messageIndexes(m_generation));
    m_file.beginWal();
    m_walBegun = true;
}

void MessageDatabase::finish()
{
    m_statements.reset();
    if (m_walBegun) {
        m_file.closeKeepingWal(SeededGenerator(m_seed).fork("wal").next());
        return;
    }
    m_file.execute(messageIndexes(m_generation));
    m_file.close(m_generation.ios >= 9 ? SqliteFile::Journal::Wal : SqliteFile::Journal::Rollback);
}

} // namespace sample

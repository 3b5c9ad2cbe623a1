#include "messages/local_message_store.h"

#include "base/error.h"
#include "messages/attachment_intake.h"
#include "messages/logic_hash.h"
#include "messages/message_writer.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <deque>

namespace {
constexpr int cacheKibibytes = 64 * 1024;

struct LaterColumn
{
    const char *table;
    const char *column;
    std::initializer_list<const char *> statements;
};

// Columns that came later, with what adds them to an older store.
const LaterColumn laterColumns[] = {
    {"chat", "group_id", {"ALTER TABLE chat ADD COLUMN group_id TEXT;"}},
    {"message", "is_audio_message", {"ALTER TABLE message ADD COLUMN is_audio_message INTEGER DEFAULT 0;"}},
    {"message", "is_played", {"ALTER TABLE message ADD COLUMN is_played INTEGER DEFAULT 0;"}},
    {"message", "date_played", {"ALTER TABLE message ADD COLUMN date_played INTEGER;"}},
    {"message", "item_type", {"ALTER TABLE message ADD COLUMN item_type INTEGER DEFAULT 0;"}},
    {"message", "other_handle", {"ALTER TABLE message ADD COLUMN other_handle INTEGER DEFAULT -1;"}},
    {"message", "group_title", {"ALTER TABLE message ADD COLUMN group_title TEXT;"}},
    {"message", "group_action_type", {"ALTER TABLE message ADD COLUMN group_action_type INTEGER DEFAULT 0;"}},
    {"message", "share_status", {"ALTER TABLE message ADD COLUMN share_status INTEGER;"}},
    {"message", "share_direction", {"ALTER TABLE message ADD COLUMN share_direction INTEGER;"}},
    {"message", "is_expirable", {"ALTER TABLE message ADD COLUMN is_expirable INTEGER DEFAULT 0;"}},
    {"message", "expire_state", {"ALTER TABLE message ADD COLUMN expire_state INTEGER DEFAULT 0;"}},
    {"message",
     "message_action_type",
     {"ALTER TABLE message ADD COLUMN message_action_type INTEGER DEFAULT 0;"}},
    {"message",
     "logic_hash",
     {"ALTER TABLE message ADD COLUMN logic_hash TEXT;",
      "CREATE INDEX message_idx_logic_hash ON message(logic_hash);"}},
};

// Tables and indexes that came later: the former texts of messages, the ages of their sources, and what finds
// the joins of an attachment and of a handle, which triggers and references look for with each one that goes.
constexpr const char *laterTables[] = {
    "CREATE TABLE IF NOT EXISTS message_history(message_id INTEGER REFERENCES message (ROWID) ON DELETE "
    "CASCADE, "
    "text TEXT NOT NULL, date INTEGER DEFAULT 0, taken_at INTEGER DEFAULT 0, UNIQUE(message_id, text));",
    "CREATE TABLE IF NOT EXISTS message_source(first INTEGER PRIMARY KEY, last INTEGER NOT NULL, taken_at "
    "INTEGER "
    "NOT NULL);",
    "CREATE INDEX IF NOT EXISTS message_attachment_join_idx_attachment_id ON "
    "message_attachment_join(attachment_id);",
    "CREATE INDEX IF NOT EXISTS chat_handle_join_idx_handle_id ON chat_handle_join(handle_id);",
};

// A store that lacks a column can still be read, so a failure is no reason not to open it.
void runLogged(Sqlite3DB &db, const char *statement, int line = __builtin_LINE())
{
    if (!db.exec(QLatin1String(statement)))
        qCritical().noquote() << QStringLiteral("line:%1, sql:%2, error:%3")
                                     .arg(line)
                                     .arg(QLatin1String(statement), db.lastError());
}

// Gives the messages of an older store the key by which they are recognised when they are saved again.
void fillLogicHashes(Sqlite3DB &db)
{
    Sqlite3Cursor row = db.queryThrow(QStringLiteral(
        "select m.rowid, m.guid, m.text, m.date, m.is_from_me, m.item_type, h.id from message as m left join "
        "handle as h on h.rowid=m.handle_id where m.logic_hash is null"));
    while (row.moveNext()) {
        _MsgHandle handle;
        handle.id = row.getText(6);
        std::deque<_MsgAttachment> attachments;
        _MsgMessage message;
        message.guid = row.getText(1);
        message.text = row.getText(2);
        message.date = row.getInt(3);
        message.is_from_me = row.getInt(4);
        message.item_type = row.getInt(5);
        message.handle = &handle;
        Sqlite3Cursor &file = db.cachedThrow(
            Sqlite3Sql(QStringLiteral("select a.filename from attachment as a inner join "
                                      "message_attachment_join as j on j.attachment_id=a.rowid where "
                                      "j.message_id=?"))
                .addInt64Param(row.getInt64(0)));
        while (file.moveNext()) {
            attachments.emplace_back().filename = file.getText(0);
            message.attachments.push_back(&attachments.back());
        }
        db.executeCachedThrow(Sqlite3Sql(QStringLiteral("update message set logic_hash=? where rowid=?"))
                                  .addTextParam(logicHash(message))
                                  .addInt64Param(row.getInt64(0)));
    }
}
} // namespace

MessageStoreFile::MessageStoreFile(const QString &folder, const QString &fileName, const char *className)
    : AbsLocalDb(folder, fileName, QStringLiteral(":/res/localmsgdb_ddl.sql")), m_className(className)
{
}

qint64 MessageStoreFile::count()
{
    Sqlite3Cursor row = m_db.queryThrow(QStringLiteral(
        "select count(*) from chat_message_join as j inner join message as m on j.message_id = "
        "m.rowid and m.item_type = 0"));
    return row.moveNext() ? row.getInt64(0) : 0;
}

void MessageStoreFile::prepare()
{
    m_db.exec(QStringLiteral("pragma foreign_keys=on"));
    m_db.exec(QStringLiteral("pragma cache_size=-%1").arg(cacheKibibytes));
}

void MessageStoreFile::createTables()
{
    QFile file(script());
    if (!file.open(QIODevice::ReadOnly))
        throw Error(
            QStringLiteral("read %1 ddl error. %2").arg(QLatin1String(m_className), file.errorString()));
    if (!m_db.exec(QString::fromUtf8(file.readAll())))
        throw Error(QStringLiteral("create %1 error. %2").arg(QLatin1String(m_className), m_db.lastError()));
}

void MessageStoreFile::upgrade()
{
    prepareForWriting(m_db);
    bool hashesMissing = false;
    for (const LaterColumn &later : laterColumns) {
        const QString column = QLatin1String(later.column);
        if (m_db.tbCols(QLatin1String(later.table)).contains(column))
            continue;
        for (const char *statement : later.statements)
            runLogged(m_db, statement);
        hashesMissing = hashesMissing || column == QLatin1String("logic_hash");
    }
    for (const char *statement : laterTables)
        runLogged(m_db, statement);
    if (hashesMissing)
        fillLogicHashes(m_db);
}

LocalMessageStore::LocalMessageStore(const QString &folder)
    : MessageStoreFile(folder, QStringLiteral("messages.db"), "IOS6MessageDb")
{
}

void LocalMessageStore::upgrade()
{
    MessageStoreFile::upgrade();
    AttachmentIntake::removeLeftovers(QFileInfo(path()).path(), [this](const QString &guid) {
        return m_db
            .queryThrow(
                Sqlite3Sql(QStringLiteral("select 1 from attachment where guid=?")).addTextParam(guid))
            .moveNext();
    });
}

QString LocalMessageStore::pathIn(const QString &folder)
{
    return QDir(folder).filePath(QStringLiteral("messages.db"));
}

MessageRecycleDb::MessageRecycleDb(const QString &folder)
    : MessageStoreFile(folder, QStringLiteral("recycle.db"), "MessageRecycleDb")
{
}

QString MessageRecycleDb::pathIn(const QString &folder)
{
    return QDir(folder).filePath(QStringLiteral("recycle.db"));
}

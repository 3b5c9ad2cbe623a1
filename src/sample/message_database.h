#pragma once

#include "sample/generation.h"
#include "sample/message_rows.h"
#include "sample/sqlite_file.h"

#include <memory>

namespace sample {

/// Writes an sms.db of one generation: a column that the generation lacks is left out.
class MessageDatabase
{
public:
    MessageDatabase(const QString &path, const Generation &generation, quint64 seed);
    ~MessageDatabase();

    qint64 addHandle(const HandleRow &row);
    qint64 addChat(const ChatRow &row);
    qint64 addMessage(const MessageRow &row, qint64 chat);
    qint64 addAttachment(const AttachmentRow &row, qint64 message);
    /// One more conversation for a message, or a row that leads nowhere.
    void join(qint64 chat, qint64 message, qint64 date);

    /// Runs a statement without parameters on the database under construction.
    void execute(const QByteArray &sql) { m_file.execute(sql); }
    qint64 integer(const QByteArray &sql) { return m_file.integer(sql); }
    const Generation &generation() const { return m_generation; }

    /// Ends the database file; messages that follow stand in a write-ahead log beside it.
    void beginWal();

    /// Writes the indexes and the header. Nothing can be added afterwards.
    void finish();

private:
    struct Statements;

    const Generation &m_generation;
    SqliteFile m_file;
    quint64 m_seed;
    bool m_walBegun = false;
    std::unique_ptr<Statements> m_statements;
};

} // namespace sample

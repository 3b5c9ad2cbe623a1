#pragma once

#include "messages/suspended_triggers.h"

#include <QHash>
#include <QSet>

#include <optional>

/// Moves messages with all that belongs to them between two message stores that one connection has open, such
/// as the store ("main") and the recycle store. Every record keeps its row id where that is free. Used inside
/// one transaction of the caller's; throws Error.
class MessageMover
{
public:
    /// The names under which the connection knows the two.
    MessageMover(Sqlite3DB &db, const QString &from, const QString &to);

    bool hasMessage(qint64 rowid);
    void move(qint64 rowid);
    /// Removes the conversations that have become empty and sets right what the rest say of themselves. Call
    /// once, at the end.
    void finish();

private:
    struct Table
    {
        QString name;
        QString columns; // those that both stores have, without the row id, joined with ","
    };

    Table table(const char *name, const QSet<QString> &except = {}) const;
    Sqlite3Cursor &query(const QString &sql, std::initializer_list<qint64> values);
    std::optional<qint64> number(const QString &sql, std::initializer_list<qint64> values);
    QList<qint64> numbers(const QString &sql, std::initializer_list<qint64> values);
    void run(const QString &sql, std::initializer_list<qint64> values);
    QString in(const QString &sql) const;
    static QString freeRowid(const Table &table);
    qint64 copyRow(const Table &table, qint64 rowid, const QString &find, QHash<qint64, qint64> &copies);
    qint64 copyHandle(qint64 rowid);
    qint64 copyChat(qint64 rowid);
    qint64 copyMessage(qint64 rowid);
    void copyHistory(qint64 rowid, qint64 copy);
    void remove(qint64 rowid);
    void setLast(const QString &store, qint64 chat);

    Sqlite3DB &m_db;
    QString m_from;
    QString m_to;
    Table m_chat;
    Table m_handle;
    Table m_message;
    Table m_attachment;
    QHash<qint64, qint64> m_chats;
    QHash<qint64, qint64> m_handles;
    QHash<qint64, qint64> m_attachments;
    SuspendedTriggers m_sweep; // it would look for what each move has removed by itself
};

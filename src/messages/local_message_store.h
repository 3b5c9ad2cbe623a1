#pragma once

#include "personal/abs_local_db.h"

/// A database of the message store's tables in a local database's folder.
class MessageStoreFile : public AbsLocalDb
{
public:
    /// Messages in conversations.
    qint64 count();
    Sqlite3DB &database() { return m_db; }

protected:
    /// `className` is the one that failures name.
    MessageStoreFile(const QString &folder, const QString &fileName, const char *className);

    void prepare() override;
    void createTables() override;
    void upgrade() override;

private:
    const char *m_className;
};

/// "messages.db": messages gathered from any number of sources, each once. Read it with IOS6MessageDb.
class LocalMessageStore : public MessageStoreFile
{
public:
    explicit LocalMessageStore(const QString &folder);
    static QString pathIn(const QString &folder);

protected:
    void upgrade() override;
};

/// "recycle.db": what was deleted from the store beside it, in tables of the same kind, so that it can be put
/// back with everything that belongs to it.
class MessageRecycleDb : public MessageStoreFile
{
public:
    explicit MessageRecycleDb(const QString &folder);
    static QString pathIn(const QString &folder);
};

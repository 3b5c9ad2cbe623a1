#pragma once

#include "sqlite/sqlite3_db.h"

#include <QString>

/// The base of the stores that make up a local database: one SQLite file of a fixed name in the database's
/// folder, made from a script when it is new. Owned and used by one thread at a time. Nothing is written
/// outside of a transaction that the caller opens with begin().
class AbsLocalDb
{
public:
    virtual ~AbsLocalDb() = default;

    /// Opens the store, or makes it in one step, so that a killed process leaves either none or a whole one.
    /// Throws Error.
    void open();
    /// The same without making one: false when there is no such store yet. Throws Error for one that cannot
    /// be read, or has lost its content.
    bool openExisting();
    /// Throws Error for a file of 0 bytes, which SQLite takes for a new database.
    static void requireContent(const QString &path);
    bool isOpen() const { return m_db.isOpen(); }
    QString path() const { return m_path; }

    /// One job is one transaction. Throws Error when another process is writing.
    void begin() { m_db.beginTran(); }
    void commit() { m_db.commitTran(); }
    void rollback() { m_db.rollbackTran(); }

protected:
    /// `folder` is the local database's folder, `script` the resource with the tables of a new store.
    AbsLocalDb(const QString &folder, const QString &fileName, const QString &script);

    /// What a connection needs before its first transaction.
    virtual void prepare() {}
    /// Makes the tables of a new store by running the script. Called inside a transaction.
    virtual void createTables();
    /// Brings a store of an earlier version up to date. Called inside the same transaction.
    virtual void upgrade() {}

    const QString &script() const { return m_script; }

    Sqlite3DB m_db;

private:
    QString m_path;
    QString m_script;

    void openFile();
    bool isEmpty() const;
};

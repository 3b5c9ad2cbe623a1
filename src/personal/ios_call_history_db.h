#pragma once

#include "backup/file_source.h"
#include "personal/call_entry.h"
#include "sqlite/sqlite3_db.h"

#include <QList>
#include <QSet>

#include <memory>

/// One generation of the device's call database.
class AbsCallsDbCore
{
public:
    virtual ~AbsCallsDbCore() = default;
    /// False when the source does not list the file. Throws Error when it cannot be read or lacks its table of
    /// calls.
    bool open(FileSource &source);
    /// Newest first; `person` is left empty.
    virtual QList<CallEntry> readAll() = 0;
    virtual qint64 count() = 0;

protected:
    Sqlite3DB m_db;

private:
    virtual SourceFile file() const = 0;
    virtual void prepare() = 0;
};

/// "call_history.db", the older one.
class IOS5CallsDbCore : public AbsCallsDbCore
{
public:
    QList<CallEntry> readAll() override;
    qint64 count() override;

    /// What the flags of a row mean, which has changed twice.
    static CallType typeOfFlags(int flags, bool hasAnsweredColumn, bool answered, int clientVersion);

private:
    SourceFile file() const override;
    void prepare() override;

    QSet<QString> m_columns;
    int m_clientVersion = 0;
};

/// "CallHistory.storedata", the newer one.
class IOS8CallsDbCore : public AbsCallsDbCore
{
public:
    QList<CallEntry> readAll() override;
    qint64 count() override;

private:
    SourceFile file() const override;
    void prepare() override;

    int m_entity = 0;
};

/// The call history of a source, whatever its generation, with the names of the contacts that own the
/// addresses. `source` must outlive the reader. Used by one thread at a time.
class IOSCallHistoryDb
{
public:
    explicit IOSCallHistoryDb(FileSource &source);

    /// Throws Error("Cannot find ID or ID.") with both file ids when the source has neither database.
    qint64 count();
    /// Newest first. Throws as count() does.
    QList<CallEntry> readAll();

private:
    FileSource &m_source;
    std::unique_ptr<AbsCallsDbCore> m_core;

    template <typename Core>
    std::unique_ptr<AbsCallsDbCore> openCore();
    AbsCallsDbCore &core();
};

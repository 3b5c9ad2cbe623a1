#pragma once

#include "backup/file_source.h"
#include "personal/call_entry.h"
#include "sqlite/sqlite3_db.h"

#include <QList>

#include <optional>

class Report;

/// One generation of the device's call database.
class AbsCallsDbCore
{
public:
    virtual ~AbsCallsDbCore() = default;
    /// False when the source does not list the file. Throws Error when it cannot be read.
    bool open(FileSource &source, Report &report);
    /// Newest first; `person` is left empty. Throws Error when no call can be read.
    virtual QList<CallEntry> readAll(Report &report) = 0;

protected:
    Sqlite3DB m_db;

private:
    virtual SourceFile file() const = 0;
};

/// "call_history.db", the older one.
class IOS5CallsDbCore : public AbsCallsDbCore
{
public:
    QList<CallEntry> readAll(Report &report) override;

    /// What the flags of a row mean, which has changed twice.
    static CallType typeOfFlags(int flags, bool hasAnsweredColumn, bool answered, int clientVersion);

private:
    SourceFile file() const override;
    int clientVersion(Report &report) const;
};

/// "CallHistory.storedata", the newer one.
class IOS8CallsDbCore : public AbsCallsDbCore
{
public:
    QList<CallEntry> readAll(Report &report) override;

private:
    SourceFile file() const override;
};

/// The call history of a source, whatever its generation, with the names of the contacts that own the
/// addresses. `source` must outlive the reader. Used by one thread at a time.
class IOSCallHistoryDb
{
public:
    explicit IOSCallHistoryDb(FileSource &source);

    /// The calls of both generations, newest first; one that is in both is listed once. Nothing is left out
    /// by a rule. A database that cannot be read is told in the report when the other has the calls. Throws
    /// Error("Cannot find ID or ID.") with both file ids when the source has neither database.
    QList<CallEntry> readAll(Report &report);

private:
    FileSource &m_source;
};

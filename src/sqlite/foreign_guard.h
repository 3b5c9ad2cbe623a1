#pragma once

#include <QHash>
#include <QString>

struct sqlite3;
class Progress;

/// While it lives, the statements of this thread on databases that somebody else made end with Cancelled once
/// the user has asked to stop.
class StatementStop
{
public:
    /// `progress` must outlive this object.
    explicit StatementStop(const Progress &progress);
    ~StatementStop();
    StatementStop(const StatementStop &) = delete;
    StatementStop &operator=(const StatementStop &) = delete;

    /// True when there is a job in this thread whose user has asked to stop.
    static bool isAsked();

private:
    const Progress *m_before;
};

/// Keeps the statements on a database that somebody else made within bounds: a table is a table and nothing
/// that computes, no value is endless, and a statement that works on without giving a row ends.
class ForeignGuard
{
public:
    enum class End { None, Stopped /* by the user */, RanAway };

    /// Before anything of the database is read.
    explicit ForeignGuard(sqlite3 *db);
    ~ForeignGuard();
    ForeignGuard(const ForeignGuard &) = delete;
    ForeignGuard &operator=(const ForeignGuard &) = delete;

    /// Once it is known to be a database.
    void setSize(qint64 bytes) { m_mostSteps = stepsOf(bytes); }
    void readTableKinds();

    /// A statement gave a row, or ended: the next may take as long again.
    void gotOn() { m_steps = 0; }
    /// Why SQLite was interrupted.
    End end() const { return m_end; }

    /// What is wrong with a table, "is a view"; empty for one that is good, and for one that is not there.
    QString faultOf(const QString &table);
    /// The first table of a statement that something is wrong with, else an empty text.
    QString badTableOf(const QString &sql);

    /// How many steps a statement on a database of this size may take without giving a row.
    static qint64 stepsOf(qint64 bytes);

private:
    struct Table
    {
        QString fault;
        bool isLookedInto = false; // for columns that are computed
    };

    static int onProgress(void *self);
    QString computedColumnOf(const QString &table) const;

    sqlite3 *m_db;
    qint64 m_steps = 0;
    qint64 m_mostSteps;
    End m_end = End::None;
    QHash<QString, Table> m_tables; // by name in lower case
};

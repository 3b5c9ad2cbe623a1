#pragma once

#include "sqlite/sqlite3_db.h"

#include <QList>

/// Takes triggers of a message store away while a job does by itself what they are for. They look at whole
/// tables for each row, which takes hours for a large selection. Lives inside one transaction of the
/// caller's, which brings them back as well when it is rolled back. Throws Error.
class SuspendedTriggers
{
public:
    /// `schema` is the name under which the connection knows the store; all of its triggers when `only` is
    /// empty.
    SuspendedTriggers(Sqlite3DB &db, const QString &schema, const QString &only = {});

    /// Puts them back as they were. Call once, before the transaction ends.
    void restore();

private:
    struct Trigger
    {
        QString name;
        QString sql;
    };

    Sqlite3DB &m_db;
    QString m_schema;
    QList<Trigger> m_triggers;
};

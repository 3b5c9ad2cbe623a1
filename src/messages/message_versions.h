#pragma once

#include "messages/msg_records.h"
#include "sqlite/sqlite3_db.h"

#include <map>

/// What becomes of a message that is in a store already, under the same GUID, with other content.
enum class ChangedMessages {
    Keep,  // it stays as it is there
    Update // the content of the newer source wins, the other one is kept as the message's history
};

/// From sources of which age the rows of a store are, and what their messages said before. The ages are kept
/// for ranges of row ids: the rows of one job stand together, so that there are few of them however many
/// messages there are. Used inside one transaction of the caller's; throws Error.
class MessageVersions
{
public:
    /// `takenAt` is the age of the source of this job, in Unix seconds; 0 where nobody knows.
    MessageVersions(Sqlite3DB &store, qint64 takenAt);

    /// True when the source of this job is as new as the one that the row has its content from, or newer.
    bool isNewest(qint64 row) const;
    /// True when the text is among the former ones of the row.
    bool isFormerText(qint64 row, const QString &text);
    /// Keeps the present text of a row that is about to get this one; nothing when they are the same.
    void keepTextBefore(qint64 row, const QString &newText);
    /// Keeps the text of an older version, unless it is known.
    void addFormerText(qint64 row, const _MsgMessage &older);

    /// The rows of [first, last] stand for messages of this job.
    void rowsSeen(qint64 first, qint64 last);
    /// Writes down what rowsSeen() said. Call once, at the end.
    void finish();

private:
    struct Range
    {
        qint64 last = 0;
        qint64 takenAt = 0;
    };

    void add(qint64 row, const QString &text, int date, qint64 takenAt);
    qint64 ageOf(qint64 row) const;
    void splitAt(qint64 row);

    Sqlite3DB &m_db;
    qint64 m_takenAt;
    std::map<qint64, Range> m_ranges; // by their first row id; no two share a row
};

#pragma once

#include "personal/abs_local_db.h"
#include "personal/call_entry.h"

#include <QList>

class Report;

/// "calls.db": calls gathered from any number of sources, each once: the same second, address and type is one
/// call.
class LocalCallHistoryDb : public AbsLocalDb
{
public:
    explicit LocalCallHistoryDb(const QString &folder);

    struct Added
    {
        qint64 id = 0;
        bool wasThere = false;
        bool differs = false; // in what is not in the hash; the stored one was kept
    };

    /// Of those that readAll() gives. Throws Error where the store is damaged.
    qint64 count();
    /// Newest first. Reads around damage, which is told in the report.
    QList<CallEntry> readAll(Report &report);
    /// Call between begin() and commit().
    Added add(const CallEntry &call);
    /// False when there is no such call.
    bool remove(qint64 id);

    /// MD5 over second, address and type, as 32 hexadecimal digits.
    static QString hashOf(const CallEntry &call);

protected:
    void upgrade() override;
};

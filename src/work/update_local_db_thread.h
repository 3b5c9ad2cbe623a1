#pragma once

#include "work/worker_thread.h"

#include <QStringList>

/// True when one of the local databases in `folder` is of an older layout: it keeps its messages in "mms.db"
/// or its events in "calendar.db".
bool hasOldLocalDatabases(const QString &folder);

/// Brings the local databases in `folder` to today's layout. What an old file holds is added to today's store
/// in one transaction; only then is the old file renamed to "NAME.old", which no program reads. One that
/// cannot be brought over stays as it is, and the others are still done. Gives a sentence for each failure,
/// and for what could not be read. Throws Cancelled.
QStringList updateLocalDatabases(const QString &folder, Progress &progress);

/// Does that at the start of the program.
class UpdateLocalDbThread : public WorkerThread
{
    Q_OBJECT

public:
    explicit UpdateLocalDbThread(QString folder) : m_folder(std::move(folder)) {}

protected:
    QString work(Progress &progress) override;

private:
    QString m_folder;
};

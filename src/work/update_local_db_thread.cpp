#include "work/update_local_db_thread.h"

#include "backup/loose_database.h"
#include "base/error.h"
#include "base/file_names.h"
#include "base/report.h"
#include "base/texts.h"
#include "messages/message_source.h"
#include "messages/save_messages.h"
#include "personal/calendar_db.h"
#include "personal/store_job.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {
const QString oldMessages = QStringLiteral("mms.db");
const QString oldCalendar = QStringLiteral("calendar.db");

QString oldFile(const QString &folder, const QString &name)
{
    const QFileInfo info(QDir(folder).filePath(name));
    return info.isFile() ? info.filePath() : QString();
}

QStringList databaseFolders(const QString &folder)
{
    QStringList folders;
    for (const QString &name : QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Unsorted))
        folders.append(QDir(folder).filePath(name));
    return folders;
}

// With what SQLite keeps beside it, under names that belong together.
void setAside(const QString &file)
{
    const QString aside = freeFileName(file + QStringLiteral(".old"));
    for (const char *companion : {"-wal", "-journal"})
        QFile::rename(file + QLatin1String(companion), aside + QLatin1String(companion));
    QFile old(file);
    if (!old.rename(aside))
        throw Error(QStringLiteral("can not rename %1. %2").arg(file, old.errorString()));
}

QStringList updateMessages(const QString &folder, const QString &file, Progress &progress)
{
    const MessageSource source = openMessageFile(file);
    source.database->loadChats();
    source.database->loadMessages(0, progress);
    const QString status = textFor("IDS_UPDATING_LOCAL_DB_%1_MESSAGES").arg(QFileInfo(folder).fileName());
    Report report = source.database->report();
    report.merge(saveMessages(source.database->select({}, INT64_MIN, INT64_MAX), source.files.get(), folder,
                              status, progress)
                     .report);
    setAside(file);
    return problemsOf(report);
}

QStringList updateCalendar(const QString &folder, const QString &file, Progress &progress)
{
    LooseDatabaseSource copies(folder, QString());
    LocalCalendarsDb old(QFileInfo(copies.copyOf(file)).path(), oldCalendar);
    old.open();
    Report report;
    const QList<CalendarEvent> events = old.readAll(report);
    LocalCalendarsDb store(folder);
    store.open();
    StoreJob job(store);
    CountedProgress counted(
        progress, textFor("IDS_UPDATING_LOCAL_DB_%1_CALENDAR_ITEMS").arg(QFileInfo(folder).fileName()),
        QStringLiteral("Calendar event:%1 / %2"), events.size());
    for (const CalendarEvent &event : events) {
        counted.item();
        store.save(event);
    }
    job.commit();
    setAside(file);
    return problemsOf(report);
}

/// Gives what went wrong, each with the name of the file.
template <typename Update>
QStringList problemsOf(const QString &file, Update update)
{
    QStringList problems;
    try {
        problems = update();
    } catch (const Error &error) {
        problems.append(error.sentence());
    }
    for (QString &problem : problems)
        problem.prepend(file + QStringLiteral(": "));
    return problems;
}
} // namespace

bool hasOldLocalDatabases(const QString &folder)
{
    const QStringList folders = databaseFolders(folder);
    return std::any_of(folders.begin(), folders.end(), [](const QString &database) {
        return !oldFile(database, oldMessages).isEmpty() || !oldFile(database, oldCalendar).isEmpty();
    });
}

QStringList updateLocalDatabases(const QString &folder, Progress &progress)
{
    QStringList problems;
    for (const QString &database : databaseFolders(folder)) {
        if (const QString file = oldFile(database, oldMessages); !file.isEmpty())
            problems += problemsOf(file, [&] { return updateMessages(database, file, progress); });
        if (const QString file = oldFile(database, oldCalendar); !file.isEmpty())
            problems += problemsOf(file, [&] { return updateCalendar(database, file, progress); });
    }
    return problems;
}

QString UpdateLocalDbThread::work(Progress &progress)
{
    const QStringList problems = updateLocalDatabases(m_folder, progress);
    if (!problems.isEmpty())
        throw Error(problems.join(QLatin1Char('\n')));
    return {};
}

#include "messages/save_messages.h"

#include "base/error.h"
#include "base/texts.h"
#include "messages/message_mover.h"
#include "messages/message_saving.h"
#include "messages/suspended_triggers.h"

#include <QFileInfo>

#include <algorithm>

namespace {
constexpr int rowsOfAStep = 2000;

enum class Direction { IntoRecycleStore, OutOfRecycleStore };

void attachRecycleStore(LocalMessageStore &store, const QString &folder)
{
    MessageRecycleDb(folder).open();
    store.database().executeThrow(Sqlite3Sql(QStringLiteral("attach database ? as recycle"))
                                      .addTextParam(MessageRecycleDb::pathIn(folder)));
}

qint64 moveMessages(const QString &folder, std::vector<qint64> rowids, Direction direction,
                    Progress &progress)
{
    std::sort(rowids.begin(), rowids.end());
    rowids.erase(std::unique(rowids.begin(), rowids.end()), rowids.end());
    const bool deleting = direction == Direction::IntoRecycleStore;
    LocalMessageStore store(folder);
    if (rowids.empty())
        return 0;
    const QString path = deleting ? store.path() : MessageRecycleDb::pathIn(folder);
    if (!QFile::exists(path))
        throw Error(QStringLiteral("There is no message store %1.").arg(path));
    store.open();
    attachRecycleStore(store, folder);
    Sqlite3Transaction transaction(store.database());
    const QString main = QStringLiteral("main");
    const QString recycle = QStringLiteral("recycle");
    MessageMover mover(store.database(), deleting ? main : recycle, deleting ? recycle : main);
    for (const qint64 rowid : rowids)
        if (!mover.hasMessage(rowid))
            throw Error(QStringLiteral("There is no message %1 in %2.").arg(rowid).arg(path));
    CountedProgress counted(progress, deleting ? textFor("IDS_DELETING_MESSAGES") : QString(),
                            QStringLiteral("Messages: %1/%2"), static_cast<qint64>(rowids.size()));
    for (const qint64 rowid : rowids) {
        counted.item();
        mover.move(rowid);
    }
    mover.finish();
    transaction.commit();
    return counted.done();
}

std::vector<SourceFile> filesOnlyOfRecycleStore(Sqlite3DB &db)
{
    std::vector<SourceFile> files;
    Sqlite3Cursor row = db.queryThrow(QStringLiteral(
        "select guid, filename, transfer_name from recycle.attachment where guid not in (select "
        "guid from main.attachment)"));
    while (row.moveNext()) {
        _MsgAttachment attachment;
        attachment.guid = row.getText(0);
        attachment.filename = row.getText(1);
        attachment.transfer_name = row.getText(2);
        files.push_back(StoredAttachments::placeOf(attachment));
    }
    return files;
}

// In steps between which the user can stop, and without the triggers, which look at the whole table for each
// row that goes: here everything goes. First what refers to others.
void emptyTables(Sqlite3DB &db, Progress &progress)
{
    SuspendedTriggers triggers(db, QStringLiteral("recycle"));
    for (const char *table :
         {"message_history", "message_source", "chat_message_join", "message_attachment_join",
          "chat_handle_join", "message", "attachment", "chat", "handle"}) {
        const QString step =
            QStringLiteral("delete from recycle.%1 where rowid in (select rowid from recycle.%1 limit "
                           "%2)")
                .arg(QLatin1String(table))
                .arg(rowsOfAStep);
        do {
            progress.check();
            db.executeThrow(step);
        } while (db.changes() > 0);
    }
    triggers.restore();
}
} // namespace

SavedMessages saveMessages(const std::vector<MessageRef> &messages, FileSource *source, const QString &folder,
                           const QString &status, Progress &progress, ChangedMessages changed)
{
    MessageSaving job(folder, source, messages, changed);
    CountedProgress counted(progress, status, QStringLiteral("Messages:%1/%2"),
                            static_cast<qint64>(messages.size()));
    for (const MessageRef &ref : messages) {
        counted.item();
        job.add(ref);
    }
    return job.finish();
}

qint64 removeMessages(const QString &folder, const std::vector<qint64> &rowids, Progress &progress)
{
    return moveMessages(folder, rowids, Direction::IntoRecycleStore, progress);
}

qint64 undeleteMessages(const QString &folder, const std::vector<qint64> &rowids, Progress &progress)
{
    return moveMessages(folder, rowids, Direction::OutOfRecycleStore, progress);
}

void emptyRecycleStore(const QString &folder, Progress &progress)
{
    if (!QFile::exists(MessageRecycleDb::pathIn(folder)))
        return;
    LocalMessageStore store(folder);
    store.open();
    attachRecycleStore(store, folder);
    std::vector<SourceFile> files;
    {
        Sqlite3Transaction transaction(store.database());
        files = filesOnlyOfRecycleStore(store.database());
        emptyTables(store.database(), progress);
        transaction.commit();
    }
    const StoredAttachments stored(folder);
    for (const SourceFile &file : files)
        if (const QString path = stored.localPath(file); !path.isEmpty())
            QFile::remove(path);
}

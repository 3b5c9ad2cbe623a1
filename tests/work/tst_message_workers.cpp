#include "base/error.h"
#include "base/texts.h"
#include "messages/message_source.h"
#include "recording_receiver.h"
#include "resources/resources.h"
#include "support/sample_backup.h"
#include "work/backup_mms_thread.h"
#include "work/delete_mms_thread.h"
#include "work/find_messages_thread.h"

#include <QDir>
#include <QTest>

namespace {
/// Starts a worker, waits for its end and gives what it said.
QString saidBy(WorkerThread &worker, RecordingReceiver &receiver)
{
    ProgressLink link;
    link.receiver = &receiver;
    worker.setLink(link);
    worker.start();
    if (!QTest::qWaitFor([&] { return receiver.ended(); }) || !worker.wait())
        return QStringLiteral("it did not end");
    return receiver.lines.join(u'|');
}

std::vector<MessageRef> everything(const AbsMessageDb &messages)
{
    return messages.select({}, INT64_MIN, INT64_MAX);
}
} // namespace

/// Saving messages into a local database and deleting them there.
class TestMessageWorkers : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void savesFromABackup();
    void deletes();
    void searchKeepsToBothEndsOfItsTime();
    void saysWhatWasLeftOut();

private:
    std::shared_ptr<AbsMessageDb> loaded() const;

    SampleBackup m_sample;
    OpenBackupPtr m_backup;
};

void TestMessageWorkers::initTestCase()
{
    initResources();
    installTexts();
    m_backup = m_sample.opened();
}

std::shared_ptr<AbsMessageDb> TestMessageWorkers::loaded() const
{
    std::shared_ptr<AbsMessageDb> messages = openMessageDb(m_backup->manifest());
    NoProgress nobody;
    messages->loadChats();
    messages->loadMessages(0, nobody);
    return messages;
}

void TestMessageWorkers::savesFromABackup()
{
    const QTemporaryDir folder;
    const auto messages = loaded();
    const int count = m_sample.summary().counts.listedMessages;
    for (const qint64 added : {count, 0}) {
        BackupMMSThread worker(everything(*messages), messages, m_backup, folder.path(),
                               ChangedMessages::Keep);
        RecordingReceiver receiver;
        const QString said = saidBy(worker, receiver);
        QVERIFY2(said.startsWith(QStringLiteral("done: Successfully backup %1 messages.").arg(count)),
                 qPrintable(said));
        QCOMPARE(receiver.lastStatus, QStringLiteral("Backing up Messages now. Please wait..."));
        QCOMPARE(worker.saved().added, added);
        QCOMPARE(worker.saved().handled(), count);
        QCOMPARE(worker.saved().attachmentsCopied > 0, added > 0);
    }
}

void TestMessageWorkers::deletes()
{
    const QTemporaryDir folder;
    const auto messages = loaded();
    NoProgress nobody;
    const qint64 count =
        backUpMessages(everything(*messages), m_backup, folder.path(), ChangedMessages::Keep, nobody).added;
    DeleteMMSThread worker(folder.path(), {1, 2, 3, 2});
    RecordingReceiver receiver;
    QCOMPARE(saidBy(worker, receiver), QStringLiteral("done: Successfully Deleted 3 Messages."));
    QCOMPARE(receiver.lastStatus, QStringLiteral("Deleting Messages..."));
    const MessageSource store = openLocalMessages(folder.path());
    store.database->loadChats();
    store.database->loadMessages(0, nobody);
    QCOMPARE(qint64(store.database->messageCount()), count - 3);

    DeleteMMSThread unknown(folder.path(), {4, 99999});
    RecordingReceiver complaint;
    QVERIFY(saidBy(unknown, complaint).startsWith(QStringLiteral("error: There is no message 99999 in ")));
}

void TestMessageWorkers::searchKeepsToBothEndsOfItsTime()
{
    const auto messages = loaded();
    const _MsgMessage *wanted = nullptr;
    for (const MessageRef &ref : everything(*messages))
        if (ref.message->text.contains(QStringLiteral("combining acute")))
            wanted = ref.message;
    QVERIFY(wanted);
    const auto found = [&](qint64 from, qint64 to) {
        NoProgress nobody;
        return !findMessages(*messages, QStringLiteral("COMBINING acute"), from, to, nobody).empty();
    };
    const qint64 second = wanted->date;
    QVERIFY(found(second, second));
    QVERIFY(found(second, INT64_MAX) && found(INT64_MIN, second));
    QVERIFY(!found(second + 1, INT64_MAX) && !found(INT64_MIN, second - 1));
}

void TestMessageWorkers::saysWhatWasLeftOut()
{
    SavedMessages summary;
    summary.added = 2;
    summary.merged = 1;
    QCOMPARE(messageSaveText(summary), QStringLiteral("Successfully backup 3 messages."));
    summary.report.add({.kind = IssueKind::Absent,
                        .what = "IDS_ISSUE_ATTACHMENTS_ABSENT",
                        .where = QStringLiteral("a.jpg")});
    summary.report.add({.kind = IssueKind::LeftOut, .what = "IDS_ISSUE_EQUAL_MESSAGES", .count = 2});
    QCOMPARE(
        messageSaveText(summary),
        QStringLiteral("Successfully backup 3 messages.\n\n2 messages are equal to others in text, second, "
                       "sender and direction and were stored once\n1 attachment is not in the backup: "
                       "a.jpg"));
}

QTEST_GUILESS_MAIN(TestMessageWorkers)
#include "tst_message_workers.moc"

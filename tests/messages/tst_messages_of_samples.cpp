#include "messages/abs_message_db.h"
#include "resources/resources.h"
#include "sample_source.h"

#include <QTest>

#include <limits>

/// Reads whole sample backups, which are written without any of the code under test.
class TestSampleMessages : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void wholeBackup_data();
    void wholeBackup();
};

void TestSampleMessages::wholeBackup_data()
{
    QTest::addColumn<int>("ios");
    for (const int ios : {6, 9, 12, 17})
        QTest::addRow("iOS %d", ios) << ios;
}

void TestSampleMessages::wholeBackup()
{
    QFETCH(int, ios);
    QTemporaryDir folder;
    SampleOptions options;
    options.folder = folder.filePath(QStringLiteral("backup"));
    options.ios = ios;
    options.messages = 600;
    options.chats = 30;
    const SampleSummary summary = makeSample(options);
    SampleSource source(options.folder, summary);

    const auto db = openMessageDb(source);
    QCOMPARE(db->countMessages(), summary.counts.joinedMessages);
    db->loadChats();
    NoProgress progress;
    db->loadMessages(0, progress);
    QCOMPARE(db->warnings(), QStringList());
    QCOMPARE(db->unreadableTexts(), summary.counts.unreadableBodies);
    QCOMPARE(int(db->messageCount()), summary.counts.listedMessages);

    QCOMPARE(db->chats().size(), summary.chats.size());
    std::size_t listed = 0;
    for (const SampleChat &expected : summary.chats) {
        const _MsgChat *chat = db->chat(expected.rowid);
        QVERIFY(chat);
        QCOMPARE(chat->chat_identifier, expected.identifier);
        QCOMPARE(chat->display_name, expected.displayName);
        QCOMPARE(int(chat->messages.size()), expected.listed);
        QCOMPARE(chat->handles.size(), expected.handles.size());
        for (std::size_t i = 0; i < expected.handles.size(); ++i) {
            QCOMPARE(chat->handles[i]->rowid, expected.handles[i].rowid);
            QCOMPARE(chat->handles[i]->id, expected.handles[i].address);
        }
        listed += chat->messages.size();
    }
    QVERIFY(db->select({}, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()).size() >=
            listed);
}

QTEST_GUILESS_MAIN(TestSampleMessages)
#include "tst_messages_of_samples.moc"

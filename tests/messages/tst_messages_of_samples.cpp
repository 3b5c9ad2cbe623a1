#include "messages/attachment_content.h"
#include "messages/message_source.h"
#include "resources/resources.h"
#include "sample_source.h"

#include <QTest>

#include <algorithm>
#include <limits>

/// Reads whole sample backups, which are written without any of the code under test.
class TestSampleMessages : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void wholeBackup_data();
    void wholeBackup();
    void wholeOldBackup();
    void wholeMacFolder();
    void handlesHaveNamesAndPictures_data();
    void handlesHaveNamesAndPictures();
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
    db->loadChats();
    NoProgress progress;
    db->loadMessages(0, progress);
    QCOMPARE(std::size_t(db->countMessages()), db->select({}, INT64_MIN, INT64_MAX).size());
    QCOMPARE(db->messageCount() + std::size_t(db->report().count(IssueKind::Hidden)),
             std::size_t(summary.counts.messageRows));
    QCOMPARE(problemsOf(db->report()), QStringList());
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

// Row ids and the identifiers of groups are the reader's own there: conversations are known by their people.
void TestSampleMessages::wholeOldBackup()
{
    QTemporaryDir folder;
    SampleOptions options;
    options.folder = folder.filePath(QStringLiteral("backup"));
    options.ios = 5;
    options.messages = 600;
    options.chats = 30;
    const SampleSummary summary = makeSample(options);
    SampleSource source(options.folder, summary);

    const auto db = openMessageDb(source);
    QCOMPARE(db->kind(), 5);
    QCOMPARE(db->countMessages(), summary.counts.joinedMessages);
    db->loadChats();
    NoProgress progress;
    db->loadMessages(0, progress);
    QCOMPARE(problemsOf(db->report()), QStringList());
    QCOMPARE(int(db->messageCount()), summary.counts.listedMessages);

    const auto keyOf = [](const QString &service, QStringList addresses) {
        addresses.sort();
        return service + u' ' + addresses.join(u' ');
    };
    QMap<QString, int> expected, found;
    for (const SampleChat &chat : summary.chats) {
        QStringList addresses;
        for (const SampleHandle &handle : chat.handles)
            addresses << handle.address;
        expected.insert(keyOf(chat.handles.front().service, addresses), chat.listed);
    }
    std::size_t attachments = 0;
    for (const _MsgChat *chat : db->chats()) {
        QStringList addresses;
        for (const _MsgHandle *handle : chat->handles)
            addresses << handle->id;
        found.insert(keyOf(chat->service_name, addresses), int(chat->messages.size()));
        for (const _MsgMessage *message : chat->messages)
            attachments += message->attachments.size();
    }
    QCOMPARE(found, expected);
    QCOMPARE(int(attachments), summary.counts.attachments);
}

void TestSampleMessages::wholeMacFolder()
{
    QTemporaryDir folder;
    SampleOptions options;
    options.folder = folder.filePath(QStringLiteral("Messages"));
    options.messages = 400;
    const SampleSummary summary = makeMacMessages(options);
    const MessageSource opened = openMessageFile(options.folder);
    opened.database->loadChats();
    NoProgress progress;
    opened.database->loadMessages(0, progress);
    QCOMPARE(std::size_t(opened.database->countMessages()),
             opened.database->select({}, INT64_MIN, INT64_MAX).size());
    QCOMPARE(int(opened.database->messageCount()), summary.counts.listedMessages);
    QSet<QString> present;
    for (const _MsgChat *chat : opened.database->chats())
        for (const _MsgMessage *message : chat->messages)
            for (const _MsgAttachment *attachment : message->attachments)
                if (hasContent(*attachment, opened.files.get()))
                    present.insert(attachment->local_path);
    const auto isAttachment = [](const SampleFile &file) {
        return file.stored && !file.relativePath.endsWith(u"-preview-left");
    };
    QCOMPARE(present.size(), std::count_if(summary.files.begin(), summary.files.end(), isAttachment));
    QVERIFY(!QFile::exists(options.folder + QStringLiteral("/chat.db-shm")));
}

void TestSampleMessages::handlesHaveNamesAndPictures_data()
{
    QTest::addColumn<int>("ios");
    QTest::addColumn<bool>("hasImages");
    for (const int ios : {5, 6, 9, 17})
        for (const bool hasImages : {true, false})
            QTest::addRow("iOS %d %s images", ios, hasImages ? "with" : "without") << ios << hasImages;
}

void TestSampleMessages::handlesHaveNamesAndPictures()
{
    QFETCH(int, ios);
    QFETCH(bool, hasImages);
    QTemporaryDir folder;
    SampleOptions options;
    options.folder = folder.filePath(QStringLiteral("backup"));
    options.ios = ios;
    SampleSummary summary = makeSample(options);
    const auto isImages = [](const SampleFile &file) {
        return file.relativePath.endsWith(u"AddressBookImages.sqlitedb");
    };
    if (!hasImages)
        QCOMPARE(std::erase_if(summary.files, isImages), std::size_t(1));
    SampleSource source(options.folder, summary);
    QHash<QString, QString> expected;
    for (const SampleChat &chat : summary.chats)
        for (const SampleHandle &handle : chat.handles)
            expected.insert(handle.address, handle.contactName);

    const auto db = openMessageDb(source);
    db->loadChats();
    QHash<QString, QString> names;
    int pictures = 0;
    for (const _MsgChat *chat : db->chats()) {
        for (const _MsgHandle *handle : chat->handles) {
            names.insert(handle->id, handle->_ct_name);
            pictures += !handle->_photo.isEmpty();
            QVERIFY(handle->_photo.isEmpty() || handle->_photo.startsWith("\xFF\xD8\xFF") ||
                    handle->_photo.startsWith("\x89PNG"));
        }
    }
    QCOMPARE(names, expected);
    QVERIFY(std::any_of(names.begin(), names.end(), [](const QString &name) { return !name.isEmpty(); }));
    QCOMPARE(pictures > 0, hasImages);
}

QTEST_GUILESS_MAIN(TestSampleMessages)
#include "tst_messages_of_samples.moc"

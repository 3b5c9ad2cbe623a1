#include "made_messages.h"
#include "messages/message_source.h"
#include "messages/save_messages.h"
#include "messages/stored_attachments.h"
#include "resources/resources.h"
#include "store_folder.h"

#include <QTest>

/// The attachment files of a message store.
class TestStoredAttachments : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void places_data();
    void places();
    void filesAreKeptAndRead();
    void filesThatCannotBeTaken();
    void laterBackupCompletes();
    void laterBackupBringsTheRest_data();
    void laterBackupBringsTheRest();
    void leftoversGo();
};

void TestStoredAttachments::places_data()
{
    QTest::addColumn<QString>("guid");
    QTest::addColumn<QString>("filename");
    QTest::addColumn<QString>("place");
    QTest::newRow("as devices make them") << "AB12CD34-0000"
                                          << "~/Library/SMS/Attachments/x/IMG_7.jpeg"
                                          << "Attachments/ab/12/AB12CD34-0000/IMG_7.jpeg";
    QTest::newRow("no file name") << "AB12CD34"
                                  << ""
                                  << "Attachments/ab/12/AB12CD34/AB12CD34";
    QTest::newRow("climbing GUID") << "../../../etc"
                                   << "a"
                                   << "";
    QTest::newRow("GUID that names a device") << "COM1"
                                              << "a"
                                              << "";
    QTest::newRow("GUID of 10,000 letters") << QString(10000, u'x') << "a"
                                            << "";
    QTest::newRow("climbing name") << "AB12CD34"
                                   << "~/a/.."
                                   << "Attachments/ab/12/AB12CD34/_..";
    QTest::newRow("line break in the name") << "AB12CD34"
                                            << "a\nb.jpg"
                                            << "Attachments/ab/12/AB12CD34/ab.jpg";
    QTest::newRow("quotes and a colon") << "AB12CD34"
                                        << "it's \"1:2\".jpg"
                                        << "Attachments/ab/12/AB12CD34/it's \"1:2\".jpg";
    QTest::newRow("name of a device") << "AB12CD34"
                                      << "con.txt"
                                      << "Attachments/ab/12/AB12CD34/_con.txt";
    QTest::newRow("name of 300 letters of two bytes")
        << "AB12CD34" << QString(300, u'\u00e4') + QStringLiteral(".jpeg")
        << QStringLiteral("Attachments/ab/12/AB12CD34/") + QString(97, u'\u00e4') + QStringLiteral(".jpeg");
}

void TestStoredAttachments::places()
{
    QFETCH(QString, guid);
    QFETCH(QString, filename);
    QFETCH(QString, place);
    MadeMessages made;
    MadeFiles files;
    _MsgMessage *message = made.message(made.chat(QStringLiteral("c"), {}), QString(), 1);
    _MsgAttachment *attachment = made.attachment(message, guid, QString());
    attachment->filename = filename.isEmpty() ? QStringLiteral("~/x/") : filename;
    attachment->source = {QString(), QStringLiteral("file")};
    files.contents[QStringLiteral("file")] = "content";
    if (!place.isEmpty())
        QCOMPARE(StoredAttachments::placeOf(*attachment).relativePath, place);

    StoreFolder folder;
    NoProgress progress;
    const SavedMessages summary = saveMessages(made.refs, &files, folder.path(), QString(), progress);
    QVERIFY(summary.report.isEmpty());
    const QStringList found = folder.files();
    QCOMPARE(found.size(), 1);
    QVERIFY(found.first().startsWith(QStringLiteral("Attachments/")));
    QCOMPARE(found.first().count(u'/'), 4);
    const MessageSource source = openLocalMessages(folder.path());
    describedMessages(*source.database);
    const auto *read = source.database->chats().front()->messages.front()->attachments.front();
    QCOMPARE(read->filename, attachment->filename);
    QVERIFY(source.files->hasContent(read->source));
    QCOMPARE(QFileInfo(source.files->fetchForViewing(read->source)).size(), 7);
}

void TestStoredAttachments::filesAreKeptAndRead()
{
    MadeMessages made;
    MadeFiles files;
    _MsgMessage *message = made.message(made.chat(QStringLiteral("c"), {}), QString(), 1);
    const auto *attachment = made.attachment(message, QStringLiteral("AB12CD34"), QStringLiteral("a.jpg"));
    files.contents[attachment->source.relativePath] = "content";
    StoreFolder first;
    NoProgress progress;
    saveMessages(made.refs, &files, first.path(), QString(), progress);

    // From one store into another.
    const MessageSource source = openLocalMessages(first.path());
    const QStringList described = describedMessages(*source.database);
    StoreFolder second;
    const auto refs = source.database->select({}, INT64_MIN, INT64_MAX);
    QCOMPARE(saveMessages(refs, source.files.get(), second.path(), QString(), progress).attachmentsCopied, 1);
    QCOMPARE(second.files(), first.files());
    const MessageSource copy = openLocalMessages(second.path());
    QCOMPARE(describedMessages(*copy.database), described);
    // Into itself.
    QCOMPARE(saveMessages(refs, source.files.get(), first.path(), QString(), progress).added, 0);
    QCOMPARE(first.files().size(), 1);
}

void TestStoredAttachments::filesThatCannotBeTaken()
{
    MadeMessages made;
    MadeFiles files;
    _MsgChat *chat = made.chat(QStringLiteral("c"), {});
    for (const char *kind : {"missing", "locked", "unreadable", "unwritable", "unlisted", "sound"}) {
        const QString name = QLatin1String(kind);
        auto *attachment =
            made.attachment(made.message(chat, name, 1), QStringLiteral("GUID-%1").arg(name), name);
        files.contents[attachment->source.relativePath] = "content";
        if (name == QLatin1String("missing"))
            files.lost << attachment->source.relativePath;
        if (name == QLatin1String("locked"))
            files.locked << attachment->source.relativePath;
        if (name == QLatin1String("unreadable"))
            files.unreadable << attachment->source.relativePath;
        if (name == QLatin1String("unwritable"))
            files.unwritable << attachment->source.relativePath;
        if (name == QLatin1String("unlisted"))
            attachment->source = {};
    }
    StoreFolder folder;
    NoProgress progress;
    const SavedMessages summary = saveMessages(made.refs, &files, folder.path(), QString(), progress);
    QCOMPARE(summary.added, 6);
    QCOMPARE(summary.attachmentsCopied, 1);
    QStringList told;
    for (const Issue &issue : summary.report.issues())
        told << QLatin1String(issue.what).mid(22) + u' ' + issue.where.section(u'/', -1);
    told.sort();
    QCOMPARE(told, (QStringList{u"ABSENT unlisted"_qs, u"LOCKED locked"_qs, u"LOST missing"_qs,
                                u"NOT_READ unreadable"_qs, u"NOT_WRITTEN unwritable"_qs}));
    QVERIFY(summary.report.count(IssueKind::Refused) == 1 && summary.report.count(IssueKind::Absent) == 1);
    QCOMPARE(folder.files().size(), 1);

    const MessageSource source = openLocalMessages(folder.path());
    describedMessages(*source.database);
    const auto *missing = source.database->chats().front()->messages.front()->attachments.front();
    QVERIFY(!source.files->hasContent(missing->source));
    QVERIFY_EXCEPTION_THROWN(source.files->fetchForViewing(missing->source), Error);
}

void TestStoredAttachments::laterBackupCompletes()
{
    MadeMessages made;
    MadeFiles files;
    StoreFolder folder;
    NoProgress progress;
    _MsgMessage *message = made.message(made.chat(QStringLiteral("c"), {}), QString(), 1);
    _MsgAttachment *attachment =
        made.attachment(message, QStringLiteral("AB12CD34"), QStringLiteral("a.jpg"));
    saveMessages(made.refs, &files, folder.path(), QString(), progress);
    QCOMPARE(folder.files(), QStringList());
    // The same file under another GUID, as another backup may have it.
    attachment->guid = QStringLiteral("EF56AB78");
    files.contents[attachment->source.relativePath] = "content";
    const SavedMessages summary = saveMessages(made.refs, &files, folder.path(), QString(), progress);
    QCOMPARE(summary.merged, 1);
    QCOMPARE(summary.attachmentsCopied, 1);
    QCOMPARE(folder.files(), QStringList{QStringLiteral("Attachments/ab/12/AB12CD34/a.jpg")});
}

void TestStoredAttachments::laterBackupBringsTheRest_data()
{
    QTest::addColumn<QByteArray>("offered");
    QTest::addColumn<QByteArray>("kept");
    QTest::addColumn<int>("told");
    QTest::newRow("the whole") << QByteArray("content") << QByteArray("content") << 0;
    QTest::newRow("a longer part") << QByteArray("conte") << QByteArray("conte") << 1;
    QTest::newRow("a shorter part") << QByteArray("c") << QByteArray("con") << 1;
    QTest::newRow("something else") << QByteArray("another") << QByteArray("con") << 1;
}

void TestStoredAttachments::laterBackupBringsTheRest()
{
    QFETCH(QByteArray, offered);
    MadeMessages made;
    MadeFiles files;
    StoreFolder folder;
    NoProgress progress;
    const auto *attachment = made.attachment(made.message(made.chat(QStringLiteral("c"), {}), QString(), 1),
                                             QStringLiteral("AB12CD34"), QStringLiteral("a.jpg"));
    const auto save = [&](const QByteArray &content) {
        files.contents[attachment->source.relativePath] = content;
        files.lengths[attachment->source.relativePath] = 7;
        return saveMessages(made.refs, &files, folder.path(), QString(), progress);
    };
    const SavedMessages first = save("con");
    QCOMPARE(first.attachmentsCopied, 1);
    QCOMPARE(first.report.issues(),
             (QList<Issue>{{.what = "IDS_ISSUE_FILES_CUT_OFF", .where = attachment->source.display(),
                            .reason = QStringLiteral("3 of 7 bytes")}}));
    QTEST(static_cast<int>(save(offered).report.count(IssueKind::Damaged)), "told");
    QFile stored(QDir(folder.path()).filePath(folder.files().first()));
    QVERIFY(stored.open(QIODevice::ReadOnly));
    QTEST(stored.readAll(), "kept");
}

// What a killed job leaves behind: copied files that no row speaks of, and the list of them.
void TestStoredAttachments::leftoversGo()
{
    MadeMessages made;
    MadeFiles files;
    StoreFolder folder;
    NoProgress progress;
    const auto *kept = made.attachment(made.message(made.chat(QStringLiteral("c"), {}), QString(), 1),
                                       QStringLiteral("KEPT-001"), QStringLiteral("a.jpg"));
    files.contents[kept->source.relativePath] = "content";
    saveMessages(made.refs, &files, folder.path(), QString(), progress);
    const QStringList before = folder.files();
    const auto put = [&](const char *name, const QByteArray &content) {
        const QString path = QDir(folder.path()).filePath(QLatin1String(name));
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    };
    put("Attachments/le/ft/LEFT-001/a b.jpg", "half a job");
    put("Attachments/le/ft/LEFT-002/.1x2y.part", "half a file");
    put("../outside.txt", "somebody else's");
    put("Attachments/.incoming", "KEPT-001 Attachments%2Fke%2Fpt%2FKEPT-001%2Fa.jpg\n"
                                 "LEFT-001 Attachments%2Fle%2Fft%2FLEFT-001%2Fa%20b.jpg\n"
                                 "LEFT-002 Attachments%2Fle%2Fft%2FLEFT-002%2Fc.jpg\n"
                                 "LEFT-003 ..%2Foutside.txt\n"
                                 "LEFT-004 Attachments%2Fle");
    openLocalMessages(folder.path());
    QCOMPARE(folder.files(), before);
    QVERIFY(QFile::exists(QDir(folder.path()).filePath(QStringLiteral("../outside.txt"))));
}

QTEST_GUILESS_MAIN(TestStoredAttachments)
#include "tst_stored_attachments.moc"

#include "messages/attachment_content.h"
#include "messages/message_source.h"
#include "messages/save_messages.h"
#include "old_case.h"
#include "resources/resources.h"
#include "support/scratch_source.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {
constexpr qint64 newYear2012Unix = 1325376000;

/// Remembers which files of the device were looked up, and finds them all.
class LookUpSource : public ScratchSource
{
public:
    SourceFile fileOfDevicePath(const QString &devicePath) const override
    {
        asked.append(devicePath);
        return {u"MediaDomain"_s, devicePath};
    }

    mutable QStringList asked;
};

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
} // namespace

/// The files and parts of the messages of iOS 5 and earlier.
class TestIos5Attachments : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void init() { m_case = std::make_unique<OldCase>(); }
    void attachments_data();
    void attachments();
    void textParts_data();
    void textParts();
    void fileParts();
    void looseFile();
    void partsThatCannotBeWritten();
    void partsAreSaved();
    void namesOfParts();

private:
    std::unique_ptr<OldCase> m_case;
};

void TestIos5Attachments::attachments_data()
{
    QTest::addColumn<QByteArray>("info");
    QTest::addColumn<QByteArray>("other"); // of the column that some databases have besides
    QTest::addColumn<QStringList>("guids");
    QTest::addColumn<int>("skipped");
    const QByteArray both = OldMessages::list({u"A"_s, u"B"_s});
    QTest::newRow("list") << both << QByteArray() << QStringList{u"A"_s, u"B"_s} << 0;
    QTest::newRow("archive") << archivedList({u"B"_s}, true) << QByteArray() << QStringList{u"B"_s} << 0;
    QTest::newRow("other column") << QByteArray() << both << QStringList{u"A"_s, u"B"_s} << 0;
    QTest::newRow("both columns") << both << OldMessages::list({u"B"_s, u"C"_s})
                                  << QStringList{u"A"_s, u"B"_s, u"C"_s} << 0;
    QTest::newRow("one twice") << OldMessages::list({u"A"_s, u"A"_s}) << QByteArray() << QStringList{u"A"_s}
                               << 0;
    QTest::newRow("no row") << OldMessages::list({u"Z"_s, u"A"_s}) << QByteArray() << QStringList{u"A"_s}
                            << 1;
    QTest::newRow("broken") << both.chopped(20) << QByteArray() << QStringList() << 1;
    QTest::newRow("broken and whole")
        << both.chopped(20) << OldMessages::list({u"A"_s}) << QStringList{u"A"_s} << 1;
}

void TestIos5Attachments::attachments()
{
    QFETCH(QByteArray, info);
    QFETCH(QByteArray, other);
    m_case->made->chat(1, 45, u"+1415"_s, OldMessages::list({u"+1415"_s}));
    m_case->made->attachment(1, u"A"_s, u"~/Library/SMS/Attachments/0a/10/A/\"a\"\n.jpg"_s);
    m_case->made->attachment(2, u"B"_s, u"/var/mobile/Library/SMS/../../etc/b.jpg"_s);
    m_case->made->attachment(3, u"C"_s, {});
    m_case->made->iMessage(9, {}, u"+1415"_s, 1, 0, u"￼"_s, info);
    if (!other.isEmpty())
        m_case->made->run(
            u"alter table message add column madrid_attachment BLOB; update message set madrid_attachment=x'%1'"_s
                .arg(QLatin1StringView(other.toHex())));
    LookUpSource source;
    m_case->load(&source);
    QTEST(int(m_case->db->report().count(IssueKind::Damaged)), "skipped");
    QStringList guids;
    for (const _MsgAttachment *attachment : m_case->message(9)->attachments) {
        guids.append(attachment->guid);
        QVERIFY(attachment->rowid >= IOS5MessageDb::firstIMessageRowid);
        QCOMPARE((QList{attachment->created_date, attachment->start_date, attachment->transfer_state,
                        attachment->is_outgoing}),
                 (QList{7, 8, 5, 0}));
        QCOMPARE((QStringList{attachment->uti, attachment->mime_type}),
                 (QStringList{u"public.jpeg"_s, u"image/jpeg"_s}));
        QCOMPARE(attachment->source.isNull(), attachment->filename.isEmpty());
    }
    QTEST(guids, "guids");
    QCOMPARE(source.asked.contains(u"var/mobile/Library/SMS/Attachments/0a/10/A/a.jpg"_s),
             guids.contains(u"A"_s));
    QCOMPARE(m_case->message(9)->cache_has_attachments, guids.isEmpty() ? 0 : 1);
}

void TestIos5Attachments::textParts_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QString>("text");
    QTest::newRow("text") << u"text/plain"_s << QByteArray("  more ü ") << u"first\n  more ü"_s;
    QTest::newRow("with a character set")
        << u"Text/Plain; charset=utf-8"_s << QByteArray("more") << u"first\nmore"_s;
    QTest::newRow("layout") << u"application/smil"_s << QByteArray("<smil/>") << u"first"_s;
    QTest::newRow("no type") << QString() << QByteArray("bytes") << u"first"_s;
    QTest::newRow("empty") << u"text/plain"_s << QByteArray() << u"first"_s;
}

void TestIos5Attachments::textParts()
{
    QFETCH(QString, type);
    QFETCH(QByteArray, data);
    m_case->made->group(1, 5, {u"111"_s});
    m_case->made->text(5, 1, 0, 2, u"111"_s, u"first"_s);
    m_case->made->part(5, 0, type, u"part.txt"_s, data);
    m_case->load();
    QTEST(m_case->message(5)->text, "text");
    QVERIFY(m_case->message(5)->attachments.empty());
    m_case->db->loadMessages(0, m_case->progress);
    QTEST(m_case->message(5)->text, "text");
}

void TestIos5Attachments::fileParts()
{
    m_case->made->group(266, 35, {u"111"_s});
    m_case->made->text(35, 266, newYear2012Unix, 3, u"111"_s, {});
    m_case->made->part(35, 0, u"application/smil"_s, u"smil.xml"_s, "<smil/>");
    m_case->made->part(35, 1, u"image/jpeg"_s, u"rose.JPG"_s, "the bytes of a rose");
    m_case->made->part(35, 2, u"image/gif"_s, u"in/a/file.gif"_s);
    m_case->made->part(35, 3, u"text/x-vCard"_s, u"../../../../escape.v/cf"_s, "BEGIN:VCARD");
    m_case->made->part(4711, 0, u"image/gif"_s, u"of no message.gif"_s, "GIF");
    LookUpSource source;
    m_case->load(&source);
    const _MsgMessage &read = *m_case->message(35);
    QCOMPARE(read.attachments.size(), 3u);
    QCOMPARE(source.asked.first(2), (QStringList{u"var/mobile/Library/SMS/Parts/0a/03/35-1.JPG"_s,
                                                 u"var/mobile/Library/SMS/Parts/0a/03/35-2.gif"_s}));
    const _MsgAttachment &rose = *read.attachments[0];
    QCOMPARE(rose.rowid, 2);
    QCOMPARE(contentOf(rose.local_path), QByteArray("the bytes of a rose"));
    QVERIFY(rose.local_path.endsWith(u"var/mobile/Library/SMS/Parts/0a/03/35-1.JPG"_s));
    QCOMPARE(rose.filename, u"~/Library/SMS/Attachments/%1/%2/%3/rose.JPG"_s.arg(
                                rose.guid.left(2).toLower(), rose.guid.mid(2, 2).toLower(), rose.guid));
    QCOMPARE((QStringList{rose.mime_type, rose.displayName()}),
             (QStringList{u"image/jpeg"_s, u"rose.JPG"_s}));
    QCOMPARE((QList{rose.is_outgoing, rose.start_date, rose.transfer_state}), (QList{1, 0, 5}));
    QCOMPARE(rose.total_bytes, 19);
    const _MsgAttachment &inAFile = *read.attachments[1];
    QCOMPARE(inAFile.local_path, QString());
    QCOMPARE(inAFile.source.relativePath, source.asked[1]);
    QCOMPARE(contentOf(read.attachments[2]->local_path), QByteArray("BEGIN:VCARD"));
    QCOMPARE(read.attachments[2]->displayName(), u"cf"_s);

    const QString scratch = rose.local_path.section(u"/var/mobile"_s, 0, 0);
    QVERIFY(QFileInfo(scratch).isDir());
    QVERIFY(!scratch.startsWith(m_case->folder.path()));
    m_case->db.reset();
    QVERIFY(!QFileInfo::exists(scratch));
}

void TestIos5Attachments::looseFile()
{
    m_case->made->group(266, 35, {u"111"_s});
    m_case->made->text(35, 266, newYear2012Unix, 3, u"111"_s, {});
    m_case->made->part(35, 1, u"image/gif"_s, u"there.gif"_s);
    m_case->made->part(35, 2, u"image/gif"_s, u"gone.gif"_s);
    m_case->made->attachment(1, u"A"_s, u"/var/mobile/Library/SMS/Attachments/a.jpg"_s);
    m_case->made->attachment(2, u"B"_s, u"~/Library/SMS/../../secret"_s);
    m_case->made->iMessage(9, {}, u"+1415"_s, 1, 0, {}, OldMessages::list({u"A"_s, u"B"_s}));
    m_case->made.reset();
    const auto put = [&](const QString &name) {
        const QString path = m_case->folder.filePath(u"lib/"_s + name);
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("content");
    };
    put(u"SMS/Parts/0a/03/35-1.gif"_s);
    put(u"SMS/Attachments/a.jpg"_s);
    put(u"../secret"_s);
    const QDir folder(m_case->folder.filePath(u"lib/SMS"_s));
    QVERIFY(QFile::rename(m_case->folder.filePath(u"sms.db"_s), folder.filePath(u"sms.db"_s)));

    const MessageSource source = openMessageFile(folder.filePath(u"sms.db"_s));
    source.database->loadChats();
    source.database->loadMessages(0, m_case->progress);
    QStringList present;
    for (const MessageRef &ref :
         source.database->select({}, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()))
        for (const _MsgAttachment *attachment : ref.message->attachments)
            if (hasContent(*attachment, source.files.get()))
                present.append(attachment->displayName());
    present.sort();
    QCOMPARE(present, (QStringList{u"a.jpg"_s, u"there.gif"_s}));
    QCOMPARE(folder.entryList(QDir::Files), QStringList{u"sms.db"_s});
}

void TestIos5Attachments::partsThatCannotBeWritten()
{
    const QString longEnding = u"a."_s + QString(5000, u'j');
    m_case->made->group(1, 5, {u"111"_s});
    m_case->made->text(5, 1, 0, 2, u"111"_s, u"text"_s);
    m_case->made->part(5, 0, u"image/jpeg"_s, longEnding, "lost");
    m_case->made->part(5, 1, u"image/jpeg"_s, longEnding, "lost, too");
    m_case->made->part(5, 2, u"image/jpeg"_s, u"b.jpg"_s, "whole");
    m_case->made->part(5, 3, u"text/plain"_s, {}, "more");
    m_case->load();
    const Report &report = m_case->db->report();
    QVERIFY(report.count("IDS_ISSUE_PARTS_NOT_WRITTEN") > 0);
    QVERIFY(report.issues().first().reason.contains(u"can not write"_s));
    const _MsgMessage &read = *m_case->message(5);
    QCOMPARE(read.text, u"text\nmore"_s);
    QCOMPARE(read.attachments.size(), 3u);
    for (const _MsgAttachment *attachment : read.attachments)
        QCOMPARE(hasContent(*attachment, nullptr), attachment->displayName() == u"b.jpg"_s);
}

void TestIos5Attachments::partsAreSaved()
{
    m_case->made->group(1, 5, {u"111"_s});
    m_case->made->text(5, 1, newYear2012Unix, 2, u"111"_s, {});
    m_case->made->text(6, 1, newYear2012Unix, 2, u"111"_s, u"twice"_s);
    m_case->made->text(7, 1, newYear2012Unix + 1, 2, u"111"_s, u"twice"_s);
    m_case->made->part(5, 0, u"image/jpeg"_s, u"rose.jpg"_s, "the bytes of a rose");
    m_case->made->part(5, 1, u"image/jpeg"_s, u"lost.jpg"_s);
    const QString store = m_case->folder.filePath(u"store"_s);
    const auto save = [&] {
        m_case->load();
        const auto refs = m_case->all();
        return saveMessages(refs, nullptr, store, {}, m_case->progress);
    };
    SavedMessages summary = save();
    QCOMPARE((QList{summary.added, summary.merged, summary.attachmentsCopied}), (QList<qint64>{3, 0, 1}));
    QCOMPARE(summary.report.count("IDS_ISSUE_ATTACHMENTS_ABSENT"), 1);
    summary = save();
    QCOMPARE((QList{summary.added, summary.merged, summary.attachmentsCopied}), (QList<qint64>{0, 3, 0}));
    QCOMPARE(summary.report.count(IssueKind::LeftOut), 0);

    const MessageSource source = openLocalMessages(store);
    source.database->loadChats();
    source.database->loadMessages(0, m_case->progress);
    const _MsgChat &chat = *source.database->chats().front();
    QCOMPARE(chat.guid, u"SMS;-;111"_s);
    QCOMPARE(chat.messages.size(), 3u);
    const _MsgAttachment &rose = *chat.messages.front()->attachments.front();
    QCOMPARE(contentOf(source.files->fetchForViewing(rose.source)), QByteArray("the bytes of a rose"));
}

void TestIos5Attachments::namesOfParts()
{
    m_case->made->group(1, 5, {u"111"_s});
    m_case->made->text(5, 1, 0, 2, u"111"_s, {});
    m_case->made->text(6, 1, 0, 2, u"111"_s, {});
    for (const char *name : {"a.jpg", "A.jpg", "a(1).jpg", "a.jpg", "", "x"})
        m_case->made->part(5, 0, u"image/jpeg"_s, QLatin1StringView(name));
    m_case->made->part(6, 0, u"image/jpeg"_s, u"a.jpg"_s);
    m_case->load();
    QStringList names;
    for (const _MsgAttachment *attachment : m_case->message(5)->attachments)
        names.append(attachment->displayName());
    QCOMPARE(names,
             (QStringList{u"a.jpg"_s, u"A(1).jpg"_s, u"a(1)(1).jpg"_s, u"a(2).jpg"_s, u"5-0.jpg"_s, u"x"_s}));
    QCOMPARE(m_case->message(6)->attachments.front()->displayName(), u"a.jpg"_s);
}

QTEST_GUILESS_MAIN(TestIos5Attachments)
#include "tst_ios5_attachments.moc"

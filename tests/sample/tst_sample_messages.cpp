#include "base/error.h"
#include "outside_tools.h"

#include <QDir>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class TestSampleMessages : public QObject
{
    Q_OBJECT

private slots:
    void counts_data();
    void counts();
    void oldestCounts();
    void macFolder();
    void bodiesWithoutText();
    void attachments_data();
    void attachments();
    void walCompanion();
};

namespace {

SampleOptions optionsFor(const QTemporaryDir &home, int ios)
{
    SampleOptions options;
    options.folder = home.filePath(u"backup"_s);
    options.ios = ios;
    return options;
}

QString messagesPath(const SampleOptions &options, const SampleSummary &summary)
{
    return storedPath(options, *summary.file(u"HomeDomain"_s, u"Library/SMS/sms.db"_s));
}

} // namespace

void TestSampleMessages::counts_data()
{
    QTest::addColumn<int>("ios");
    QTest::addColumn<int>("messages");
    for (const int ios : {6, 7, 9, 10, 11, 12, 14, 15, 16, 17})
        QTest::addRow("iOS %d", ios) << ios << 300;
    QTest::newRow("fewer than the showcase") << 17 << 0;
}

void TestSampleMessages::counts()
{
    QFETCH(int, ios);
    QFETCH(int, messages);
    QTemporaryDir home;
    SampleOptions options = optionsFor(home, ios);
    options.messages = messages;
    options.chats = 20;
    const SampleSummary summary = makeSample(options);
    const QString path = messagesPath(options, summary);
    const auto count = [&](const QString &sql) { return column(path, sql).first().toInt(); };
    QCOMPARE(column(path, u"pragma integrity_check"_s), QStringList{u"ok"_s});
    QCOMPARE(count(u"select count(*) from message"_s), summary.counts.messageRows);
    if (messages > 0)
        QCOMPARE(summary.counts.messageRows, messages);
    QCOMPARE(count(u"select count(*) from attachment"_s), summary.counts.attachments);
    const bool items =
        !column(path, u"select 1 from pragma_table_info('message') where name='item_type'"_s).isEmpty();
    QCOMPARE(items, ios >= 9);
    QCOMPARE(
        count(
            u"select count(*) from chat_message_join as j inner join message as m on j.message_id=m.rowid "
            "inner join chat as c on c.rowid=j.chat_id%1"_s.arg(items ? u" and m.item_type=0"_s : QString())),
        summary.counts.joinedMessages);
    QCOMPARE(count(u"select count(distinct m.rowid) from chat_message_join as j inner join message as m "
                   "on j.message_id=m.rowid inner join chat as c on c.rowid=j.chat_id%1"_s.arg(
                       items ? u" and m.item_type=0"_s : QString())),
             summary.counts.listedMessages);
    QCOMPARE(count(u"select count(*) from chat"_s), 20);
    QCOMPARE(summary.chats.size(), std::size_t(20));
    QCOMPARE(readAll(path).mid(18, 2), ios >= 9 ? QByteArray("\2\2") : QByteArray("\1\1"));
    const qint64 newest = column(path, u"select max(date) from message"_s).first().toLongLong();
    QCOMPARE(newest > 1000000000000000, ios >= 11);
}

void TestSampleMessages::oldestCounts()
{
    QTemporaryDir home;
    SampleOptions options = optionsFor(home, 5);
    options.messages = 300;
    options.chats = 20;
    const SampleSummary summary = makeSample(options);
    const QString path = messagesPath(options, summary);
    const auto count = [&](const QString &sql) { return column(path, sql).first().toInt(); };
    QCOMPARE(count(u"select count(*) from message"_s), 300);
    QCOMPARE(summary.counts.listedMessages, 300);
    QCOMPARE(
        count(u"select (select count(*) from madrid_attachment) + (select count(*) from msg_pieces where "
              "content_type like 'image/%' or content_type like 'text/x%')"_s),
        summary.counts.attachments);
    QCOMPARE(count(u"select (select count(*) from msg_group) + (select count(*) from madrid_chat)"_s), 20);
    QCOMPARE(summary.chats.size(), std::size_t(20));
    QCOMPARE(
        count(u"select count(*) from msg_group where newest_message not in (select ROWID from message)"_s),
        0);
    QCOMPARE(count(u"select count(distinct hash) from msg_group"_s),
             count(u"select count(*) from msg_group"_s));
    QVERIFY(count(u"select min(date) from message where is_madrid=0"_s) >
            count(u"select max(date) from message where is_madrid=1"_s));
}

void TestSampleMessages::macFolder()
{
    QTemporaryDir home;
    SampleOptions options = optionsFor(home, 17);
    options.messages = 300;
    const SampleSummary summary = makeMacMessages(options);
    const QString path = options.folder + u"/chat.db"_s;
    QCOMPARE(column(path, u"pragma integrity_check"_s), QStringList{u"ok"_s});
    QCOMPARE(column(path, u"select count(*) from message"_s), QStringList{u"300"_s});
    QCOMPARE(column(path, u"select name from sqlite_master where sql like '%sr_%'"_s), QStringList());
    QVERIFY(column(path, u"select max(date) from message"_s).first().toLongLong() > 1000000000000000);
    QStringList absent;
    const QStringList names = column(path, u"select filename from attachment where filename is not null"_s);
    QCOMPARE(int(names.size()) + 1, summary.counts.attachments);
    for (const QString &name : names) {
        QVERIFY2(name.contains(u"/Library/Messages/Attachments/"_s), qPrintable(name));
        if (!QFile::exists(options.folder + u"/Attachments/"_s + name.section(u"/Attachments/"_s, 1)))
            absent << name.section(u'/', -1);
    }
    QCOMPARE(absent, (QStringList{u"left in the cloud.jpg"_s, u"row alone.mov"_s}));
    QVERIFY_THROWS_EXCEPTION(Error, makeMacMessages(options)); // the folder is no longer empty
}

void TestSampleMessages::bodiesWithoutText()
{
    const auto blank = [&](int ios) {
        QTemporaryDir folder;
        const SampleOptions options = optionsFor(folder, ios);
        const SampleSummary summary = makeSample(options);
        return column(messagesPath(options, summary),
                      u"select count(*) from message where text is null and attributedBody is not null"_s)
            .first()
            .toInt();
    };
    QCOMPARE(blank(12), 0);
    QVERIFY(blank(17) > 30);
}

void TestSampleMessages::attachments_data()
{
    QTest::addColumn<int>("ios");
    QTest::newRow("oldest") << 6;
    QTest::newRow("newest") << 17;
}

void TestSampleMessages::attachments()
{
    QFETCH(int, ios);
    QTemporaryDir home;
    const SampleOptions options = optionsFor(home, ios);
    const SampleSummary summary = makeSample(options);
    const QString path = messagesPath(options, summary);
    QCOMPARE(column(path, u"select count(*) from attachment where filename is null"_s), QStringList{u"1"_s});
    QCOMPARE(column(path, u"select count(*) from attachment where mime_type is null"_s), QStringList{u"1"_s});
    QStringList absent, unreadable;
    const QStringList names = column(path, u"select filename from attachment where filename is not null"_s);
    for (QString name : names) {
        name.replace(u"/var/mobile/"_s, u"~/"_s);
        QVERIFY(name.startsWith(u"~/Library/SMS/Attachments/"_s));
        const SampleFile *file = summary.file(u"MediaDomain"_s, name.mid(2));
        if (!file)
            file = summary.file(u"HomeDomain"_s, name.mid(2));
        const QString last = name.section(u'/', -1);
        if (!file)
            absent << last;
        else if (last.endsWith(u".jpg"_s, Qt::CaseInsensitive) ||
                 last.endsWith(u".png"_s, Qt::CaseInsensitive)) {
            if (QImage::fromData(readAll(storedPath(options, *file))).isNull())
                unreadable << last;
        }
    }
    QCOMPARE(absent, (QStringList{u"left in the cloud.jpg"_s, u"row alone.mov"_s}));
    QCOMPARE(unreadable, QStringList{u"broken.jpg"_s});
}

void TestSampleMessages::walCompanion()
{
    QTemporaryDir home;
    SampleOptions options = optionsFor(home, 17);
    options.walCompanion = true;
    const SampleSummary summary = makeSample(options);
    const SampleFile *log = summary.file(u"HomeDomain"_s, u"Library/SMS/sms.db-wal"_s);
    QVERIFY(log);
    const QString alone = home.filePath(u"alone.db"_s);
    const QString both = home.filePath(u"both.db"_s);
    QVERIFY(QFile::copy(messagesPath(options, summary), alone));
    QVERIFY(QFile::copy(messagesPath(options, summary), both));
    QVERIFY(QFile::copy(storedPath(options, *log), both + u"-wal"_s));
    const QString sql = u"select count(*) from message"_s;
    QCOMPARE(column(alone, sql).first().toInt(), summary.counts.messageRows - summary.counts.messagesInWal);

    // Not as it stands this time: SQLite checks every salt and sum of the log before it believes a page of
    // it.
    const QByteArray printed = runTool(u"sqlite3"_s, {both, sql + u"; pragma integrity_check"_s});
    QCOMPARE(printed, QByteArray::number(summary.counts.messageRows) + "\nok\n");
    QVERIFY(summary.counts.messagesInWal > 0);
}

QTEST_GUILESS_MAIN(TestSampleMessages)
#include "tst_sample_messages.moc"

#include "device_messages.h"
#include "messages/mac_messaging_db.h"
#include "messages/message_source.h"
#include "messages/save_messages.h"
#include "resources/resources.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

/// The database of the macOS Messages application, opened by hand.
class TestMacMessages : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void init();
    void attachments_data();
    void attachments();
    void openedByHand_data();
    void openedByHand();
    void dates_data();
    void dates();
    void original();

private:
    void put(const QString &path) const
    {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(path));
        file.write("content");
    }
    QString inHome(const char *path) const { return m_home->filePath(QLatin1String(path)); }
    QString inFolder(const char *path) const { return m_folder->filePath(QLatin1String(path)); }
    void make(const QString &name, const QString &filename, DeviceMessages::Generation generation)
    {
        DeviceMessages db(m_folder->filePath(name), generation);
        db.handle(1, QStringLiteral("bo@example.org"));
        db.chat(1, QStringLiteral("bo@example.org"), {1});
        db.message(1, 1, generation >= DeviceMessages::Ios12 ? 347068800000000000 : 347068800,
                   QStringLiteral("Hi"), QStringLiteral("handle_id"), QStringLiteral("1"));
        db.run(QStringLiteral("insert into attachment(ROWID, guid, filename) values(1, 'AB12-X', '%1');"
                              "insert into message_attachment_join values(1, 1);")
                   .arg(QString(filename).replace(u'\'', QLatin1String("''"))));
    }

    std::unique_ptr<QTemporaryDir> m_home;
    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestMacMessages::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    m_folder = std::make_unique<QTemporaryDir>();
    put(inHome("secret.txt"));
    put(inHome("Library/Messages/Attachments/ab/12/IMG_7.jpeg"));
    put(inHome("Library/Messages/Attachments/both.jpeg"));
    put(inFolder("Attachments/both.jpeg"));
    put(inFolder("Attachments/it's 10:30.jpeg"));
}

void TestMacMessages::attachments_data()
{
    QTest::addColumn<QString>("filename");
    QTest::addColumn<QString>("place"); // "home:" or "folder:" and a path; empty when there is none
    QTest::addColumn<QString>("rewritten");
    const QString front = QStringLiteral("~/Library/SMS/Attachments/ab/12/AB12-X/");
    QTest::newRow("in the home folder")
        << "~/Library/Messages/Attachments/ab/12/IMG_7.jpeg"
        << "home:Library/Messages/Attachments/ab/12/IMG_7.jpeg" << front + QStringLiteral("IMG_7.jpeg");
    QTest::newRow("in somebody else's home")
        << "/Users/bo/Library/Messages/Attachments/ab/12/IMG_7.jpeg"
        << "home:Library/Messages/Attachments/ab/12/IMG_7.jpeg" << front + QStringLiteral("IMG_7.jpeg");
    QTest::newRow("beside the database")
        << "~/Library/Messages/Attachments/it's 10:30.jpeg"
        << "folder:Attachments/it's 10:30.jpeg" << front + QStringLiteral("it's 10:30.jpeg");
    QTest::newRow("in both") << "~/Library/Messages/Attachments/both.jpeg"
                             << "folder:Attachments/both.jpeg" << front + QStringLiteral("both.jpeg");
    QTest::newRow("nowhere") << "~/Library/Messages/Attachments/gone.jpeg"
                             << "" << front + QStringLiteral("gone.jpeg");
    QTest::newRow("climbing") << "~/Library/Messages/../../secret.txt"
                              << "" << front + QStringLiteral("secret.txt");
    QTest::newRow("outside of the application") << "~/secret.txt"
                                                << "" << front + QStringLiteral("secret.txt");
    QTest::newRow("no file name") << ""
                                  << ""
                                  << "";
}

void TestMacMessages::attachments()
{
    QFETCH(QString, filename);
    QFETCH(QString, place);
    make(QStringLiteral("chat.db"), filename, DeviceMessages::Ios17);
    MacMessageFiles files(m_folder->path(), m_home->path());
    MacMessagingDb db(files.copyOf(inFolder("chat.db")), files);
    NoProgress progress;
    db.loadChats();
    db.loadMessages(0, progress);
    const _MsgAttachment *attachment = db.chats().front()->messages.front()->attachments.front();
    QTEST(attachment->filename, "rewritten");
    QString path = place.section(u':', 1);
    if (!path.isEmpty())
        path = place.startsWith(u'h') ? m_home->filePath(path) : m_folder->filePath(path);
    QCOMPARE(attachment->local_path, path);
    QCOMPARE(files.hasContent(attachment->source), !path.isEmpty());
    if (!path.isEmpty())
        QCOMPARE(files.fetchForViewing(attachment->source), path);
}

void TestMacMessages::openedByHand_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("opened"); // relative to the folder
    QTest::addColumn<QString>("filename");
    QTest::addColumn<int>("kind");
    const QString mac = QStringLiteral("~/Library/Messages/Attachments/a.jpg");
    const QString device = QStringLiteral("~/Library/SMS/Attachments/a.jpg");
    QTest::newRow("chat.db") << "chat.db"
                             << "chat.db" << mac << 7;
    QTest::newRow("its folder") << "chat.db"
                                << "" << mac << 7;
    QTest::newRow("chat.db without attachments of macOS") << "chat.db"
                                                          << "chat.db" << device << 7;
    QTest::newRow("a copy under another name") << "copy: 1.db"
                                               << "copy: 1.db" << mac << 7;
    QTest::newRow("of a device") << "sms.db"
                                 << "sms.db" << device << 6;
}

void TestMacMessages::openedByHand()
{
    QFETCH(QString, name);
    QFETCH(QString, opened);
    QFETCH(QString, filename);
    make(name, filename, DeviceMessages::Ios17);
    put(inFolder("Attachments/a.jpg"));
    QVERIFY(isMessageFile(m_folder->filePath(opened)));
    const MessageSource source = openMessageFile(m_folder->filePath(opened));
    QTEST(source.database->kind(), "kind");
    QCOMPARE(source.database->countMessages(), 1);
    NoProgress progress;
    source.database->loadChats();
    source.database->loadMessages(0, progress);
    const _MsgChat *chat = source.database->chats().front();
    QCOMPARE(chat->handles.front()->id, QStringLiteral("bo@example.org"));
    const _MsgAttachment *attachment = chat->messages.front()->attachments.front();
    if (name != QStringLiteral("chat.db") ||
        filename == QStringLiteral("~/Library/Messages/Attachments/a.jpg"))
        QVERIFY(source.files->hasContent(attachment->source));
}

void TestMacMessages::dates_data()
{
    QTest::addColumn<int>("generation");
    QTest::newRow("seconds") << int(DeviceMessages::Ios9);
    QTest::newRow("nanoseconds") << int(DeviceMessages::Ios12);
}

void TestMacMessages::dates()
{
    QFETCH(int, generation);
    make(QStringLiteral("chat.db"), QString(), DeviceMessages::Generation(generation));
    const MessageSource source = openMessageFile(m_folder->path());
    NoProgress progress;
    source.database->loadChats();
    source.database->loadMessages(0, progress);
    QCOMPARE(source.database->chats().front()->messages.front()->date, 347068800);
}

// The application may be running: nothing is made beside its database, and what it has not written back yet
// is read.
void TestMacMessages::original()
{
    make(QStringLiteral("chat.db"), QString(), DeviceMessages::Ios17);
    Sqlite3DB running;
    running.openThrow(inFolder("chat.db"), SqliteOpen::ReadWrite);
    QVERIFY(
        running.exec(QStringLiteral("pragma journal_mode=wal; pragma wal_autocheckpoint=0; insert into "
                                    "message(ROWID, guid) values(2, 'new'); insert into chat_message_join "
                                    "values(1, 2);")));
    const QStringList files = QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden);
    const MessageSource source = openMessageFile(m_folder->path());
    QCOMPARE(source.database->countMessages(), 2);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden), files);
    QVERIFY(!isMessageFile(m_home->path()));
    QVERIFY_EXCEPTION_THROWN(openMessageFile(m_home->path()), Error);
    QVERIFY_EXCEPTION_THROWN(openMessageFile(inHome("secret.txt")), Error);
}

QTEST_GUILESS_MAIN(TestMacMessages)
#include "tst_mac_messages.moc"

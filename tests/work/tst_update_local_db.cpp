#include "base/error.h"
#include "base/report.h"
#include "base/texts.h"
#include "messages/local_message_store.h"
#include "messages/message_source.h"
#include "messages/save_messages.h"
#include "personal/calendar_db.h"
#include "personal/store_job.h"
#include "recording_receiver.h"
#include "resources/resources.h"
#include "work/update_local_db_thread.h"

#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

namespace {
/// Stops the job at the n-th look at the flag and keeps what was reported.
class Watched : public Progress
{
public:
    explicit Watched(int looks = -1) : m_left(looks) {}
    QStringList seen;

    void report(const QString &status, int, const QString &) override { seen << status; }
    bool isCancelled() const override { return --m_left == 0; }

private:
    mutable int m_left;
};
} // namespace

/// Bringing local databases of the older layout to today's.
class TestUpdateLocalDb : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }
    void bringsEverythingOver();
    void whatStandsInTheLogAndHasNoHandle();
    void addsToTheStoreThatIsThere();
    void damagedMessagesAreTold();
    void oneThatIsBrokenStaysAndTheOthersGo();
    void stopped();
    void worker();

private:
    QString folder(const QString &name) const { return m_folder->filePath(name); }
    void addOldMessages(const QString &name, int first, int count) const;
    void addOldCalendar(const QString &name, const QString &summary) const;
    void changeInTheLog(const QString &name, const QString &statement) const;
    void write(const QString &path, const QByteArray &content) const;
    QStringList files(const QString &name) const;
    QStringList texts(const QString &name) const;
    QStringList summaries(const QString &name) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestUpdateLocalDb::initTestCase()
{
    initResources();
    installTexts();
}

void TestUpdateLocalDb::write(const QString &path, const QByteArray &content) const
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
}

// As an earlier version kept them: without the columns that came later, with the files beside.
void TestUpdateLocalDb::addOldMessages(const QString &name, int first, int count) const
{
    _MsgHandle handle;
    handle.id = QStringLiteral("+491711234567");
    handle.service = QStringLiteral("SMS");
    handle._ct_name = QStringLiteral("Bo");
    _MsgChat chat;
    chat.guid = QStringLiteral("SMS;-;1");
    chat.handles = {&handle};
    _MsgAttachment attachment;
    attachment.guid = QStringLiteral("AB12CD34");
    attachment.filename = QStringLiteral("~/Library/SMS/Attachments/a.jpg");
    std::deque<_MsgMessage> messages;
    std::vector<MessageRef> refs;
    for (int i = first; i < first + count; ++i) {
        _MsgMessage &message = messages.emplace_back();
        message.guid = QString::number(i);
        message.text = QStringLiteral("text %1").arg(i);
        message.date = i;
        message.handle = &handle;
        message.chat = &chat;
        refs.push_back({&chat, &message});
    }
    messages.front().attachments = {&attachment};
    NoProgress nobody;
    const QTemporaryDir made;
    saveMessages(refs, nullptr, made.path(), QString(), nobody);
    const QString store = LocalMessageStore::pathIn(made.path());
    {
        Sqlite3DB db;
        db.openThrow(store, SqliteOpen::ReadWrite);
        QVERIFY(db.exec(QStringLiteral("drop index message_idx_logic_hash; alter table message drop column "
                                       "logic_hash; alter table message drop column item_type;")));
    }
    QDir().mkpath(folder(name));
    QVERIFY(QFile::copy(store, folder(name) + QStringLiteral("/mms.db")));
    write(folder(name) + QStringLiteral("/Attachments/ab/12/AB12CD34/a.jpg"), "picture");
}

/// As a process leaves a store that was killed before it could fold the log into the database.
void TestUpdateLocalDb::changeInTheLog(const QString &name, const QString &statement) const
{
    const QString path = folder(name) + QStringLiteral("/mms.db");
    const QString log = path + QStringLiteral("-wal");
    const QTemporaryDir kept;
    {
        Sqlite3DB db;
        db.openThrow(path, SqliteOpen::ReadWrite);
        QVERIFY(db.exec(QStringLiteral("pragma journal_mode=wal")));
        QVERIFY2(db.exec(statement), qPrintable(db.lastError()));
        QVERIFY(QFile::copy(path, kept.filePath(QStringLiteral("db"))));
        QVERIFY(QFile::copy(log, kept.filePath(QStringLiteral("wal"))));
    }
    QVERIFY(QFile::remove(path) && QFile::copy(kept.filePath(QStringLiteral("db")), path));
    QVERIFY(QFile::copy(kept.filePath(QStringLiteral("wal")), log));
}

void TestUpdateLocalDb::addOldCalendar(const QString &name, const QString &summary) const
{
    LocalCalendarsDb old(folder(name), QStringLiteral("calendar.db"));
    old.open();
    CalendarEvent event;
    event.calendar = QStringLiteral("Home");
    event.summary = summary;
    event.start_date = event.end_date = QDateTime::fromSecsSinceEpoch(1000, Qt::UTC);
    StoreJob job(old);
    old.save(event);
    job.commit();
}

QStringList TestUpdateLocalDb::files(const QString &name) const
{
    return QDir(folder(name)).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

QStringList TestUpdateLocalDb::texts(const QString &name) const
{
    const MessageSource source = openLocalMessages(folder(name));
    NoProgress nobody;
    source.database->loadChats();
    source.database->loadMessages(0, nobody);
    QStringList found;
    for (const MessageRef &ref : source.database->select({}, INT64_MIN, INT64_MAX)) {
        found << conversationTitle(ref) + u' ' + ref.message->text;
        for (const _MsgAttachment *attachment : ref.message->attachments)
            found << (source.files->hasContent(attachment->source) ? QStringLiteral("with its file")
                                                                   : QStringLiteral("without its file"));
    }
    return found;
}

QStringList TestUpdateLocalDb::summaries(const QString &name) const
{
    LocalCalendarsDb store(folder(name));
    QStringList found;
    Report heard;
    if (store.openExisting())
        for (const CalendarEvent &event : store.readAll(heard))
            found << event.calendar + u' ' + event.summary;
    return found;
}

void TestUpdateLocalDb::bringsEverythingOver()
{
    addOldMessages(QStringLiteral("both"), 1, 2);
    addOldCalendar(QStringLiteral("both"), QStringLiteral("tea"));
    addOldMessages(QStringLiteral("messages"), 7, 1);
    write(folder(QStringLiteral("new/notes.db")), "untouched");
    QVERIFY(hasOldLocalDatabases(m_folder->path()));
    Watched progress;
    QCOMPARE(updateLocalDatabases(m_folder->path(), progress), QStringList());
    progress.seen.removeDuplicates();
    progress.seen.sort();
    QCOMPARE(progress.seen, QStringList({QStringLiteral("Updating local database both calendar events..."),
                                         QStringLiteral("Updating local database both messages..."),
                                         QStringLiteral("Updating local database messages messages...")}));
    QCOMPARE(texts(QStringLiteral("both")),
             QStringList({QStringLiteral("Bo text 1"), QStringLiteral("with its file"),
                          QStringLiteral("Bo text 2")}));
    QCOMPARE(summaries(QStringLiteral("both")), QStringList{QStringLiteral("Home tea")});
    QCOMPARE(files(QStringLiteral("both")),
             QStringList({QStringLiteral("calendar.db.old"), QStringLiteral("calendars.db"),
                          QStringLiteral("messages.db"), QStringLiteral("mms.db.old")}));
    QCOMPARE(files(QStringLiteral("new")), QStringList{QStringLiteral("notes.db")});
    QVERIFY(!hasOldLocalDatabases(m_folder->path()));
}

void TestUpdateLocalDb::whatStandsInTheLogAndHasNoHandle()
{
    const QString name = QStringLiteral("store");
    addOldMessages(name, 1, 3);
    changeInTheLog(name, QStringLiteral("update message set handle_id=0, is_from_me=1 where text='text 2';"
                                        "update message set text='only in the log' where text='text 3'"));
    Watched progress;
    QCOMPARE(updateLocalDatabases(m_folder->path(), progress), QStringList());
    QStringList kept = texts(name);
    kept.replaceInStrings(QRegularExpression(QStringLiteral("^[^ ]* ")), QString());
    QCOMPARE(kept, QStringList({QStringLiteral("text 1"), QStringLiteral("its file"),
                                QStringLiteral("text 2"), QStringLiteral("only in the log")}));
    QVERIFY2(!files(name).contains(QStringLiteral("mms.db-wal")), "the log goes aside with its database");
}

void TestUpdateLocalDb::addsToTheStoreThatIsThere()
{
    const QString name = QStringLiteral("store");
    addOldMessages(name, 1, 2);
    addOldCalendar(name, QStringLiteral("tea"));
    Watched progress;
    updateLocalDatabases(m_folder->path(), progress);
    const QStringList before = texts(name);
    // As after a process that was killed just before the old file was renamed.
    QVERIFY(
        QFile::copy(folder(name) + QStringLiteral("/mms.db.old"), folder(name) + QStringLiteral("/mms.db")));
    QCOMPARE(updateLocalDatabases(m_folder->path(), progress), QStringList());
    QCOMPARE(texts(name), before);
    QVERIFY(files(name).contains(QStringLiteral("mms(1).old")));
    QVERIFY(QFile::remove(folder(name) + QStringLiteral("/mms.db.old")));
    addOldMessages(name, 3, 2);
    addOldCalendar(name, QStringLiteral("coffee"));
    QCOMPARE(updateLocalDatabases(m_folder->path(), progress), QStringList());
    QCOMPARE(texts(name).filter(QStringLiteral("text")).size(), 4);
    QCOMPARE(summaries(name), QStringList({QStringLiteral("Home tea"), QStringLiteral("Home coffee")}));
}

void TestUpdateLocalDb::damagedMessagesAreTold()
{
    const QString name = QStringLiteral("store");
    addOldMessages(name, 1, 3);
    {
        Sqlite3DB db;
        db.openThrow(folder(name) + QStringLiteral("/mms.db"), SqliteOpen::ReadWrite);
        QVERIFY(db.exec(QStringLiteral("drop table message_attachment_join")));
    }
    Watched progress;
    const QStringList problems = updateLocalDatabases(m_folder->path(), progress);
    QVERIFY2(problems.size() == 1 && problems.first().startsWith(folder(name) + QStringLiteral("/mms.db: ")),
             qPrintable(problems.join(u'\n')));
    QCOMPARE(texts(name).filter(QStringLiteral("text")).size(), 3);
}

void TestUpdateLocalDb::oneThatIsBrokenStaysAndTheOthersGo()
{
    const QString broken = QStringLiteral("a");
    write(folder(broken) + QStringLiteral("/mms.db"), QByteArray(5000, 'x'));
    addOldCalendar(broken, QStringLiteral("tea"));
    write(folder(QStringLiteral("b/calendar.db")), QByteArray(5000, 'x'));
    addOldMessages(QStringLiteral("c"), 1, 1);
    Watched progress;
    const QStringList problems = updateLocalDatabases(m_folder->path(), progress);
    QCOMPARE(problems.size(), 2);
    QVERIFY2(problems.filter(folder(broken) + QStringLiteral("/mms.db: ")).size() == 1,
             qPrintable(problems.join(u'\n')));
    QCOMPARE(problems.filter(folder(QStringLiteral("b")) + QStringLiteral("/calendar.db: ")).size(), 1);
    QCOMPARE(files(broken), QStringList({QStringLiteral("calendar.db.old"), QStringLiteral("calendars.db"),
                                         QStringLiteral("mms.db")}));
    QCOMPARE(texts(QStringLiteral("c")).size(), 2);
}

void TestUpdateLocalDb::stopped()
{
    const QString name = QStringLiteral("store");
    addOldMessages(name, 1, 5);
    const QStringList before = files(name);
    for (const int looks : {1, 3}) {
        Watched progress(looks);
        QVERIFY_EXCEPTION_THROWN(updateLocalDatabases(m_folder->path(), progress), Cancelled);
        QCOMPARE(files(name), before);
    }
}

void TestUpdateLocalDb::worker()
{
    addOldMessages(QStringLiteral("store"), 1, 1);
    write(folder(QStringLiteral("b/mms.db")), "x");
    for (const char *expected : {"error: ", "done: "}) {
        RecordingReceiver receiver;
        ProgressLink link;
        link.receiver = &receiver;
        UpdateLocalDbThread worker(m_folder->path());
        worker.setLink(link);
        worker.start();
        QTRY_VERIFY(receiver.ended());
        QVERIFY(worker.wait());
        QVERIFY2(receiver.lines.constFirst().startsWith(QLatin1String(expected)),
                 qPrintable(receiver.lines.constFirst()));
        QFile::remove(folder(QStringLiteral("b/mms.db")));
    }
    QCOMPARE(texts(QStringLiteral("store")).size(), 2);
}

QTEST_GUILESS_MAIN(TestUpdateLocalDb)
#include "tst_update_local_db.moc"

#include "dying_process.h"
#include "made_messages.h"
#include "messages/message_source.h"
#include "messages/save_messages.h"
#include "resources/resources.h"
#include "store_folder.h"
#include "support/small_disk.h"

#include <QTest>

namespace {
constexpr int oldMessages = 4;
constexpr int newMessages = 12;

/// Kills the process before an item of a number.
class KillBefore : public NoProgress
{
public:
    explicit KillBefore(int item) : m_left(item) {}
    bool isCancelled() const override
    {
        if (--m_left == 0)
            std::raise(SIGKILL);
        return false;
    }

private:
    mutable int m_left;
};

/// Kills the process when half of a file is written.
class KillingFiles : public MadeFiles
{
public:
    QString lastFile;

    void fetchTo(const SourceFile &file, const QString &destination, const CopyProgress &progress) override
    {
        if (file.relativePath != lastFile)
            return MadeFiles::fetchTo(file, destination, progress);
        const QFileInfo target(destination);
        QDir().mkpath(target.path());
        QFile half(target.path() + QStringLiteral("/.x1y2.part"));
        if (half.open(QIODevice::WriteOnly))
            half.write("half");
        half.flush();
        std::raise(SIGKILL);
    }
};

void fill(MadeMessages &made, MadeFiles &files, int first, int count)
{
    _MsgChat *chat = made.chat(QStringLiteral("SMS;-;%1").arg(first), {made.handle(QString::number(first))});
    for (int i = first; i < first + count; ++i) {
        _MsgMessage *message = made.message(chat, QStringLiteral("text %1").arg(i), i);
        message->guid = QString::number(i);
        const auto *attachment =
            made.attachment(message, QStringLiteral("GUIDGUID-%1").arg(i), QStringLiteral("a.jpg"));
        files.contents[attachment->source.relativePath] = QByteArray(1000, 'x');
    }
}
} // namespace

/// What a process that is killed, or runs out of room, leaves of a message store.
class TestStoreSafety : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void init();
    void killedWhileSaving_data();
    void killedWhileSaving();
    void killedWhileDeleting_data();
    void killedWhileDeleting();
    void fullDisk_data();
    void fullDisk();

private:
    void saveOld();
    void saveNew(Progress &progress) { saveNew(m_newFiles, progress); }
    void saveNew(FileSource &files, Progress &progress)
    {
        saveMessages(m_new->refs, &files, m_folder->path(), QString(), progress);
    }
    /// What a reader finds: messages, then files.
    QStringList found() const
    {
        const QStringList messages = describedMessages(*openLocalMessages(m_folder->path()).database);
        return messages + m_folder->files();
    }
    QStringList removed() const
    {
        return describedMessages(*openRecycledMessages(m_folder->path()).database);
    }

    NoProgress m_nobody;
    std::unique_ptr<StoreFolder> m_folder;
    std::unique_ptr<MadeMessages> m_new;
    MadeFiles m_newFiles;
};

void TestStoreSafety::init()
{
    m_folder = std::make_unique<StoreFolder>();
    m_new = std::make_unique<MadeMessages>();
    fill(*m_new, m_newFiles, 100, newMessages);
}

void TestStoreSafety::saveOld()
{
    MadeMessages old;
    MadeFiles files;
    fill(old, files, 1, oldMessages);
    saveMessages(old.refs, &files, m_folder->path(), QString(), m_nobody);
}

void TestStoreSafety::killedWhileSaving_data()
{
    QTest::addColumn<bool>("isNew");
    QTest::addColumn<QString>("moment");
    QTest::addColumn<bool>("isSaved");
    for (const bool isNew : {true, false}) {
        const char *store = isNew ? "new store" : "old store";
        QTest::addRow("%s, first message", store) << isNew << "message 1" << false;
        QTest::addRow("%s, seventh message", store) << isNew << "message 7" << false;
        QTest::addRow("%s, half an attachment", store) << isNew << "attachment" << false;
        QTest::addRow("%s, written but not committed", store) << isNew << "before commit" << false;
        QTest::addRow("%s, just committed", store) << isNew << "after commit" << true;
    }
    QTest::newRow("tables not committed") << true << "before tables" << false;
}

void TestStoreSafety::killedWhileSaving()
{
    QFETCH(bool, isNew);
    QFETCH(QString, moment);
    QFETCH(bool, isSaved);
    if (!isNew)
        saveOld();
    const QStringList before = isNew ? QStringList() : found();
    const int commit = isNew ? 2 : 1; // the first one of a new store makes its tables
    QVERIFY(diesDoing([&] {
        KillingFiles files;
        files.contents = m_newFiles.contents;
        if (moment == QLatin1String("attachment"))
            files.lastFile = QStringLiteral("GUIDGUID-105/a.jpg");
        if (moment.endsWith(QLatin1String(" commit")))
            DeathAtDeletion::await(commit, isSaved ? DeathAtDeletion::After : DeathAtDeletion::Before);
        if (moment == QLatin1String("before tables"))
            DeathAtDeletion::await(1, DeathAtDeletion::Before);
        KillBefore progress(moment.startsWith(QLatin1String("message ")) ? moment.mid(8).toInt() : -1);
        saveNew(files, progress);
    }));
    const QStringList after = found();
    if (!isSaved)
        QCOMPARE(after, before);
    QCOMPARE(m_folder->faults(m_folder->store()), QStringLiteral("ok"));
    saveNew(m_nobody);
    const QStringList whole = found();
    QCOMPARE(whole.size(), before.size() + 2 * newMessages);
    if (isSaved)
        QCOMPARE(after, whole);
}

void TestStoreSafety::killedWhileDeleting_data()
{
    QTest::addColumn<int>("moment");
    QTest::newRow("before a deletion of a journal") << int(DeathAtDeletion::Before);
    QTest::newRow("after a deletion of a journal") << int(DeathAtDeletion::After);
}

void TestStoreSafety::killedWhileDeleting()
{
    QFETCH(int, moment);
    saveOld();
    saveNew(m_nobody);
    const QStringList before = found();
    QVERIFY(diesDoing([&] {
        KillBefore progress(3);
        removeMessages(m_folder->path(), {1, 2, 3, 4}, progress);
    }));
    QCOMPARE(found(), before);
    QSet<qsizetype> removedCounts;
    // Two databases are written; at every step both have changed or neither.
    for (int deletion = 1;; ++deletion) {
        const bool died = diesDoing([&] {
            DeathAtDeletion::await(deletion, static_cast<DeathAtDeletion::Moment>(moment));
            removeMessages(m_folder->path(), {1, 2, 3, 4}, m_nobody);
        });
        const QStringList gone = removed();
        const QStringList left = found();
        removedCounts.insert(gone.size());
        QCOMPARE(left.size() + gone.size(), before.size());
        QVERIFY(gone.isEmpty() || gone.size() == oldMessages);
        for (const QString &database : {m_folder->store(), m_folder->recycleStore()})
            QCOMPARE(m_folder->faults(database), QStringLiteral("ok"));
        if (!gone.isEmpty())
            undeleteMessages(m_folder->path(), {1, 2, 3, 4}, m_nobody);
        QCOMPARE(found(), before);
        if (!died)
            break;
        QVERIFY(deletion < 20);
    }
    // The first file to go is the one that makes both last.
    QSet<qsizetype> expected{oldMessages};
    if (moment == DeathAtDeletion::Before)
        expected.insert(0);
    QCOMPARE(removedCounts, expected);
}

void TestStoreSafety::fullDisk_data()
{
    QTest::addColumn<bool>("isNew");
    QTest::addColumn<int>("bytes");
    for (const int bytes : {0, 100, 5000, 70000, 150000})
        QTest::addRow("new store, %d bytes", bytes) << true << bytes;
    for (const int bytes : {100, 70000, 100000})
        QTest::addRow("old store, %d bytes", bytes) << false << bytes;
}

void TestStoreSafety::fullDisk()
{
    QFETCH(bool, isNew);
    QFETCH(int, bytes);
    if (!isNew)
        saveOld();
    const QStringList before = isNew ? QStringList() : found();
    m_new->message(nullptr, QString(100'000, u'x'), 1);
    {
        const SmallDisk disk(static_cast<rlim_t>(bytes));
        QVERIFY_EXCEPTION_THROWN(saveNew(m_nobody), Error);
    }
    QCOMPARE(found(), before);
    QCOMPARE(QFile::exists(m_folder->store()), !isNew);
    saveNew(m_nobody);
    QCOMPARE(found().size(), before.size() + 2 * newMessages + 1);
}

QTEST_GUILESS_MAIN(TestStoreSafety)
#include "tst_store_safety.moc"

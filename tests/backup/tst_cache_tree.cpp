#include "backup/cache_fixture.h"
#include "backup/cache_tree.h"
#include "resources/resources.h"
#include "support/small_disk.h"

#include <QTest>

#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {
constexpr qsizetype bigSize = 400000;

SampleOptions withAttachments()
{
    SampleOptions options;
    options.files = 0;
    options.messages = 20;
    options.walCompanion = true;
    for (const char *name : {"one.jpg", "two.jpg", "three.jpg"})
        options.extraRows.push_back({u"MediaDomain"_s,
                                     u"Library/SMS/Attachments/zz/%1"_s.arg(QLatin1String(name)),
                                     QByteArray(bigSize, name[0])});
    return options;
}

/// At the n-th question whether to stop, does what it is told; each chunk of a copy asks once.
class AtQuestion : public NoProgress
{
public:
    AtQuestion(int question, std::function<bool()> action) : m_left(question), m_action(std::move(action)) {}
    bool isCancelled() const override { return --m_left == 0 && m_action(); }

private:
    mutable int m_left;
    std::function<bool()> m_action;
};
} // namespace

class TestCacheTree : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void wholeTree_data();
    void wholeTree();
    void names();
    void stopped_data();
    void stopped();
    void killed_data() { stopped_data(); }
    void killed();
    void fullDisk();

private:
    static CachedFiles cache(BackupManifest &backup, Progress &progress);
    static void compareWithBackup(const CacheFixture &fixture);
};

CachedFiles TestCacheTree::cache(BackupManifest &backup, Progress &progress)
{
    return cacheTree(backup, backup.tree().find(u"Library/SMS"_s), u"Saving %1..."_s, progress);
}

/// Every stored file of the messages is there, whole, and no other file. One has a name that not every disk
/// can hold.
void TestCacheTree::compareWithBackup(const CacheFixture &fixture)
{
    QStringList expected;
    for (const SampleFile &file : fixture.summary.files) {
        if (!file.relativePath.startsWith(u"Library/SMS/"_s) || !file.stored || file.locked ||
            file.relativePath.endsWith(u"-wal"_s) || file.relativePath.contains(u'<'))
            continue;
        expected << file.relativePath;
        if (!file.relativePath.endsWith(u"sms.db"_s))
            QCOMPARE(sha1Of(fixture.copyOf(file.relativePath)).toHex(), file.sha1.toHex());
    }
    expected.sort();
    QStringList there = listing(fixture.folderOfCopies()).filter(u"Library/SMS/"_s);
    there.removeIf([&](const QString &path) { return QFileInfo(fixture.copyOf(path)).isDir(); });
    QCOMPARE(there, expected);
    QVERIFY(expected.size() > 4);
}

void TestCacheTree::wholeTree_data()
{
    QTest::addColumn<QString>("password");
    QTest::newRow("plain") << u""_s;
    QTest::newRow("encrypted") << u"pw"_s;
}

void TestCacheTree::wholeTree()
{
    QFETCH(QString, password);
    SampleOptions options = withAttachments();
    options.password = password;
    const CacheFixture fixture(options);
    NoProgress nobody;
    CachedFiles first;
    {
        const auto backup = fixture.openedWithCache();
        const auto gone = backup->catalogue().find("MediaDomain", "Library/SMS/Attachments/zz/one.jpg");
        const QString content = backup->filePath(gone);
        QVERIFY(QFile::rename(content, content + u".away"_s));
        first = cache(*backup, nobody);
        QVERIFY2(!QFile::exists(fixture.copyOf(u"Library/SMS/Attachments/zz/one.jpg"_s)), "no content");
        QVERIFY(QFile::rename(content + u".away"_s, content));
        QCOMPARE(cache(*backup, nobody), (CachedFiles{1, first.copied, first.leftOut - 1}));
    }
    compareWithBackup(fixture);
    QCOMPARE(cache(*fixture.openedWithCache(), nobody),
             (CachedFiles{0, first.copied + 1, first.leftOut - 1}));
}

void TestCacheTree::names()
{
    class Names : public NoProgress
    {
    public:
        void report(const QString &status, int percent, const QString &) override
        {
            reports << u"%1 %2"_s.arg(status).arg(percent);
        }
        QStringList reports;
    } names;
    const CacheFixture fixture(withAttachments());
    const auto backup = fixture.openedWithCache();
    cacheTree(*backup, backup->tree().find(u"Library/SMS/Attachments/zz"_s), u"Saving %1..."_s, names);
    QCOMPARE(names.reports, QStringList({u"Saving one.jpg... 33"_s, u"Saving three.jpg... 66"_s,
                                         u"Saving two.jpg... 100"_s}));
}

void TestCacheTree::stopped_data()
{
    QTest::addColumn<int>("question");
    QTest::newRow("before the first file") << 1;
    QTest::newRow("within the first files") << 20;
    QTest::newRow("within a big file") << 150;
}

void TestCacheTree::stopped()
{
    QFETCH(int, question);
    const CacheFixture fixture(withAttachments());
    AtQuestion stop(question, [] { return true; });
    QVERIFY_EXCEPTION_THROWN(cache(*fixture.openedWithCache(), stop), Cancelled);
    NoProgress nobody;
    cache(*fixture.openedWithCache(), nobody);
    compareWithBackup(fixture);
}

void TestCacheTree::killed()
{
    QFETCH(int, question);
    const CacheFixture fixture(withAttachments());
    const pid_t child = fork();
    if (child == 0) {
        AtQuestion kill(question, [] { return raise(SIGKILL) == 0; });
        cache(*fixture.openedWithCache(), kill);
        _exit(1); // was not killed
    }
    int status = 0;
    QCOMPARE(waitpid(child, &status, 0), child);
    QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);

    // What counts is whole; what was begun is not in the way.
    const auto backup = fixture.openedWithCache();
    for (const char16_t *name : {u"one.jpg", u"two.jpg", u"three.jpg"}) {
        const SourceFile file{u"MediaDomain"_s, u"Library/SMS/Attachments/zz/"_s + QString::fromUtf16(name)};
        QCOMPARE(contentOf(backup->fetchForViewing(file)), QByteArray(bigSize, char(name[0])));
    }
    NoProgress nobody;
    cache(*backup, nobody);
    compareWithBackup(fixture);
}

void TestCacheTree::fullDisk()
{
    const CacheFixture fixture(withAttachments());
    NoProgress nobody;
    {
        const auto backup = fixture.openedWithCache();
        QVERIFY(backup->fetchDatabase({u"HomeDomain"_s, u"Library/SMS/sms.db"_s}));
        const SmallDisk disk(bigSize / 2);
        const QString sentence = errorOf([&] { cache(*backup, nobody); });
        QVERIFY2(sentence.startsWith(u"can not write "_s), qPrintable(sentence));
    }
    QVERIFY(!QFile::exists(fixture.copyOf(u"Library/SMS/Attachments/zz/one.jpg"_s)));
    QVERIFY(QDir(fixture.folderOfCopies()).entryList({u"quillbarrow-*"_s}, QDir::Dirs).isEmpty());
    cache(*fixture.openedWithCache(), nobody);
    compareWithBackup(fixture);
}

QTEST_GUILESS_MAIN(TestCacheTree)
#include "tst_cache_tree.moc"

#include "backup/extract.h"

#include "backup/backup_fixture.h"

#include "backup/export_memory.h"
#include "base/app_folders.h"
#include "sqlite/sqlite3_db.h"

#include <QTest>

#include <filesystem>

using namespace Qt::StringLiterals;

class TestExtract : public QObject
{
    Q_OBJECT

private slots:
    void landings_data();
    void landings();
    void everyContent_data();
    void everyContent();
    void secondRunLeavesWhatIsWhole_data();
    void secondRunLeavesWhatIsWhole();
    void equalNames();
    void names_data();
    void names();
    void equalNamesOfFullLength();
    void cutWithinTheLastBlock();
    void timesOfFat();
    void emptiedContentIsNoted();
    void cutContentIsNoted_data();
    void cutContentIsNoted();
    void hostileRows_data();
    void hostileRows();
    void namesThatAreTooLong();
    void linksInTheBackup_data();
    void linksInTheBackup();
    void targetOverTheBackup();
    void linksInTheTarget();
    void nodesOfTheTree();
    void missingIsNoted();
    void cancelLeavesNothingHalf();
    void fullDiskEndsTheJob();
    void badTargets();
    void memoryTellsNoNames();

private:
    std::unique_ptr<BackupFixture> m_fixture; // of all rows of one test
};

namespace {
SampleOptions small(const std::vector<SampleRow> &rows = {})
{
    SampleOptions options;
    options.messages = 1;
    options.files = 0;
    options.extraRows = rows;
    return options;
}

Report extractAll(const BackupFixture &fixture, const QList<ExtractRequest> &requests)
{
    NoProgress progress;
    return extractFiles(*fixture.opened(), requests, fixture.path(u"target"_s), progress);
}

/// Every domain of the sample.
QList<ExtractRequest> wholeDomains(const BackupManifest &backup)
{
    QList<ExtractRequest> requests;
    for (std::uint32_t i = 0; i < backup.catalogue().domainCount(); ++i)
        requests.append({backup.catalogue().domainName(i).toByteArray(), {}});
    return requests;
}

/// Stops after so many files.
class StopAfter : public Progress
{
public:
    explicit StopAfter(int checks) : m_left(checks) {}
    void report(const QString &, int, const QString &) override {}
    bool isCancelled() const override { return --m_left < 0; }

private:
    mutable int m_left;
};
} // namespace

void TestExtract::landings_data()
{
    m_fixture = std::make_unique<BackupFixture>(small({{u"Odd"_s, u"a/b/c.txt"_s, "c"},
                                                       {u"Odd"_s, u"a/d"_s, "d"},
                                                       {u"Odd"_s, u"a.b"_s, "not below a"},
                                                       {u"Odd"_s, u"e"_s, "e"},
                                                       {u"Other"_s, u"a/b/x"_s, "x"}}));
    QTest::addColumn<QList<ExtractRequest>>("requests");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char *name, const QList<ExtractRequest> &requests,
                        const QStringList &expected) { QTest::newRow(name) << requests << expected; };
    row("a file under its own name", {{"Odd", "a/b/c.txt"}}, {u"c.txt"_s});
    row("a folder with its tree", {{"Odd", "a"}}, {u"a"_s, u"a/b"_s, u"a/b/c.txt"_s, u"a/d"_s});
    row("a folder below", {{"Odd", "a/b/"}}, {u"b"_s, u"b/c.txt"_s});
    row("a whole domain", {{"Odd", ""}}, {u"a"_s, u"a.b"_s, u"a/b"_s, u"a/b/c.txt"_s, u"a/d"_s, u"e"_s});
    row("asked twice", {{"Odd", "e"}, {"Odd", "e"}}, {u"e"_s});
    row("an empty folder", {{"AppDomain-com.example.empty", "Documents"}}, {u"Documents"_s});
}

void TestExtract::landings()
{
    QFETCH(QList<ExtractRequest>, requests);
    QDir(m_fixture->path(u"target"_s)).removeRecursively();
    const Report summary = extractAll(*m_fixture, requests);
    QVERIFY(summary.isEmpty());
    QTEST(listing(m_fixture->path(u"target"_s)), "expected");
}

void TestExtract::everyContent_data()
{
    QTest::addColumn<QString>("password");
    QTest::addColumn<bool>("isOlder");
    QTest::newRow("plain") << u""_s << false;
    QTest::newRow("encrypted") << u"pw"_s << false;
    QTest::newRow("older, encrypted") << u"pw"_s << true;
}

void TestExtract::everyContent()
{
    QFETCH(QString, password);
    QFETCH(bool, isOlder);
    SampleOptions options;
    options.password = password;
    options.layout = isOlder ? SampleOptions::Layout::Mbdb : SampleOptions::Layout::Modern;
    options.ios = isOlder ? 9 : 17;
    const BackupFixture fixture(options);
    const auto backup = fixture.opened();
    NoProgress progress;
    qint64 stored = 0;
    QStringList locked;
    for (const SampleFile &file : fixture.summary.files) {
        const QString target = fixture.path(u"target/"_s + file.fileId);
        const Report summary =
            extractFiles(*backup, {{file.domain.toUtf8(), file.relativePath.toUtf8()}}, target, progress);
        QCOMPARE(summary.done, file.stored ? 1 : 0);
        QCOMPARE(summary.count(fileFailed), file.stored ? 0 : 1);
        QCOMPARE(summary.count(fileLocked), file.locked ? 1 : 0);
        QCOMPARE(summary.isFailure(), file.locked || !file.stored);
        if (!file.stored)
            continue;
        ++stored;
        QCOMPARE(listing(target).size(), 1);
        const QFileInfo written(QDir(target).filePath(listing(target).first()));
        QCOMPARE(written.lastModified().toSecsSinceEpoch(), file.modified);
        QVERIFY(file.locked || sha1Of(written.filePath()) == file.sha1);
        QCOMPARE(int(written.permissions() & (QFile::ReadGroup | QFile::ReadOther)), 0);
    }
    QVERIFY(stored > 40);
}

void TestExtract::secondRunLeavesWhatIsWhole_data()
{
    everyContent_data();
}

void TestExtract::secondRunLeavesWhatIsWhole()
{
    QFETCH(QString, password);
    QFETCH(bool, isOlder);
    SampleOptions options;
    options.password = password;
    options.layout = isOlder ? SampleOptions::Layout::Mbdb : SampleOptions::Layout::Modern;
    options.ios = isOlder ? 9 : 17;
    const BackupFixture fixture(options);
    const auto backup = fixture.opened();
    NoProgress progress;
    const QString target = fixture.path(u"target"_s);
    const Report first = extractFiles(*backup, wholeDomains(*backup), target, progress);
    const QString before = fingerprint(target);
    const Report second = extractFiles(*backup, wholeDomains(*backup), target, progress);
    QCOMPARE(second.done, 0);
    QCOMPARE(second.count(filesThere), first.done);
    QCOMPARE(second.count(fileLocked), first.count(fileLocked));
    QCOMPARE(fingerprint(target), before);

    const QString database = target + u"/Library/SMS/sms.db"_s;
    const QByteArray whole = contentOf(database);
    writeFile(database, whole.chopped(100));
    QFile::remove(target + u"/Library/AddressBook/AddressBook.sqlitedb"_s);
    const Report third = extractFiles(*backup, wholeDomains(*backup), target, progress);
    QVERIFY(third.done >= 1 && third.done <= 2);
    QCOMPARE(contentOf(database), whole);
    QCOMPARE(fingerprint(target), before);
}

void TestExtract::equalNames()
{
    const BackupFixture fixture(small({{u"Odd"_s, u"a/x.tar.gz"_s, "1"},
                                       {u"Odd"_s, u"b/x.tar.gz"_s, "2"},
                                       {u"Odd"_s, u"c/x.tar.gz"_s, "3"},
                                       {u"Odd"_s, u"a/plain"_s, "4"},
                                       {u"Odd"_s, u"b/plain"_s, "5"}}));
    const QList<ExtractRequest> requests = {{"Odd", "a/x.tar.gz"},
                                            {"Odd", "b/x.tar.gz"},
                                            {"Odd", "c/x.tar.gz"},
                                            {"Odd", "a/plain"},
                                            {"Odd", "b/plain"}};
    const Report report = extractAll(fixture, requests);
    QCOMPARE(report.done, 5);
    QCOMPARE(report.count(IssueKind::Renamed), 3);
    QVERIFY(report.issues().contains(
        Issue{.kind = IssueKind::Renamed, .what = fileRenamed, .where = u"Odd b/plain"_s, .reason = u"plain(1)"_s}));
    QVERIFY(!report.isFailure());
    const QString target = fixture.path(u"target/"_s);
    QCOMPARE(listing(target),
             QStringList({u"plain"_s, u"plain(1)"_s, u"x(1).gz"_s, u"x(2).gz"_s, u"x.tar.gz"_s}));
    QCOMPARE(contentOf(target + u"x(2).gz"_s), QByteArray("3"));
    QCOMPARE(extractAll(fixture, requests).count(filesThere), 5);
}

void TestExtract::names_data()
{
    QTest::addColumn<NameRules>("rules");
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<int>("renamed");
    QTest::newRow("Unix") << NameRules::Unix
                          << QStringList({u"bb:c"_s, u"bb?c"_s, u"dir "_s, u"dir /b"_s, u"dir."_s,
                                          u"dir./con.tar.gz"_s})
                          << 0;
    QTest::newRow("Windows") << NameRules::Windows
                             << QStringList({u"bb_c"_s, u"bb_c(1)"_s, u"dir_"_s, u"dir_(1)"_s,
                                             u"dir_(1)/$$con$$.tar.gz"_s, u"dir_/b"_s})
                             << 5;
}

// A name that the file system takes stays. Two that become one do not meet, and each that changes is told.
void TestExtract::names()
{
    QFETCH(NameRules, rules);
    QFETCH(int, renamed);
    const BackupFixture fixture(small({{u"Odd"_s, u"dir /b"_s, "1"},
                                       {u"Odd"_s, u"dir./con.tar.gz"_s, "2"},
                                       {u"Odd"_s, u"bb:c"_s, "3"},
                                       {u"Odd"_s, u"bb?c"_s, "4"}}));
    NoProgress progress;
    const QString target = fixture.path(u"target"_s);
    for (const bool again : {false, true}) {
        const Report report = extractFiles(*fixture.opened(), {{"Odd", ""}}, target, progress, rules);
        QTEST(listing(target), "expected");
        QCOMPARE(report.count(IssueKind::Renamed), renamed);
        QVERIFY(!report.isFailure());
        QCOMPARE(report.done, again ? 0 : 4);
    }
}

void TestExtract::equalNamesOfFullLength()
{
    const QString name = QString(125, u'\u00fc') + u".html"_s;
    const BackupFixture fixture(small({{u"Odd"_s, u"a/"_s + name, "1"}, {u"Odd"_s, u"b/"_s + name, "2"}}));
    const QList<ExtractRequest> requests = {{"Odd", "a/" + name.toUtf8()}, {"Odd", "b/" + name.toUtf8()}};
    QCOMPARE(extractAll(fixture, requests).done, 2);
    QCOMPARE(listing(fixture.path(u"target"_s)),
             QStringList({QString(123, u'\u00fc') + u"(1).html"_s, name}));
}

void TestExtract::cutWithinTheLastBlock()
{
    SampleOptions options = small({{u"Odd"_s, u"a"_s, "fourteen bytes"}});
    options.password = u"pw"_s;
    const BackupFixture fixture(options);
    extractAll(fixture, {{"Odd", "a"}});
    QFile there(fixture.path(u"target/a"_s));
    const QDateTime time = QFileInfo(there).lastModified();
    QVERIFY(there.open(QIODevice::ReadWrite) && there.resize(9));
    QVERIFY(there.setFileTime(time, QFileDevice::FileModificationTime));
    there.close();
    QCOMPARE(extractAll(fixture, {{"Odd", "a"}}).done, 1);
    QCOMPARE(contentOf(there.fileName()), QByteArray("fourteen bytes"));
}

void TestExtract::timesOfFat()
{
    const BackupFixture fixture(SampleOptions{});
    extractAll(fixture, {{"MediaDomain", ""}});
    const QDir target(fixture.path(u"target"_s));
    const auto moveOdd = [&](qint64 seconds) {
        int moved = 0;
        for (const QString &name : listing(target.path())) {
            QFile file(target.filePath(name));
            const QDateTime time = QFileInfo(file).lastModified();
            if (QFileInfo(file).isFile() && time.toSecsSinceEpoch() % 2 != 0 &&
                file.open(QIODevice::ReadWrite) &&
                file.setFileTime(time.addSecs(seconds), QFileDevice::FileModificationTime))
                ++moved;
        }
        return moved;
    };
    QVERIFY(moveOdd(-1) > 0);
    QCOMPARE(extractAll(fixture, {{"MediaDomain", ""}}).done, 0);
    QDir(target).removeRecursively();
    extractAll(fixture, {{"MediaDomain", ""}});
    const int moved = moveOdd(-2);
    QCOMPARE(extractAll(fixture, {{"MediaDomain", ""}}).done, moved);
}

void TestExtract::emptiedContentIsNoted()
{
    const BackupFixture fixture(small({{u"Odd"_s, u"a"_s, "lost"}, {u"Odd"_s, u"b"_s, ""}}));
    const auto backup = fixture.opened();
    QVERIFY(QFile::resize(backup->filePath(backup->catalogue().find("Odd", "a")), 0));
    const Report summary = extractAll(fixture, {{"Odd", ""}});
    QCOMPARE(summary.issues().size(), 1);
    QCOMPARE(summary.issues().first().kind, IssueKind::Damaged);
    QCOMPARE(summary.issues().first().where, u"Odd a"_s);
    QCOMPARE(listing(fixture.path(u"target"_s)), QStringList({u"b"_s}));
}

void TestExtract::cutContentIsNoted_data()
{
    QTest::addColumn<QString>("password");
    QTest::addColumn<bool>("isOlder");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("told");
    QTest::newRow("plain") << u""_s << false << u"a.jpg"_s << u"16 of 100 bytes"_s;
    QTest::newRow("older") << u""_s << true << u"a.jpg"_s << u"16 of 100 bytes"_s;
    QTest::newRow("encrypted, ends like a padding") << u"pw"_s << false << u"a.jpg"_s << u"15 of 100 bytes"_s;
    QTest::newRow("a log, whose length changes") << u""_s << false << u"a.db-wal"_s << u""_s;
    QTest::newRow("a database by its pages") << u""_s << false << u"pages.db"_s << u"512 of 1024 bytes"_s;
    QTest::newRow("a database of another hour") << u""_s << false << u"whole.db"_s << u""_s;
}

void TestExtract::cutContentIsNoted()
{
    QFETCH(QString, password);
    QFETCH(bool, isOlder);
    QFETCH(QString, path);
    QFETCH(QString, told);
    const QByteArray content = QByteArray(15, 'x') + '\1' + QByteArray(84, 'y');
    const auto database = [](char pages) {
        QByteArray bytes = QByteArray("SQLite format 3", 16) + QByteArray(2000, '\0');
        bytes[16] = 2; // pages of 512 bytes
        bytes[31] = pages;
        return bytes;
    };
    SampleOptions options = small({{u"Odd"_s, u"a.jpg"_s, content},
                                   {u"Odd"_s, u"a.db-wal"_s, content},
                                   {u"Odd"_s, u"pages.db"_s, database(2)},
                                   {u"Odd"_s, u"whole.db"_s, database(1)}});
    options.password = password;
    options.layout = isOlder ? SampleOptions::Layout::Mbdb : SampleOptions::Layout::Modern;
    const BackupFixture fixture(options);
    const auto backup = fixture.opened();
    const bool isDatabase = path.endsWith(u".db"_s);
    QVERIFY(QFile::resize(backup->filePath(backup->catalogue().find("Odd", path.toUtf8())), isDatabase ? 512 : 16));
    const auto extractAgain = [&] { return extractAll(fixture, {{"Odd", path.toUtf8()}}); };
    const Report summary = extractAgain();
    QCOMPARE(summary.done, 1);
    QCOMPARE(summary.issues(), told.isEmpty() ? QList<Issue>()
                                              : (QList<Issue>{{.what = "IDS_ISSUE_FILES_CUT_OFF",
                                                               .where = u"Odd "_s + path,
                                                               .reason = told}}));
    QCOMPARE(extractAgain().isFailure(), !told.isEmpty());
}

void TestExtract::hostileRows_data()
{
    QTest::addColumn<QString>("path");
    std::vector<SampleRow> rows = {{u"Odd"_s, u"good"_s, "good"}};
    const auto row = [&](const char *name, const QString &path) {
        QTest::newRow(name) << path;
        rows.push_back({u"Odd"_s, path, "hostile"});
    };
    row("climbs", u"../outside.txt"_s);
    row("climbs in the middle", u"a/../../outside.txt"_s);
    row("climbs and comes back", u"a/../inside.txt"_s);
    row("absolute", u"/tmp/quillbarrow-outside.txt"_s);
    row("empty name", u"a//b"_s);
    m_fixture = std::make_unique<BackupFixture>(small(rows));
}

void TestExtract::hostileRows()
{
    QFETCH(QString, path);
    const Report summary = extractAll(*m_fixture, {{"Odd", ""}});
    const QList<Issue> &issues = summary.issues();
    const auto issue = std::find_if(issues.begin(), issues.end(),
                                    [&](const Issue &each) { return each.where == u"Odd "_s + path; });
    QVERIFY(issue != issues.end());
    QCOMPARE(issue->kind, IssueKind::Refused);
    QVERIFY(!issue->reason.isEmpty());
    const Report alone = extractAll(*m_fixture, {{"Odd", path.toUtf8()}});
    QCOMPARE(alone.done + alone.count(filesThere), 0);
    const QStringList there = listing(m_fixture->path(u"target"_s));
    QVERIFY(there.contains(u"good"_s) && there.filter(u".part"_s).isEmpty());
    QVERIFY(there.filter(u"side.txt"_s).isEmpty());
    QCOMPARE(QDir(m_fixture->path(u"."_s)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList({u"backup"_s, u"target"_s}));
    QVERIFY(!QFile::exists(u"/tmp/quillbarrow-outside.txt"_s));
}

void TestExtract::namesThatAreTooLong()
{
    const QString longName(256, u'n');
    const BackupFixture fixture(small({{u"Odd"_s, longName, "1"},
                                       {u"Odd"_s, longName + u"n"_s, "2"},
                                       {u"Odd"_s, QString(256, u'm') + u"/x"_s, "3"}}));
    const Report report = extractAll(fixture, {{"Odd", ""}});
    QCOMPARE(report.done, 3);
    QCOMPARE(report.count(IssueKind::Renamed), 3);
    const QString folder(255, u'm');
    QCOMPARE(listing(fixture.path(u"target"_s)),
             QStringList({folder, folder + u"/x"_s, QString(252, u'n') + u"(1)"_s, QString(255, u'n')}));
}

// A backup of unknown origin must not hand out what lies elsewhere on this computer.
void TestExtract::linksInTheBackup_data()
{
    QTest::addColumn<bool>("isFolder");
    QTest::newRow("a content") << false;
    QTest::newRow("the folder of a content") << true;
}

void TestExtract::linksInTheBackup()
{
    QFETCH(bool, isFolder);
    const BackupFixture fixture(small({{u"Odd"_s, u"a"_s, "content"}}));
    const auto backup = fixture.opened();
    const QString stored = backup->filePath(backup->catalogue().find("Odd", "a"));
    const QString linked = isFolder ? QFileInfo(stored).path() : stored;
    const QString elsewhere = fixture.path(u"elsewhere"_s);
    QVERIFY(QFile::rename(linked, elsewhere) && QFile::link(elsewhere, linked));
    QVERIFY(!backup->hasContent({u"Odd"_s, u"a"_s}));
    const Report report = extractAll(fixture, {{"Odd", ""}});
    QCOMPARE(report.done, 0);
    QCOMPARE(report.issues().size(), 1);
    QCOMPARE(report.issues().first().kind, IssueKind::Damaged);
    QVERIFY(report.issues().first().reason.contains(u"link"_s));
    QVERIFY(listing(fixture.path(u"target"_s)).isEmpty());
}

// The target lies outside of the backup, a record in it does not.
void TestExtract::targetOverTheBackup()
{
    const BackupFixture fixture(small({{u"Odd"_s, u"backup/Manifest.db"_s, "hostile"},
                                       {u"Odd"_s, u"backup/new/x"_s, "hostile"},
                                       {u"Odd"_s, u"harmless"_s, "1"}}));
    const QString before = fingerprint(fixture.folder());
    NoProgress progress;
    const Report report = extractFiles(*fixture.opened(), {{"Odd", ""}}, fixture.path({}), progress);
    QCOMPARE(fingerprint(fixture.folder()), before);
    QCOMPARE(report.done, 1);
    QVERIFY(report.count(IssueKind::Refused) >= 2);
    QCOMPARE(contentOf(fixture.path(u"harmless"_s)), QByteArray("1"));
}

void TestExtract::linksInTheTarget()
{
    const BackupFixture fixture(small({{u"Odd"_s, u"a/x"_s, "new"}, {u"Odd"_s, u"b"_s, "new"}}));
    const QString outside = fixture.path(u"outside"_s);
    writeFile(outside + u"/x"_s, "precious");
    QDir().mkpath(fixture.path(u"target"_s));
    QVERIFY(QFile::link(outside, fixture.path(u"target/a"_s)));
    QVERIFY(QFile::link(outside + u"/x"_s, fixture.path(u"target/b"_s)));
    const Report summary = extractAll(fixture, {{"Odd", ""}});
    QCOMPARE(summary.done, 1);
    QCOMPARE(summary.count(fileFailed), 2); // the folder "a" and what is in it
    QCOMPARE(contentOf(outside + u"/x"_s), QByteArray("precious"));
    QVERIFY(!QFileInfo(fixture.path(u"target/b"_s)).isSymLink());
    QCOMPARE(contentOf(fixture.path(u"target/b"_s)), QByteArray("new"));
}

void TestExtract::nodesOfTheTree()
{
    const BackupFixture fixture(small({{u"HomeDomain"_s, u"mixed/deep/x"_s, "home"},
                                       {u"MediaDomain"_s, u"mixed/y"_s, "media"},
                                       {u"AppDomain-com.example.q"_s, u"z"_s, "app"}}));
    const auto backup = fixture.opened();
    NoProgress progress;
    const auto node = [&](const QString &path) { return backup->tree().find(path); };
    const Report summary =
        extractNodes(*backup, {node(u"mixed"_s), node(u"Applications/com.example.q"_s)},
                     fixture.path(u"target"_s), progress);
    QCOMPARE(summary.done, 3);
    QCOMPARE(listing(fixture.path(u"target"_s)),
             QStringList({u"com.example.q"_s, u"com.example.q/z"_s, u"mixed"_s, u"mixed/deep"_s,
                          u"mixed/deep/x"_s, u"mixed/y"_s}));
}

void TestExtract::missingIsNoted()
{
    const BackupFixture fixture(small({{u"Odd"_s, u"a"_s, "a"}}));
    const Report summary = extractAll(
        fixture, {{"Odd", "b"}, {"NoDomain", ""}, {"HomeDomain", "Library/Caches/current"}, {"Odd", "a"}});
    QCOMPARE(summary.count(fileFailed), 2);
    QCOMPARE(summary.issues().first().where, u"Odd b"_s);
    QCOMPARE(summary.count(linkLeftOut), 1);
    QCOMPARE(listing(fixture.path(u"target"_s)), QStringList({u"a"_s}));
}

void TestExtract::cancelLeavesNothingHalf()
{
    const BackupFixture fixture(
        small({{u"Odd"_s, u"a"_s, QByteArray(100000, 'a')}, {u"Odd"_s, u"b"_s, QByteArray(100000, 'b')}}));
    const auto backup = fixture.opened();
    const QString target = fixture.path(u"target"_s);
    bool finished = false;
    for (int checks = 0; !finished && checks < 1000; ++checks) {
        QDir(target).removeRecursively();
        StopAfter progress(checks);
        try {
            extractFiles(*backup, {{"Odd", ""}}, target, progress);
            finished = true;
        } catch (const Cancelled &) {
        }
        const QStringList there = listing(target);
        for (const QString &name : there) {
            QVERIFY2(name == u"a" || name == u"b", qPrintable(name));
            QCOMPARE(QFileInfo(QDir(target).filePath(name)).size(), 100000);
        }
    }
    QVERIFY(finished);
    QCOMPARE(listing(target).size(), 2);
}

void TestExtract::fullDiskEndsTheJob()
{
    const BackupFixture fixture(small({{u"Odd"_s, u"a"_s, "huge"}, {u"Odd"_s, u"b"_s, "b"}}));
    const auto backup = fixture.opened();
    const auto index = backup->catalogue().find("Odd", "a");
    // A file with a hole that no disk here has room for; nothing of it is ever written.
    const qint64 size = qint64(8) << 40;
    QFile huge(backup->filePath(index));
    QVERIFY(huge.open(QIODevice::ReadWrite));
    const auto space = std::filesystem::space(fixture.folder().toStdString());
    if (space.available > std::uint64_t(size) || !huge.resize(size))
        QSKIP("The file system takes no file larger than itself.");
    NoProgress progress;
    const QString sentence = errorOf([&] {
        extractFiles(*backup, {{"Odd", ""}}, fixture.path(u"target"_s), progress);
    });
    QVERIFY2(sentence.contains(u"no room"_s) && sentence.contains(u"target/a"_s), qPrintable(sentence));
    QVERIFY(listing(fixture.path(u"target"_s)).isEmpty());
}

void TestExtract::badTargets()
{
    const BackupFixture fixture(small({{u"Odd"_s, u"a"_s, "a"}}));
    const auto backup = fixture.opened();
    writeFile(fixture.path(u"file"_s), "in the way");
    const QString before = fingerprint(fixture.folder());
    NoProgress progress;
    for (const QString &target : {fixture.path(u"file"_s), fixture.path(u"file/below"_s), fixture.folder(),
                                  fixture.folder() + u"/new/deep"_s, u"/proc/quillbarrow"_s}) {
        const QString sentence = errorOf([&] { extractFiles(*backup, {{"Odd", "a"}}, target, progress); });
        QVERIFY2(sentence.contains(target), qPrintable(target + u": "_s + sentence));
    }
    QCOMPARE(fingerprint(fixture.folder()), before);
    QCOMPARE(contentOf(fixture.path(u"file"_s)), QByteArray("in the way"));
}

void TestExtract::memoryTellsNoNames()
{
    const QTemporaryDir target;
    const QString path = appDataFolder().filePath(u"exports.db"_s);
    QFile::remove(path);
    {
        Sqlite3DB old; // as an earlier version kept it
        old.openThrow(path, SqliteOpen::ReadWriteCreate);
        QVERIFY(old.exec(u"create table exported(folder TEXT NOT NULL, place TEXT NOT NULL, source BLOB NOT NULL,"
                         " size INTEGER NOT NULL, PRIMARY KEY(folder, place)) without rowid"_s));
        old.executeThrow(Sqlite3Sql(u"insert into exported values(?, 'Letters/to the doctor.txt', x'aa', 7)"_s)
                             .addTextParam(QFileInfo(target.path()).canonicalFilePath()));
    }
    const auto sizeOf = [&](const QString &place) {
        const auto entry = ExportMemory(target.path()).at(place);
        return entry ? entry->sizeBytes : -1;
    };
    QCOMPARE(sizeOf(u"Letters/to the doctor.txt"_s), 7);
    ExportMemory(target.path()).remember(u"IMG_0001.JPG"_s, {"source", 9});
    QCOMPARE(sizeOf(u"IMG_0001.JPG"_s), 9);
    QCOMPARE(sizeOf(u"IMG_0002.JPG"_s), -1);
    const QByteArray kept = contentOf(path);
    for (const QByteArray &name : {QByteArray("doctor"), QByteArray("IMG_0001"), target.path().toUtf8()})
        QVERIFY2(!kept.contains(name), name.constData());
    QVERIFY(!(QFile::permissions(path) & (QFile::ReadGroup | QFile::ReadOther)));
}

QTEST_GUILESS_MAIN(TestExtract)
#include "tst_extract.moc"

#include "backup/backup_fixture.h"

#include "backup/cf_type.h"
#include "backup/mbdb_parser.h"
#include "sample/catalogue_record.h"
#include "sample/keyed_archive.h"
#include "support/database_pages.h"

#include <QTest>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

/// Catalogues of the newer and the older layout that are odd, damaged or forged.
class TestBadCatalogues : public QObject
{
    Q_OBJECT

private slots:
    void unusable_data();
    void unusable();
    void rows_data();
    void rows();
    void threeColumns();
    void damagedPages_data();
    void damagedPages();
    void truncatedDatabase();
    void truncatedMbdb();
    void lockedByAnotherProgram();
    void logBesideTheCatalogue();
    void cancelled();
};

namespace {
const char *const usualTable =
    "create table Files(fileID text primary key, domain text, relativePath text, flags integer, file blob);";

/// A file record of no particular file, as SQL writes it.
const QByteArray record =
    "x'" + sample::archivedFileRecord({}, sample::RecordLayout::RootFirst).toHex() + "'";

/// A backup folder whose Manifest.db is made by a script.
class Folder
{
public:
    Folder() { writeFile(path(u"Manifest.plist"_s), CFType::newDictionary().serialise(CFType::Format::Xml)); }

    QString path(const QString &name) const { return m_folder.filePath(name); }
    QString catalogue() const { return path(u"Manifest.db"_s); }
    void run(const QByteArray &script) const
    {
        Sqlite3DB db;
        db.openThrow(catalogue(), SqliteOpen::ReadWriteCreate);
        if (!db.exec(QString::fromUtf8(script)))
            qFatal("%s", qUtf8Printable(db.lastError()));
    }
    std::unique_ptr<BackupManifest> open() const
    {
        auto backup = std::make_unique<BackupManifest>(m_folder.path());
        backup->loadInfo();
        NoProgress progress;
        backup->buildIndex(progress);
        return backup;
    }

private:
    QTemporaryDir m_folder;
};
} // namespace

void TestBadCatalogues::unusable_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *name, const QByteArray &script, const QByteArray &bytes,
                        const char *reason) {
        QTest::newRow(name) << script << bytes << QString::fromLatin1(reason);
    };
    row("empty file", {}, {}, "empty");
    row("no database", {}, QByteArray(5000, 'x'), "not a database");
    row("header alone", {}, QByteArray("SQLite format 3\0", 16), "");
    row("no table", "create table Other(a);", {}, "no table Files");
    row("no domain", "create table Files(fileID, relativePath);", {}, "no column domain");
    row("no path", "create table Files(fileID, domain);", {}, "no column relativePath");
    row("a view that fails", "create view Files as select domain, relativePath from Nowhere;", {},
        "no table Files");
    row("a column that computes a gigabyte",
        "create table Files(fileID, domain, relativePath, file as (zeroblob(1000000000)));", {},
        "computed column, file");
}

void TestBadCatalogues::unusable()
{
    QFETCH(QByteArray, script);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, reason);
    const Folder folder;
    if (script.isEmpty())
        writeFile(folder.catalogue(), bytes);
    else
        folder.run(script);
    const QString sentence = errorOf([&] { folder.open(); });
    QVERIFY2(sentence.startsWith(folder.path({})) && sentence.contains(u"Manifest.db"_s) &&
                 sentence.contains(reason),
             qPrintable(sentence));
}

void TestBadCatalogues::rows_data()
{
    QTest::addColumn<QByteArray>("values");
    QTest::addColumn<int>("listed");
    QTest::addColumn<int>("skipped");
    QTest::addColumn<int>("leftOut");
    const auto row = [](const char *name, const QByteArray &values, int listed, int skipped,
                        int leftOut = 0) { QTest::newRow(name) << values << listed << skipped << leftOut; };
    row("no record", "'1','HomeDomain','a',1,null", 1, 1);
    row("record that is none", "'1','HomeDomain','a',1,x'0102'", 1, 1);
    row("record of another kind", "'1','HomeDomain','a',1,17", 1, 1);
    row("empty domain", "'1','','a',1,null", 0, 0, 1);
    row("no domain", "'1',null,'a',1,null", 0, 1);
    row("no domain and no path", "'1',null,null,16,null", 0, 0);
    row("no path", "'1','HomeDomain',null,2," + record, 1, 0);
    row("path as a number", "'1','HomeDomain',12,2," + record, 1, 0);
    row("path of no UTF-8", "'1','HomeDomain',cast(x'ff00fe' as text),2," + record, 1, 0);
    row("longest path", "'1','HomeDomain',printf('%.4086c','x'),1," + record, 1, 0);
    row("path too long", "'1','HomeDomain',printf('%.4087c','x'),1," + record, 0, 1);
    row("as deep as can be", "'1','HomeDomain',replace(printf('%.256c','x'),'x','x/')||'y',1," + record, 1,
        0);
    row("too deep", "'1','HomeDomain',replace(printf('%.257c','x'),'x','x/')||'y',1," + record, 0, 1);
    row("same file twice", "'1','HomeDomain','a',1," + record + "),('2','HomeDomain','a',1," + record, 1, 0);
    row("wrong id", "'ffff','HomeDomain','a',1," + record, 1, 0);
}

void TestBadCatalogues::rows()
{
    QFETCH(QByteArray, values);
    const Folder folder;
    folder.run(usualTable + QByteArray("insert into Files values(") + values + ");" +
               "insert into Files values('z','HomeDomain','good',1," + record + ")");
    const auto backup = folder.open();
    const auto good = backup->catalogue().find("HomeDomain", "good");
    QVERIFY(good != FileCatalogue::none);
    QTEST(int(backup->catalogue().size()) - 1, "listed");
    QTEST(int(backup->report().count(IssueKind::Damaged)), "skipped");
    QTEST(int(backup->report().count(IssueKind::LeftOut)), "leftOut");
    QVERIFY(backup->filePath(good).endsWith(QString::fromLatin1(fileId("HomeDomain", "good"))));
}

// Without file records nothing tells a folder but what lies below it.
void TestBadCatalogues::threeColumns()
{
    const Folder folder;
    folder.run(
        "create table Files(fileID, domain, relativePath);"
        "insert into Files values('1','HomeDomain','a/b/c'),('2','HomeDomain','a'),('3','HomeDomain','d'),"
        "('4','AppDomain-x','')");
    const auto backup = folder.open();
    const FileCatalogue &catalogue = backup->catalogue();
    QCOMPARE(catalogue.size(), 4U);
    QVERIFY(catalogue.isDirectory(catalogue.find("HomeDomain", "a")));
    QVERIFY(!catalogue.isDirectory(catalogue.find("HomeDomain", "a/b/c")));
    QVERIFY(!catalogue.isDirectory(catalogue.find("HomeDomain", "d")));
    QVERIFY(backup->tree().isFolder(backup->tree().find(u"a/b"_s)));
    QVERIFY(!backup->hasContent({u"HomeDomain"_s, u"d"_s}));
}

void TestBadCatalogues::damagedPages_data()
{
    using Damage =
        std::function<void(DatabasePages &, const QList<qint64> &leaves, const QList<qint64> &index)>;
    QTest::addColumn<Damage>("damage");
    QTest::addColumn<bool>("isLost");    // what stood on one page
    QTest::addColumn<bool>("isCounted"); // an index can tell how many
    const auto row = [](const char *name, bool isLost, bool isCounted, const Damage &damage) {
        QTest::newRow(name) << damage << isLost << isCounted;
    };
    using Leaves = const QList<qint64> &;
    row("a page in the middle", true, true,
        [](DatabasePages &pages, Leaves leaves, Leaves) { pages.destroy(leaves.at(leaves.size() / 2)); });
    row("a page in the middle and the index", true, false,
        [](DatabasePages &pages, Leaves leaves, Leaves index) {
            pages.destroy(leaves.at(leaves.size() / 2));
            pages.destroy(index.first());
        });
    row("a page twice", true, true, [](DatabasePages &pages, Leaves leaves, Leaves) {
        pages.setPage(leaves.at(3), pages.page(leaves.at(4)));
    });
    row("two pages swapped", false, true, [](DatabasePages &pages, Leaves leaves, Leaves) {
        const QByteArray third = pages.page(leaves.at(3));
        pages.setPage(leaves.at(3), pages.page(leaves.at(4)));
        pages.setPage(leaves.at(4), third);
    });
    row("an emptied page", true, true, [](DatabasePages &pages, Leaves leaves, Leaves) {
        pages.bytes.replace((leaves.at(3) - 1) * pages.pageSize + 3, 2, QByteArray(2, '\0'));
    });
    row("the index alone", false, false,
        [](DatabasePages &pages, Leaves, Leaves index) { pages.destroy(index.first()); });
}

void TestBadCatalogues::damagedPages()
{
    using Damage =
        std::function<void(DatabasePages &, const QList<qint64> &leaves, const QList<qint64> &index)>;
    QFETCH(Damage, damage);
    QFETCH(bool, isLost);
    QFETCH(bool, isCounted);
    constexpr int files = 2000;
    const Folder folder;
    folder.run("pragma page_size=4096;" + QByteArray(usualTable) +
               "with n(i) as (select 1 union all select i+1 from n where i<2000) "
               "insert into Files select i,'HomeDomain','file'||i,1," +
               record + " from n");
    const qint64 table = rootPageOf(folder.catalogue(), u"Files"_s);
    const qint64 index = rootPageOf(folder.catalogue(), u"sqlite_autoindex_Files_1"_s);
    int onPage = 0;
    {
        DatabasePages pages(folder.catalogue());
        const QList<qint64> leaves = DatabaseTree(pages, table).leaves;
        onPage = int(pages.numberAt(leaves.at(3), 3, 2));
        damage(pages, leaves, DatabaseTree(pages, index).leaves);
    }
    const auto backup = folder.open();
    const int lost = files - int(backup->catalogue().size());
    QVERIFY2(isLost ? lost > 0 && std::abs(lost - onPage) <= 1 : lost == 0,
             qPrintable(QString::number(lost)));
    QCOMPARE(backup->report().count("IDS_ISSUE_CATALOGUE_ROWS_DAMAGED"), isCounted ? lost : 0);
    QCOMPARE(backup->report().count("IDS_ISSUE_CATALOGUE_DAMAGED"), isCounted ? 0 : 1);
    QCOMPARE(backup->report().issues().size(), isLost || !isCounted ? 1 : 0);
}

// What can still be read is what is left of somebody's data.
void TestBadCatalogues::truncatedDatabase()
{
    const Folder folder;
    folder.run("pragma page_size=1024;" + QByteArray(usualTable) +
               "with n(i) as (select 1 union all select i+1 from n where i<2000) "
               "insert into Files select i,'HomeDomain','file'||i,1," +
               record + " from n");
    const QByteArray whole = contentOf(folder.catalogue());
    int refused = 0;
    int kept = 0;
    for (qsizetype size = whole.size() - 1024; size >= 0; size -= 1024 * 100) {
        writeFile(folder.catalogue(), whole.first(size));
        std::unique_ptr<BackupManifest> backup;
        const QString sentence = errorOf([&] { backup = folder.open(); });
        if (!backup) {
            QVERIFY2(sentence.contains(u"Manifest.db"_s), qPrintable(sentence));
            ++refused;
            continue;
        }
        QVERIFY(backup->catalogue().size() <= 2000);
        if (backup->catalogue().size() < 2000) {
            ++kept;
            const Report report = backup->report();
            QCOMPARE(report.count("IDS_ISSUE_CATALOGUE_DAMAGED"), 1);
            QVERIFY(std::all_of(report.issues().begin(), report.issues().end(),
                                [](const Issue &issue) { return issue.where == u"Manifest.db"_s; }));
        }
    }
    QVERIFY(kept > 0 && refused > 0);
}

void TestBadCatalogues::truncatedMbdb()
{
    const Folder folder;
    FileRecord record;
    record.domain = "HomeDomain";
    record.relativePath = "a";
    FileRecord other = record;
    other.relativePath = "b";
    const QByteArray one = MBDBParser::serialise({record});
    const QByteArray both = MBDBParser::serialise({record, other});
    const QString path = folder.path(u"Manifest.mbdb"_s);
    for (qsizetype size = 0; size <= both.size(); ++size) {
        writeFile(path, both.first(size));
        std::unique_ptr<BackupManifest> backup;
        const QString sentence = errorOf([&] { backup = folder.open(); });
        if (size < one.size() && size != 6) {
            QVERIFY2(sentence.contains(u"Manifest.mbdb"_s), qPrintable(sentence));
            continue;
        }
        QVERIFY2(backup, qPrintable(sentence));
        QCOMPARE(backup->catalogue().size(), size == 6 ? 0U : size < both.size() ? 1U : 2U);
        QCOMPARE(backup->report().count(IssueKind::Damaged),
                 size == 6 || size == one.size() || size == both.size() ? 0 : 1);
    }
}

// Reading takes no lock, so that of another program does not matter, and asks nobody to write beside it.
void TestBadCatalogues::lockedByAnotherProgram()
{
    const Folder folder;
    folder.run(usualTable + QByteArray("insert into Files values('1','HomeDomain','a',1,null)"));
    Sqlite3DB other;
    other.openThrow(folder.catalogue(), SqliteOpen::ReadWrite);
    QVERIFY(other.exec(u"begin exclusive"_s));
    QCOMPARE(folder.open()->catalogue().size(), 1U);
}

void TestBadCatalogues::logBesideTheCatalogue()
{
    const Folder folder;
    folder.run(usualTable + QByteArray("insert into Files values('1','HomeDomain','a',1,") + record +
               ");pragma journal_mode=wal");
    Folder copy;
    {
        Sqlite3DB writer;
        writer.openThrow(folder.catalogue(), SqliteOpen::ReadWrite);
        QVERIFY(writer.exec(u"insert into Files select '2',domain,'b',flags,file from Files"_s));
        writeFile(copy.catalogue(), contentOf(folder.catalogue()));
        writeFile(copy.catalogue() + u"-wal"_s, contentOf(folder.catalogue() + u"-wal"_s));
    }
    const QString before = fingerprint(QFileInfo(copy.catalogue()).path());
    QCOMPARE(copy.open()->catalogue().size(), 2U);
    QVERIFY(copy.open()->report().isEmpty());
    QCOMPARE(fingerprint(QFileInfo(copy.catalogue()).path()), before);
    const QString log = copy.catalogue() + u"-wal"_s;
    const auto tellsOfTheLoss = [&] {
        const auto backup = copy.open();
        return backup->catalogue().size() == 1 && backup->report().count("IDS_ISSUE_DATABASE_LOG") == 1;
    };
    // What an earlier log left behind the end of this one is no loss.
    const QByteArray whole = contentOf(log);
    writeFile(log, whole + QByteArray(5000, 'x'));
    QVERIFY(copy.open()->report().isEmpty());
    QVERIFY(QFile::resize(log, whole.size() - 1));
    QVERIFY(tellsOfTheLoss());
    writeFile(log, "no log at all");
    QVERIFY(tellsOfTheLoss());
    QFile::remove(log);
    QVERIFY(QFile::link(copy.catalogue(), log));
    QVERIFY(tellsOfTheLoss());
    QFile::remove(log);
    QVERIFY(QFile::link(u"nowhere"_s, log));
    QVERIFY(tellsOfTheLoss());
    // A header that speaks of a log is no reason to look for one.
    QFile::remove(log);
    QCOMPARE(copy.open()->catalogue().size(), 1U);
    QCOMPARE(listing(QFileInfo(copy.catalogue()).path()),
             QStringList({u"Manifest.db"_s, u"Manifest.plist"_s}));
}

void TestBadCatalogues::cancelled()
{
    class Stopped : public NoProgress
    {
    public:
        bool isCancelled() const override { return true; }
    };
    const Folder folder;
    folder.run(usualTable + QByteArray("insert into Files values('1','HomeDomain','a',1,null)"));
    BackupManifest backup(QFileInfo(folder.catalogue()).path());
    backup.loadInfo();
    Stopped stopped;
    QVERIFY_EXCEPTION_THROWN(backup.buildIndex(stopped), Cancelled);
    QVERIFY(!backup.hasIndex());
    NoProgress progress;
    backup.buildIndex(progress);
    QCOMPARE(backup.catalogue().size(), 1U);
}

QTEST_GUILESS_MAIN(TestBadCatalogues)
#include "tst_bad_catalogues.moc"

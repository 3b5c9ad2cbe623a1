#include "base/progress.h"
#include "base/report.h"
#include "sqlite/foreign_guard.h"
#include "sqlite/read_rows.h"
#include "support/database_pages.h"

#include <QTemporaryDir>
#include <QTest>

#include <map>

using namespace Qt::StringLiterals;

namespace {
constexpr qint64 pageSize = 1024;
constexpr int rowCount = 3000;
constexpr int rowsBetweenLongOnes = 50;
constexpr qint64 farRowid =
    1'000'000'000'000; // of every row from the 2501st on, as other tables number theirs
const QByteArray longMark(3000, 'L');

qint64 rowidOf(int row)
{
    return row <= 2500 ? row : farRowid + row;
}

using Rows = std::map<qint64, QString>; // text by row id

/// What one statement for each row id still gets out of the table.
Rows readOneByOne(const Sqlite3DB &db)
{
    Rows rows;
    Sqlite3Cursor row = db.queryThrow(u"select text,body from message not indexed where rowid=?"_s);
    for (int number = 1; number <= rowCount; ++number) {
        row.rebind(Sqlite3Sql().addInt64Param(rowidOf(number)));
        try {
            if (row.moveNext())
                rows[rowidOf(number)] = row.getText(0);
        } catch (const Error &) {
        }
    }
    return rows;
}
} // namespace

class TestReadRows : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void wholeTable();
    void damage_data();
    void damage();
    void swappedPages();
    void joinsFromTheirIndex();
    void hopelessTable();
    void byId();
    void missingParts();
    void noTable_data();
    void noTable();
    void endlessStatement();
    void stopped();

private:
    QTemporaryDir m_folder;
    QString m_whole = m_folder.filePath(u"whole.db"_s);
    QString m_path = m_folder.filePath(u"damaged.db"_s);

    static PrepareRows into(Rows &rows);
};

void TestReadRows::initTestCase()
{
    Sqlite3DB db;
    db.openThrow(m_whole, SqliteOpen::ReadWriteCreate);
    QVERIFY(
        db.exec(u"pragma page_size=%1; create table message(id integer primary key, text, date, body);"
                "create index by_date on message(date);"
                "create table chat_message_join(chat_id, message_id, primary key(chat_id, message_id))"_s.arg(
                    pageSize)));
    Sqlite3Transaction transaction(db);
    for (int row = 1; row <= rowCount; ++row) {
        db.executeCachedThrow(Sqlite3Sql(u"insert into message values(?,?,?,?)"_s)
                                  .addInt64Param(rowidOf(row))
                                  .addTextParam(u"text %1 "_s.arg(row) + QString(row % 90, u'x'))
                                  .addIntParam(rowCount - row)
                                  .addBlobParam(row % rowsBetweenLongOnes == 0 ? longMark : QByteArray()));
        db.executeCachedThrow(Sqlite3Sql(u"insert into chat_message_join values(?,?)"_s)
                                  .addIntParam(row % 7)
                                  .addInt64Param(rowidOf(row)));
    }
    transaction.commit();
}

void TestReadRows::init()
{
    QFile::remove(m_path);
    QVERIFY(QFile::copy(m_whole, m_path));
}

PrepareRows TestReadRows::into(Rows &rows)
{
    return [&rows](const Sqlite3Cursor &row) {
        return [&rows, &row, text = row.columnIndex(u"text"_s)] {
            QVERIFY2(!rows.contains(row.getInt64(0)), "a row came twice");
            rows[row.getInt64(0)] = row.getText(text);
        };
    };
}

void TestReadRows::wholeTable()
{
    Sqlite3DB db;
    db.openForeign(m_path);
    Report report;
    Rows rows;
    const RowsRead read = readRows(db, {u"message"_s, {u"text"_s, u"body"_s}}, report, into(rows));
    QCOMPARE(read.rows, rowCount);
    QVERIFY(read.isWhole && read.lost == 0 && report.isEmpty());
    QVERIFY(rows == readOneByOne(db));
}

void TestReadRows::damage_data()
{
    using Damage =
        std::function<void(DatabasePages &, const DatabaseTree &message, const DatabaseTree &index)>;
    QTest::addColumn<Damage>("damage");
    QTest::addColumn<bool>("isCounted"); // the index can tell how many are lost
    const auto row = [](const char *name, const Damage &damage, bool isCounted = true) {
        QTest::newRow(name) << damage << isCounted;
    };
    row("first leaf", [](DatabasePages &pages, const DatabaseTree &tree, const DatabaseTree &) {
        pages.destroy(tree.leaves.first());
    });
    row("last leaf", [](DatabasePages &pages, const DatabaseTree &tree, const DatabaseTree &) {
        pages.destroy(tree.leaves.last());
    });
    row("a leaf in the middle", [](DatabasePages &pages, const DatabaseTree &tree, const DatabaseTree &) {
        pages.destroy(tree.leaves.at(100));
    });
    row("a leaf of zeros", [](DatabasePages &pages, const DatabaseTree &tree, const DatabaseTree &) {
        pages.setPage(tree.leaves.at(60), QByteArray(pageSize, '\0'));
    });
    row("first and last leaf", [](DatabasePages &pages, const DatabaseTree &tree, const DatabaseTree &) {
        pages.destroy(tree.leaves.first());
        pages.destroy(tree.leaves.last());
    });
    row("two leaves side by side", [](DatabasePages &pages, const DatabaseTree &tree, const DatabaseTree &) {
        pages.destroy(tree.leaves.at(30));
        pages.destroy(tree.leaves.at(31));
    });
    row("every tenth leaf", [](DatabasePages &pages, const DatabaseTree &tree, const DatabaseTree &) {
        for (qsizetype leaf = 5; leaf < tree.leaves.size(); leaf += 10)
            pages.destroy(tree.leaves.at(leaf));
    });
    row("every other leaf", [](DatabasePages &pages, const DatabaseTree &tree, const DatabaseTree &) {
        for (qsizetype leaf = 1; leaf < tree.leaves.size(); leaf += 2)
            pages.destroy(tree.leaves.at(leaf));
    });
    row("first half of the leaves", [](DatabasePages &pages, const DatabaseTree &tree, const DatabaseTree &) {
        for (qsizetype leaf = 0; leaf < tree.leaves.size() / 2; ++leaf)
            pages.destroy(tree.leaves.at(leaf));
    });
    row("last half of the leaves", [](DatabasePages &pages, const DatabaseTree &tree, const DatabaseTree &) {
        for (qsizetype leaf = tree.leaves.size() / 2; leaf < tree.leaves.size(); ++leaf)
            pages.destroy(tree.leaves.at(leaf));
    });
    row("all leaves but one", [](DatabasePages &pages, const DatabaseTree &tree, const DatabaseTree &) {
        for (qsizetype leaf = 0; leaf < tree.leaves.size(); ++leaf)
            if (leaf != 77)
                pages.destroy(tree.leaves.at(leaf));
    });
    row("an inner page", [](DatabasePages &pages, const DatabaseTree &tree, const DatabaseTree &) {
        pages.destroy(tree.inner.at(1));
    });
    row("first and last inner page",
        [](DatabasePages &pages, const DatabaseTree &tree, const DatabaseTree &) {
            pages.destroy(tree.inner.first());
            pages.destroy(tree.inner.last());
        });
    row("an inner page turned into a leaf",
        [](DatabasePages &pages, const DatabaseTree &tree, const DatabaseTree &) {
            pages.setPage(tree.inner.at(1), pages.page(tree.leaves.at(3)));
        });
    row("a leaf of the index in its place",
        [](DatabasePages &pages, const DatabaseTree &tree, const DatabaseTree &index) {
            pages.setPage(tree.leaves.at(40), pages.page(index.leaves.at(4)));
        });
    row("overflow pages of one row", [](DatabasePages &pages, const DatabaseTree &, const DatabaseTree &) {
        const qint64 page = pages.bytes.indexOf(QByteArray(pageSize - 4, 'L')) / pageSize + 1;
        pages.setPage(page, QByteArray(4, '\xff') + QByteArray(pageSize - 4, 'L'));
    });
    row(
        "a leaf and a page of the index",
        [](DatabasePages &pages, const DatabaseTree &tree, const DatabaseTree &index) {
            pages.destroy(tree.leaves.at(100));
            pages.destroy(index.leaves.at(7));
        },
        false);
    row("index alone", [](DatabasePages &pages, const DatabaseTree &, const DatabaseTree &index) {
        pages.destroy(index.leaves.at(2));
    });
    for (const int percent : {90, 60, 30})
        row(
            qPrintable(u"cut off at %1 %"_s.arg(percent)),
            [percent](DatabasePages &pages, const DatabaseTree &, const DatabaseTree &) {
                pages.bytes.truncate(pages.bytes.size() * percent / 100 / pageSize * pageSize);
            },
            false);
}

void TestReadRows::damage()
{
    using Damage = std::function<void(DatabasePages &, const DatabaseTree &, const DatabaseTree &)>;
    QFETCH(Damage, damage);
    QFETCH(bool, isCounted);
    {
        DatabasePages pages(m_path);
        damage(pages, DatabaseTree(pages, rootPageOf(m_whole, u"message"_s)),
               DatabaseTree(pages, rootPageOf(m_whole, u"by_date"_s)));
    }
    Sqlite3DB db;
    db.openForeign({m_path, u"HomeDomain sms.db"_s});
    const Rows expected = readOneByOne(db);
    Report report;
    Rows rows;
    const TableRows what{u"message"_s, {u"text"_s, u"body"_s}, {}, TableRows::Need::Expected};
    const RowsRead read = readRows(db, what, report, into(rows));
    QCOMPARE(rows.size(), expected.size());
    QVERIFY(rows == expected);
    QCOMPARE(read.rows, qint64(rows.size()));
    const qint64 lost = rowCount - read.rows;
    QCOMPARE(read.isWhole, lost == 0);
    QCOMPARE(read.lost, isCounted ? lost : 0);
    QCOMPARE(report.issues().size(), lost == 0 ? 0 : 1);
    if (lost > 0) {
        QVERIFY(report.isFailure());
        QCOMPARE(report.issues().first().where, u"HomeDomain sms.db"_s);
        QCOMPARE(report.count(IssueKind::Damaged), isCounted ? lost : 0);
    }
}

// One statement for each row misses what stands in another place than its own; a walk over the pages does
// not.
void TestReadRows::swappedPages()
{
    {
        DatabasePages pages(m_path);
        const DatabaseTree tree(pages, rootPageOf(m_whole, u"message"_s));
        const QByteArray page = pages.page(tree.leaves.at(20));
        pages.setPage(tree.leaves.at(20), pages.page(tree.leaves.at(90)));
        pages.setPage(tree.leaves.at(90), page);
        pages.setPage(tree.leaves.at(110), pages.page(tree.leaves.at(50)));
    }
    Sqlite3DB db;
    db.openForeign(m_path);
    Report report;
    Rows rows;
    const RowsRead read = readRows(db, {u"message"_s, {u"text"_s}}, report, into(rows));
    QVERIFY(read.rows > qint64(readOneByOne(db).size()));
    QCOMPARE(read.rows + read.lost, rowCount);
    QVERIFY(read.lost > 0 && report.isFailure());
}

void TestReadRows::joinsFromTheirIndex()
{
    {
        DatabasePages pages(m_path);
        const DatabaseTree tree(pages, rootPageOf(m_whole, u"chat_message_join"_s));
        pages.destroy(tree.leaves.at(3));
        pages.destroy(tree.leaves.last());
    }
    Sqlite3DB db;
    db.openForeign(m_path);
    Report report;
    QSet<std::pair<qint64, qint64>> joins;
    const RowsRead read = readRows(db, {u"chat_message_join"_s, {u"chat_id"_s, u"message_id"_s}}, report,
                                   [&](const Sqlite3Cursor &row) {
                                       return [&] { joins.insert({row.getInt64(1), row.getInt64(2)}); };
                                   });
    QCOMPARE(joins.size(), rowCount);
    QCOMPARE(read.rows, rowCount);
    QVERIFY(read.isWhole && report.isEmpty());
}

void TestReadRows::hopelessTable()
{
    {
        DatabasePages pages(m_path);
        pages.destroy(rootPageOf(m_whole, u"message"_s));
    }
    Sqlite3DB db;
    db.openForeign({m_path, u"HomeDomain sms.db"_s});
    Rows rows;
    Report report;
    TableRows what{u"message"_s, {u"text"_s}};
    try {
        readRows(db, what, report, into(rows));
        QFAIL("read all the same");
    } catch (const Error &error) {
        QCOMPARE(error.kind(), ErrorKind::Damaged);
        QCOMPARE(error.where(), u"HomeDomain sms.db"_s);
    }
    what.need = TableRows::Need::Expected;
    QCOMPARE(readRows(db, what, report, into(rows)).lost, rowCount);
    QVERIFY(report.isFailure());
}

void TestReadRows::byId()
{
    {
        DatabasePages pages(m_path);
        const DatabaseTree tree(pages, rootPageOf(m_whole, u"message"_s));
        pages.destroy(tree.leaves.first());
    }
    Sqlite3DB db;
    db.openForeign(m_path);
    Report report;
    Rows rows;
    const RowsRead read =
        readRowsById(db, {u"message"_s, {u"text"_s}}, {1, 2000, 2600, rowidOf(2600)}, report, into(rows));
    QCOMPARE(read.rows, 2);
    QCOMPARE(read.lost, 1);
    QVERIFY(rows.contains(2000) && rows.contains(rowidOf(2600)));
    QCOMPARE(report.count("IDS_ISSUE_ROWS_DAMAGED"), 1);
}

void TestReadRows::missingParts()
{
    Sqlite3DB db;
    db.openForeign(m_path);
    Report report;
    qint64 texts = 0;
    const TableRows what{u"message"_s, {u"text"_s, u"birthday_id"_s}, {u"url"_s}};
    readRows(db, what, report, [&](const Sqlite3Cursor &row) {
        return [&] { texts += !row.getText(1).isEmpty() && row.isNull(2) && row.isNull(3) ? 1 : 0; };
    });
    QCOMPARE(texts, rowCount);
    QCOMPARE(report.issues().size(), 1);
    QVERIFY(report.issues().first().reason.contains(u"birthday_id"_s));

    TableRows absent{u"Location"_s, {u"title"_s}, {}, TableRows::Need::Optional};
    QVERIFY(!readRows(db, absent, report, {}).isWhole);
    QCOMPARE(report.issues().size(), 1);
    absent.need = TableRows::Need::Expected;
    readRows(db, absent, report, {});
    QCOMPARE(report.count("IDS_ISSUE_TABLE_UNREADABLE"), 1);
    absent.need = TableRows::Need::Essential;
    QVERIFY_EXCEPTION_THROWN(readRows(db, absent, report, {}), Error);
}

void TestReadRows::noTable_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("sentence");
    const QString name = u"HomeDomain Library/Notes/notes.sqlite"_s;
    QTest::newRow("view") << u"create view ZNOTE as select 1 as x"_s
                          << u"the table ZNOTE of %1 is a view"_s.arg(name);
    QTest::newRow("endless view")
        << u"create view ZNOTE as with recursive c(x) as (select 1 union all select x+1 from c) select x from c"_s
        << u"the table ZNOTE of %1 is a view"_s.arg(name);
    QString nested = u"create view v0 as select 1 as x;"_s;
    for (int depth = 1; depth < 40; ++depth)
        nested += u"create view v%1 as select a.x from v%2 as a, v%2 as b;"_s.arg(depth).arg(depth - 1);
    QTest::newRow("views that unfold") << nested + u"create view ZNOTE as select x from v39"_s
                                       << u"the table ZNOTE of %1 is a view"_s.arg(name);
    QTest::newRow("virtual table") << u"create virtual table ZNOTE using rtree(x, a, b)"_s
                                   << u"the table ZNOTE of %1 is a virtual table"_s.arg(name);
    QTest::newRow("column of 1 GB")
        << u"create table ZNOTE(a, x as (zeroblob(1000000000))); insert into ZNOTE(a) values(1)"_s
        << u"the table ZNOTE of %1 has a computed column, x"_s.arg(name);
    QTest::newRow("a default for every row")
        << u"create table ZNOTE(a); alter table ZNOTE add column x default '%1'"_s.arg(QString(100'000, u'x'))
        << u"the table ZNOTE of %1 has an oversized value in place of missing ones, x"_s.arg(name);
}

void TestReadRows::noTable()
{
    QFETCH(QString, script);
    QFETCH(QString, sentence);
    const QString path = m_folder.filePath(u"forged.db"_s);
    QFile::remove(path);
    {
        Sqlite3DB db;
        db.openThrow(path, SqliteOpen::ReadWriteCreate);
        QVERIFY(db.exec(script));
    }
    Sqlite3DB db;
    db.openForeign({path, u"HomeDomain Library/Notes/notes.sqlite"_s});
    const auto failureOf = [](auto action) {
        try {
            action();
        } catch (const Error &error) {
            return error.kind() == ErrorKind::Damaged ? error.sentence() : QString();
        }
        return QString();
    };
    Report report;
    QCOMPARE(failureOf([&] { db.queryThrow(u"select count(*) from ZNOTE"_s); }), sentence);
    QCOMPARE(
        failureOf([&] { db.queryThrow(u"select 1 from sqlite_master, \"znote\" where x=1"_s); }).toLower(),
        sentence.toLower());
    QCOMPARE(failureOf([&] { readRows(db, {u"ZNOTE"_s, {u"x"_s}}, report, {}); }), sentence);
    TableRows optional{u"ZNOTE"_s, {u"x"_s}, {}, TableRows::Need::Optional};
    readRows(db, optional, report, {});
    QVERIFY(report.isFailure());
}

void TestReadRows::endlessStatement()
{
    Sqlite3DB db;
    db.openForeign({m_path, u"HomeDomain sms.db"_s});
    try {
        db.executeThrow(
            u"with recursive c(x) as (select 1 union all select x+1 from c) select count(*) from c"_s);
        QFAIL("ended");
    } catch (const Error &error) {
        QCOMPARE(error.sentence(), u"can not read HomeDomain sms.db. A statement on it does not end."_s);
        QCOMPARE(error.kind(), ErrorKind::Damaged);
    }
    // The next statement has all its steps again.
    Report report;
    QCOMPARE(countRows(db, {u"message"_s, {}}, report), rowCount);
}

void TestReadRows::stopped()
{
    struct : NoProgress
    {
        mutable int questions = 0;
        bool isCancelled() const override { return ++questions > 3; }
    } progress;
    Sqlite3DB db;
    db.openForeign(m_path);
    const QString endless =
        u"with recursive c(x) as (select 1 union all select x+1 from c) select count(*) from c"_s;
    const StatementStop stop(progress);
    QVERIFY_EXCEPTION_THROWN(db.executeThrow(endless), Cancelled);
    QCOMPARE(progress.questions, 4);
}

QTEST_APPLESS_MAIN(TestReadRows)
#include "tst_read_rows.moc"

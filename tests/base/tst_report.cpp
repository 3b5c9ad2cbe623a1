#include "base/error.h"
#include "base/report.h"
#include "base/texts.h"
#include "resources/resources.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {
const char *rows = "IDS_ISSUE_ROWS_DAMAGED";
const char *hidden = "IDS_ISSUE_SYSTEM_ITEMS";
} // namespace

class TestReport : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void equalIssuesAreOneWithANumber();
    void placesOfOneKindAreOneSentence();
    void onlySomeKindsAreFailures_data();
    void onlySomeKindsAreFailures();
    void textsFromTheSourceStayAsTheyAre();
    void errorsKeepTheirKind();
    void fileErrorsHaveAKind();
};

void TestReport::initTestCase()
{
    initResources();
    installTexts();
}

void TestReport::equalIssuesAreOneWithANumber()
{
    Report report;
    report.add({.kind = IssueKind::Damaged, .what = rows, .where = u"HomeDomain a"_s, .reason = u"why"_s});
    report.add({.kind = IssueKind::Damaged, .what = rows, .where = u"HomeDomain a"_s, .count = 2, .reason = u"why"_s});
    Report both;
    both.done = 1;
    both.merge(report);
    both.merge(report);
    QCOMPARE(both.issues().size(), 1);
    QCOMPARE(both.issues().first().count, 6);
    QCOMPARE(sentencesOf(both), QStringList{u"6 rows of HomeDomain a cannot be read: why"_s});
    QCOMPARE(both.count(IssueKind::Damaged), 6);
    QCOMPARE(both.count(IssueKind::Absent), 0);
}

void TestReport::placesOfOneKindAreOneSentence()
{
    Report report;
    report.add({.kind = IssueKind::Hidden, .what = hidden});
    for (const char *name : {"a", "b", "c", "d", "e", "f", "g"})
        report.add({.kind = IssueKind::Damaged, .what = rows, .where = QLatin1String(name), .reason = u"why"_s});
    QCOMPARE(sentencesOf(report, EverythingHint::Option),
             (QStringList{u"7 rows of a, b, c, d, e and 2 more cannot be read: why"_s,
                          u"1 system item is left out (--everything brings it in)"_s}));
    QCOMPARE(problemsOf(report), QStringList{u"7 rows of a, b, c, d, e and 2 more cannot be read: why"_s});
}

void TestReport::onlySomeKindsAreFailures_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<bool>("failure");
    const QList<std::pair<IssueKind, bool>> kinds{
        {IssueKind::Damaged, true}, {IssueKind::Locked, true},  {IssueKind::Refused, true},
        {IssueKind::Hidden, false}, {IssueKind::LeftOut, false}, {IssueKind::Absent, false},
        {IssueKind::Renamed, false}, {IssueKind::Remark, false}};
    for (const auto &[kind, failure] : kinds)
        QTest::addRow("%d", static_cast<int>(kind)) << static_cast<int>(kind) << failure;
}

void TestReport::onlySomeKindsAreFailures()
{
    QFETCH(int, kind);
    Report report;
    report.add({.kind = static_cast<IssueKind>(kind), .what = rows});
    QTEST(report.isFailure(), "failure");
    QCOMPARE(problemsOf(report).size(), report.isFailure() ? 1 : 0);
}

void TestReport::textsFromTheSourceStayAsTheyAre()
{
    const Issue issue{.what = rows, .where = u"100%2 %n"_s, .reason = u"%1"_s};
    QCOMPARE(sentenceOf(issue), u"1 row of 100%2 %n cannot be read: %1"_s);
}

void TestReport::errorsKeepTheirKind()
{
    const Error error = Error(u"no"_s, ErrorKind::NoSpace, FileAccess::Writing).at(u"HomeDomain x"_s).withContext(u"y"_s);
    QCOMPARE(error.kind(), ErrorKind::NoSpace);
    QVERIFY(error.isWriting());
    QCOMPARE(error.where(), u"HomeDomain x"_s);
    QCOMPARE(error.sentence(), u"y: no"_s);

    Report report;
    report.add(rows, error);
    report.add(rows, Error(u"z"_s, ErrorKind::Locked));
    report.add(rows, Error(u"z"_s, ErrorKind::Damaged, FileAccess::Reading));
    QCOMPARE(report.count(IssueKind::Refused), 1);
    QCOMPARE(report.count(IssueKind::Locked), 1);
    QCOMPARE(report.count(IssueKind::Damaged), 1);
}

void TestReport::fileErrorsHaveAKind()
{
    QFile absent(u"/nowhere/at all"_s);
    QVERIFY(!absent.open(QIODevice::ReadOnly));
    const Error error = Error::ofFile(u"can not open %1. %2"_s, absent, FileAccess::Reading);
    QCOMPARE(error.kind(), ErrorKind::NotFound);
    QVERIFY(error.sentence().startsWith(u"can not open /nowhere/at all. "_s));

    QFile full(u"/dev/full"_s);
    QVERIFY(full.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    QCOMPARE(full.write("x"), -1);
    QCOMPARE(Error::ofFile(u"%1 %2"_s, full, FileAccess::Writing).kind(), ErrorKind::NoSpace);
}

QTEST_GUILESS_MAIN(TestReport)
#include "tst_report.moc"

#include "base/report.h"
#include "address_book.h"
#include "personal/ios_call_history_db.h"

#include <QTest>

namespace {
Report heard; // what the readers tell, in tests that do not ask for it

const SourceFile olderFile{QStringLiteral("WirelessDomain"),
                           QStringLiteral("Library/CallHistory/call_history.db")};
const SourceFile newerFile{QStringLiteral("HomeDomain"),
                           QStringLiteral("Library/CallHistoryDB/CallHistory.storedata")};

/// The older database; without a version when that is 0.
QString olderCalls(int version, bool hasAnswered, const QString &rows)
{
    return QStringLiteral("create table call(ROWID INTEGER PRIMARY KEY, address TEXT, date INTEGER, duration "
                          "INTEGER, flags INTEGER%1);")
               .arg(hasAnswered ? QStringLiteral(", answered INTEGER") : QString()) +
           QStringLiteral("create table _SqliteDatabaseProperties(key TEXT, value TEXT);") +
           (version == 0
                ? QString()
                : QStringLiteral("insert into _SqliteDatabaseProperties values('_ClientVersion','%1');")
                      .arg(version)) +
           QStringLiteral("insert into call(address, date, duration, flags%1) values ")
               .arg(hasAnswered ? QStringLiteral(", answered") : QString()) +
           rows;
}
} // namespace

/// The call history of a device, in both of its generations.
class TestCalls : public QObject
{
    Q_OBJECT

private slots:
    void flags_data();
    void flags();
    void newerCalls();
    void names();
    void whichGeneration();
    void callsOfBothGenerationsOnce();
    void withoutTheirColumns_data();
    void withoutTheirColumns();
};

void TestCalls::flags_data()
{
    QTest::addColumn<int>("version"); // 0: none is told
    QTest::addColumn<bool>("hasAnswered");
    QTest::addColumn<QString>("flags"); // "flags" or "flags,answered" of one row
    QTest::addColumn<int>("type");
    const auto row = [](int version, bool hasAnswered, const char *flags, int type) {
        QTest::addRow("version %d, %s", version, flags) << version << hasAnswered << flags << type;
    };
    for (const int version : {0, 11}) {
        row(version, false, "4", 4);
        row(version, false, "5", 5);
        row(version, false, "8", 8);
        row(version, false, "0", 0);
        row(version, false, "9", 0);
    }
    row(12, false, "0", 4);
    row(12, false, "9", 5);
    row(12, false, "17", 8);
    row(12, false, "4", 8);
    row(12, true, "0,1", 4);
    row(12, true, "0,0", 8);
    row(11, true, "9,0", 5);
    row(11, true, "9,1", 5);
    row(12, true, "1507328,1", 0);
    row(11, true, "4,1", 0);
}

void TestCalls::flags()
{
    QFETCH(int, version);
    QFETCH(bool, hasAnswered);
    QFETCH(QString, flags);
    ScratchSource source;
    source.putDatabase(olderFile,
                       olderCalls(version, hasAnswered, QStringLiteral("('1',5,0,%1)").arg(flags)));
    QTEST(IOSCallHistoryDb(source).readAll(heard).first().type, "type");
}

void TestCalls::newerCalls()
{
    ScratchSource source;
    source.putDatabase(
        newerFile,
        QStringLiteral(
            "create table Z_PRIMARYKEY(Z_ENT, Z_NAME); create table ZCALLRECORD(Z_PK INTEGER PRIMARY "
            "KEY, ZANSWERED, ZCALLTYPE, ZORIGINATED, ZREAD, ZDATE, ZDURATION, ZADDRESS, ZNAME,"
            " ZNUMBER_AVAILABILITY, ZDEVICE_ID, ZISO_COUNTRY_CODE, ZUNIQUE_ID, ZFACE_TIME_DATA);"
            "insert into ZCALLRECORD values"
            "(1,1,8,0,1,347068800.9,61.4,x'2b34343137','N',2,'d','gb','u1',x'00ff'),"
            "(2,0,1,0,0,347068801,0,'2',null,null,null,null,'u2',null),"
            "(3,0,1,1,1,347068802,5,'3',null,null,null,null,'u3',null),"
            "(4,1,1,0,1,2147483647,5,null,null,null,null,null,null,null),"
            "(5,1,1,0,1,-2147483648,5,'5',null,null,null,null,null,null);"));
    IOSCallHistoryDb db(source);
    const QList<CallEntry> calls = db.readAll(heard);
    QStringList addresses;
    for (const CallEntry &call : calls)
        addresses.append(call.address);
    QCOMPARE(addresses, QStringList({QString(), QStringLiteral("3"), QStringLiteral("2"),
                                     QStringLiteral("+4417"), QStringLiteral("5")}));
    QCOMPARE(calls.at(0).date.toSecsSinceEpoch(), 2147483647LL + 978307200);
    QCOMPARE(calls.at(4).date.toSecsSinceEpoch(), -2147483648LL + 978307200);
    QCOMPARE(calls.at(1).type, 5);
    QCOMPARE(calls.at(2).type, 8);
    CallEntry expected;
    expected.address = QStringLiteral("+4417"); // bytes on some versions
    expected.date = QDateTime::fromSecsSinceEpoch(1325376000, Qt::UTC);
    expected.duration = 61;
    expected.type = 4;
    expected.name = QStringLiteral("N");
    expected.read = expected.answered = 1;
    expected.face_time_data = QByteArray::fromHex("00ff");
    expected.call_type = 8;
    expected.availability = 2;
    expected.device_id = QStringLiteral("d");
    expected.cn = QStringLiteral("gb");
    expected.unique_id = QStringLiteral("u1");
    QCOMPARE(calls.at(3), expected);
}

void TestCalls::names()
{
    ScratchSource source;
    source.putDatabase(AddressBook::file,
                       AddressBook::schema() +
                           QStringLiteral("insert into ABPerson(ROWID, First, Last) values(1,'Ada','King'),"
                                          "(2,'Grace',null),(3,'Mail',null),(4,'Empty',null);"
                                          "insert into ABMultiValue(record_id, property, value) values"
                                          "(1,3,'+49 (171) 392-00123'),(2,3,'22000'),(3,4,'m@example.org'),"
                                          "(4,3,''),(4,3,'--'),(2,22,'22001');"));
    source.putDatabase(
        olderFile,
        olderCalls(12, false,
                   QStringLiteral("('017139200123',9,0,0),('22000',8,0,0),"
                                  "('m@example.org',7,0,0),('',6,0,0),('+',5,0,0),"
                                  "('22001',4,0,0),('stranger',3,0,0),('\u0422\u0435\u0441\u0442',2,0,0)")));
    QStringList persons;
    for (const CallEntry &call : IOSCallHistoryDb(source).readAll(heard))
        persons.append(call.person);
    QCOMPARE(persons.join(QLatin1Char('|')), QStringLiteral("Ada King|Grace|Mail|||Grace||"));
}

void TestCalls::whichGeneration()
{
    ScratchSource source;
    try {
        IOSCallHistoryDb(source).readAll(heard).size();
        QFAIL("counted without a database");
    } catch (const Error &error) {
        QCOMPARE(error.sentence(), QStringLiteral("Cannot find 5a4935c78a5255723f707230a451d79c540d2741 or "
                                                  "2b2b0084a1bc3a5ac8c27afdf14afb42c61a19ca."));
    }
    const QString newer = QStringLiteral("create table ZCALLRECORD(ZDATE, ZADDRESS); insert into ZCALLRECORD "
                                         "values(1,'newer'),(2,'newer')");
    source.putDatabase(newerFile, newer);
    QCOMPARE(IOSCallHistoryDb(source).readAll(heard).size(), 2);
    source.putDatabase(olderFile, olderCalls(0, false, QStringLiteral("('older',1,0,4)")));
    QCOMPARE(IOSCallHistoryDb(source).readAll(heard).size(), 3);
    source.putDatabase(olderFile, QStringLiteral("create table call(address, date, flags)"));
    QCOMPARE(IOSCallHistoryDb(source).readAll(heard).size(), 2); // newer systems leave an empty one behind
    source.put(olderFile, {});
    Report report;
    QCOMPARE(IOSCallHistoryDb(source).readAll(report).size(), 2);
    QVERIFY(report.isFailure());
    QCOMPARE(report.issues().first().where, olderFile.display());
    source.remove(newerFile);
    QVERIFY_EXCEPTION_THROWN(IOSCallHistoryDb(source).readAll(heard).size(), Error);
}

// 978307201 is the newer database's second 1; 49 and 0 are two ways to begin the same number.
void TestCalls::callsOfBothGenerationsOnce()
{
    ScratchSource source;
    source.putDatabase(
        newerFile,
        QStringLiteral("create table ZCALLRECORD(ZDATE, ZADDRESS, ZORIGINATED, ZDURATION, ZANSWERED); "
                       "insert into ZCALLRECORD(ZDATE, ZADDRESS, ZORIGINATED) "
                       "values(1,'+49301234567',1),(1,'+49301234567',1),(9,'x@y.z',1)"));
    source.putDatabase(olderFile,
                       olderCalls(0, false,
                                  QStringLiteral("('0301234567',978307201,0,5),('0301234567',978307201,0,4),"
                                                 "('0301234567',978307202,0,5),('x@y.z',978307209,0,5)")));
    Report report;
    const QList<CallEntry> calls = IOSCallHistoryDb(source).readAll(report);
    QCOMPARE(calls.size(), 5);
    QCOMPARE(calls.first().address, QStringLiteral("x@y.z"));
    QVERIFY(std::is_sorted(calls.begin(), calls.end(), [](auto &a, auto &b) { return a.date > b.date; }));
    QCOMPARE(report.count("IDS_ISSUE_CALLS_IN_BOTH"), 2);
    QVERIFY(!report.isFailure());
}

void TestCalls::withoutTheirColumns_data()
{
    QTest::addColumn<QString>("older");
    QTest::addColumn<QString>("newer");
    QTest::addColumn<int>("calls"); // -1: an Error that names the file
    QTest::newRow("another table") << "create table x(y)" << QString() << -1;
    QTest::newRow("another table in the newer") << QString() << "create table x(y)" << -1;
    QTest::newRow("no date to sort by")
        << "create table call(address); insert into call values('1')" << QString() << 1;
    QTest::newRow("nothing but a date")
        << "create table call(date); insert into call values(5)" << QString() << 1;
    QTest::newRow("values of other types")
        << QString()
        << "create table ZCALLRECORD(ZDATE, ZADDRESS, ZDURATION, ZORIGINATED); insert into "
           "ZCALLRECORD values('soon', 5.5, x'00', 'yes'), (null, char(0), 1e300, -1)"
        << 2;
}

void TestCalls::withoutTheirColumns()
{
    QFETCH(QString, older);
    QFETCH(QString, newer);
    QFETCH(int, calls);
    ScratchSource source;
    if (!older.isEmpty())
        source.putDatabase(olderFile, older);
    if (!newer.isEmpty())
        source.putDatabase(newerFile, newer);
    if (calls >= 0) {
        QCOMPARE(IOSCallHistoryDb(source).readAll(heard).size(), calls);
        return;
    }
    try {
        IOSCallHistoryDb(source).readAll(heard);
        QFAIL("read all the same");
    } catch (const Error &error) {
        const SourceFile &file = older.isEmpty() ? newerFile : olderFile;
        QCOMPARE(error.where(), file.display());
        QVERIFY2(error.sentence().contains(file.display()), error.what());
    }
}

QTEST_APPLESS_MAIN(TestCalls)
#include "tst_calls.moc"

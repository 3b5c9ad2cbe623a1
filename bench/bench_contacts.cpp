#include "bench_table.h"
#include "device_files.h"
#include "touch_columns.h"

#include "base/progress.h"
#include "base/report.h"
#include "personal/personal_source.h"
#include "resources/resources.h"
#include "work/save_records.h"

namespace {
Report report;

constexpr int contacts = 20000;
constexpr int calls = 100000;

const SourceFile addressBook{QStringLiteral("HomeDomain"),
                             QStringLiteral("Library/AddressBook/AddressBook.sqlitedb")};
const SourceFile callHistory{QStringLiteral("HomeDomain"),
                             QStringLiteral("Library/CallHistoryDB/CallHistory.storedata")};

constexpr const char *contactStatements[] = {
    "select rowid, * from Abperson order by rowid asc", "select rowid, value from ABMultiValueLabel",
    "select rowid, value from ABMultiValueEntryKey",
    "select parent_id, key, value from ABMultiValueEntry order by rowid",
    "select UID, record_id, property, label, value from ABMultiValue order by rowid"};

/// People with two numbers, an e-mail address, a postal address and a page each.
void putContacts(const bench::DeviceFiles &device)
{
    device.put(
        addressBook,
        QStringLiteral(
            "create table ABPerson(ROWID INTEGER PRIMARY KEY, First TEXT, Last TEXT, Middle TEXT, "
            "Organization "
            "TEXT, Department TEXT, Note TEXT, Birthday TEXT, JobTitle TEXT, Nickname TEXT, Prefix TEXT, "
            "Suffix "
            "TEXT, CreationDate INTEGER, ModificationDate INTEGER, Kind INTEGER, guid TEXT);"
            "create table ABMultiValue(UID INTEGER PRIMARY KEY, record_id INTEGER, property INTEGER, "
            "identifier "
            "INTEGER, label INTEGER, value TEXT);"
            "create table ABMultiValueLabel(value TEXT, UNIQUE(value));"
            "create table ABMultiValueEntry(parent_id INTEGER, key INTEGER, value TEXT, UNIQUE(parent_id, "
            "key));"
            "create table ABMultiValueEntryKey(value TEXT, UNIQUE(value));"
            "create index ABMultiValueRecord on ABMultiValue(record_id);"
            "insert into ABMultiValueLabel values('_$!<Mobile>!$_'),('_$!<Home>!$_'),('_$!<HomePage>!$_');"
            "insert into ABMultiValueEntryKey values('Street'),('ZIP'),('City'),('Country');"
            "with recursive n(i) as (select 1 union all select i+1 from n where i<%1) insert into "
            "ABPerson(ROWID, "
            "First, Last, CreationDate, ModificationDate, Kind, guid) "
            "select i, 'First name '||i, 'Last name '||(i*7919%9973), i, i, 0, hex(randomblob(16)) from n;"
            "insert into ABMultiValue(record_id, property, label, value) "
            "select ROWID, 3, 1, '+49 171 '||(1000000+ROWID) from ABPerson "
            "union all select ROWID, 3, 2, '(030) '||(2000000+ROWID) from ABPerson "
            "union all select ROWID, 4, 2, 'somebody'||ROWID||'@example.org' from ABPerson "
            "union all select ROWID, 5, 2, null from ABPerson "
            "union all select ROWID, 22, 3, 'https://example.org/people/'||ROWID from ABPerson;"
            "insert into ABMultiValueEntry select UID, k.ROWID, k.value||' '||UID from ABMultiValue, "
            "ABMultiValueEntryKey as k where property=5")
            .arg(contacts));
}

void putCalls(const bench::DeviceFiles &device)
{
    device.put(
        callHistory,
        QStringLiteral(
            "create table ZCALLRECORD(Z_PK INTEGER PRIMARY KEY, ZANSWERED INTEGER, ZCALLTYPE INTEGER, "
            "ZNUMBER_AVAILABILITY INTEGER, ZORIGINATED INTEGER, ZREAD INTEGER, ZDATE TIMESTAMP, ZDURATION "
            "FLOAT, ZISO_COUNTRY_CODE VARCHAR, ZUNIQUE_ID VARCHAR, ZADDRESS VARCHAR);"
            "with recursive n(i) as (select 1 union all select i+1 from n where i<%1) insert into "
            "ZCALLRECORD "
            "select i, i%2, 1, 0, i%3=0, 1, 400000000+i*60, i%900, 'de', hex(randomblob(16)), "
            "'0171'||(1000000+i%25000) from n")
            .arg(calls));
}

QList<ContactRecord> readContacts(FileSource &device)
{
    QList<ContactRecord> all = openDeviceRecords(device, {})->contacts(Scope::Usual, report);
    if (all.size() != contacts || all.last().rows.size() != 5)
        std::abort();
    return all;
}

void readCalls(FileSource &device, bool named)
{
    const QList<CallEntry> all = openDeviceRecords(device, {})->calls(Scope::Usual, report);
    if (all.size() != calls || all.last().person.isEmpty() == named)
        std::abort();
}
} // namespace

int main()
{
    initResources();
    bench::DeviceFiles device;
    putContacts(device);
    bench::compare(
        "read 20,000 contacts of 5 rows", 3, [&] { readContacts(device); },
        [&] { bench::touchEveryColumn(device.pathOf(addressBook), contactStatements); });

    const QTemporaryDir folder;
    const auto source = openDeviceRecords(device, {});
    NoProgress progress;
    saveRecords(DataClass::Contacts, *source, Scope::Usual, folder.path(), progress);
    bench::compare(
        "save 20,000 contacts that are there already", 6,
        [&] {
            if (saveRecords(DataClass::Contacts, *source, Scope::Usual, folder.path(), progress).merged != contacts)
                std::abort();
        },
        [&] {
            if (openLocalRecords(folder.path())->contacts(Scope::Usual, report).size() != contacts)
                std::abort();
        });

    bench::DeviceFiles strangers;
    putCalls(strangers);
    putCalls(device);
    bench::compare(
        "name 100,000 calls from 20,000 contacts", 2, [&] { readCalls(device, true); },
        [&] { readCalls(strangers, false); });
}

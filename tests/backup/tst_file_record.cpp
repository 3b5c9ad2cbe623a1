#include "backup/archived_record.h"
#include "backup/cf_type.h"
#include "sample/plist_value.h"

#include <QTest>

#include <functional>

namespace {
using sample::PlistDate;
using sample::PlistUid;
using sample::PlistValue;

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

PlistValue::Dictionary data(const QByteArray &bytes)
{
    return {{text("NS.data"), bytes}, {text("$class"), PlistUid{0}}};
}

/// An archive whose record stands at `objects[root]`.
PlistValue archive(PlistValue::Array objects, quint32 root)
{
    return PlistValue::Dictionary{{text("$version"), 100000},
                                  {text("$objects"), std::move(objects)},
                                  {text("$archiver"), text("NSKeyedArchiver")},
                                  {text("$top"), PlistValue::Dictionary{{text("root"), PlistUid{root}}}}};
}

/// An archive of one record with these fields; objects 2 to 6 are what fields may refer to.
PlistValue archiveOf(PlistValue::Dictionary fields)
{
    return archive({text("$null"), std::move(fields), text("/var/Größe/😀"), QByteArray("digest"), data("key"),
                    PlistValue::Array{}, text("plain")},
                   1);
}

PlistValue bytesByReference()
{
    return archive({text("$null"), PlistValue::Dictionary{{text("EncryptionKey"), PlistUid{2}}},
                    PlistValue::Dictionary{{text("NS.data"), PlistUid{3}}}, QByteArray("deep")},
                   1);
}

FileRecord fullRecord()
{
    FileRecord record;
    record.target = "/var/Größe/😀";
    record.digest = "digest";
    record.encryptionKey = "key";
    record.mode = 0xA1FF;
    record.inode = Q_UINT64_C(0xFFFFFFFFFFFFFFFF);
    record.userId = 501;
    record.groupId = 4294967295;
    record.lastModified = 4294967295;
    record.lastStatusChange = 1;
    record.birth = 2;
    record.sizeBytes = Q_UINT64_C(0x7FFFFFFFFFFFFFFF);
    record.protectionClass = 11;
    return record;
}

PlistValue::Dictionary fullFields()
{
    return {{text("EncryptionKey"), PlistUid{4}},
            {text("Target"), PlistUid{2}},
            {text("Digest"), PlistUid{3}},
            {text("Mode"), 0xA1FF},
            {text("InodeNumber"), qint64{-1}},
            {text("UserID"), 501},
            {text("GroupID"), qint64{4294967295}},
            {text("LastModified"), qint64{4294967295}},
            {text("LastStatusChange"), 1},
            {text("Birth"), 2},
            {text("Size"), std::numeric_limits<qint64>::max()},
            {text("ProtectionClass"), 11},
            {text("RelativePath"), text("ignored")},
            {text("Flags"), 1}};
}
} // namespace

class TestFileRecord : public QObject
{
    Q_OBJECT

private slots:
    void fileIds_data();
    void fileIds();
    void archives_data();
    void archives();
    void noArchive_data();
    void noArchive();
};

void TestFileRecord::fileIds_data()
{
    QTest::addColumn<QByteArray>("domain");
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("expected");
    // Names that the same files have in everybody's backup.
    QTest::newRow("messages") << QByteArray("HomeDomain") << QByteArray("Library/SMS/sms.db")
                              << QByteArray("3d0d7e5fb2ce288813306e4d4636395e047a3d28");
    QTest::newRow("contacts") << QByteArray("HomeDomain")
                              << QByteArray("Library/AddressBook/AddressBook.sqlitedb")
                              << QByteArray("31bb7ba8914766d4ba40d6dfb6113c8b614be442");
    QTest::newRow("a domain's own folder")
        << QByteArray("a") << QByteArray() << QByteArray("d5054dde373c6fa7edd0add2cee51f40ab57b535");
}

void TestFileRecord::fileIds()
{
    QFETCH(QByteArray, domain);
    QFETCH(QByteArray, path);
    QFETCH(QByteArray, expected);
    QCOMPARE(fileId(domain, path), expected);
    QCOMPARE(fileIdDigest(domain, path).toHex(), expected);
}

void TestFileRecord::archives_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<FileRecord>("expected");
    const auto add = [](const char *name, const PlistValue &value, const FileRecord &expected) {
        QTest::newRow(name) << binaryPlist(value) << expected;
    };
    const auto one = [](const char *field, PlistValue value) {
        return archiveOf({{text(field), std::move(value)}});
    };
    const auto with = [](const std::function<void(FileRecord &)> &change) {
        FileRecord record;
        change(record);
        return record;
    };
    const FileRecord nothing;

    add("every field", archiveOf(fullFields()), fullRecord());
    QTest::newRow("every field, in XML")
        << CFType::parse(binaryPlist(archiveOf(fullFields()))).serialise(CFType::Format::Xml) << fullRecord();
    PlistValue::Array many(300, text("filler"));
    many[0] = text("$null");
    many[299] = PlistValue::Dictionary{{text("Target"), PlistUid{298}}};
    add("record last of many objects", archive(many, 299), with([](FileRecord &r) { r.target = "filler"; }));
    add("bytes without a reference", one("Digest", QByteArray("raw")),
        with([](FileRecord &r) { r.digest = "raw"; }));
    add("a text without a reference", one("Target", text("t")), with([](FileRecord &r) { r.target = "t"; }));
    add("bytes in a dictionary without a reference", one("EncryptionKey", data("raw")),
        with([](FileRecord &r) { r.encryptionKey = "raw"; }));
    QTest::newRow("bytes in a dictionary, by reference") << binaryPlist(bytesByReference())
                                                         << with([](FileRecord &r) { r.encryptionKey = "deep"; });
    QTest::newRow("bytes in a dictionary, by reference, in XML")
        << CFType::parse(binaryPlist(bytesByReference())).serialise(CFType::Format::Xml)
        << with([](FileRecord &r) { r.encryptionKey = "deep"; });
    add("a number by reference",
        archive({text("$null"), PlistValue::Dictionary{{text("Size"), PlistUid{2}}}, 7}, 1),
        with([](FileRecord &r) { r.sizeBytes = 7; }));
    add("nothing at all", archiveOf({}), nothing);
    add("reference to $null", one("Target", PlistUid{0}), nothing);
    add("reference behind the objects", one("Target", PlistUid{99}), nothing);
    add("text where bytes belong", one("Digest", PlistUid{2}), nothing);
    add("bytes where text belongs", one("Target", PlistUid{3}), nothing);
    add("a list where bytes belong", one("EncryptionKey", PlistUid{5}), nothing);
    add("text where a number belongs", one("Size", PlistUid{6}), nothing);
    add("a date where a number belongs", one("LastModified", PlistDate{1}), nothing);
    add("a fraction where a number belongs", one("Size", 7.5), nothing);
    add("a negative size", one("Size", qint64{-1}), nothing);
    add("a mode beyond 16 bits", one("Mode", 0x10000), nothing);
    add("a time beyond 32 bits", one("Birth", qint64{1} << 32), nothing);
    add("a time before 1970", one("Birth", qint64{-1}), nothing);
    add("a class beyond 8 bits", one("ProtectionClass", 256), nothing);
    add("a key twice", archiveOf({{text("Mode"), 1}, {text("Mode"), 2}}),
        with([](FileRecord &r) { r.mode = 1; }));
    add("names that are nearly right", archiveOf({{text("mode"), 1}, {text("Sizf"), 2}, {text("Modes"), 3}}),
        nothing);
}

void TestFileRecord::archives()
{
    QFETCH(QByteArray, bytes);
    QFETCH(FileRecord, expected);
    FileRecord record = fullRecord();
    QVERIFY(ArchivedRecordReader().read(bytes, record));
    QVERIFY(record == expected);
}

void TestFileRecord::noArchive_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("text") << QByteArray("bplist00 is how it should begin, and end otherwise");
    QTest::newRow("a list") << binaryPlist(PlistValue::Array{1, 2});
    QTest::newRow("no $objects") << binaryPlist(
        PlistValue::Dictionary{{text("$top"), PlistValue::Dictionary{{text("root"), PlistUid{1}}}}});
    QTest::newRow("no $top") << binaryPlist(
        PlistValue::Dictionary{{text("$objects"), PlistValue::Array{text("$null")}}});
    QTest::newRow("root is no reference") << binaryPlist(
        PlistValue::Dictionary{{text("$objects"), PlistValue::Array{text("$null"), PlistValue::Dictionary{}}},
                               {text("$top"), PlistValue::Dictionary{{text("root"), 1}}}});
    QTest::newRow("root refers to $null") << binaryPlist(archive({PlistValue::Dictionary{}}, 0));
    QTest::newRow("root refers behind the objects") << binaryPlist(archive({text("$null")}, 1));
    QTest::newRow("record is a text") << binaryPlist(archive({text("$null"), text("x")}, 1));
}

void TestFileRecord::noArchive()
{
    QFETCH(QByteArray, bytes);
    FileRecord record = fullRecord();
    QVERIFY(!ArchivedRecordReader().read(bytes, record));
    QVERIFY(record == fullRecord());
}

QTEST_APPLESS_MAIN(TestFileRecord)
#include "tst_file_record.moc"

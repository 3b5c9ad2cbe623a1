#include "backup/file_catalogue.h"

#include <QTest>

class TestFileCatalogue : public QObject
{
    Q_OBJECT

private slots:
    void keepsEveryField();
    void keepsLengths_data();
    void keepsLengths();
    void laterReplacesEarlier();
    void sameIdIsSameRecord();
    void findsAmongMany();
    void emptyFindsNothing();
};

namespace {
FileRecord fileAt(const QByteArray &domain, const QByteArray &path)
{
    FileRecord record;
    record.domain = domain;
    record.relativePath = path;
    record.mode = modeRegular | 0644;
    return record;
}
} // namespace

void TestFileCatalogue::keepsEveryField()
{
    FileRecord record = fileAt("HomeDomain", "Library/SMS/sms.db");
    record.target = "../elsewhere";
    record.digest = QByteArray(20, '\x9c');
    record.encryptionKey = QByteArray("\x03\0\0\0", 4) + QByteArray(40, '\0');
    record.inode = 0xFEDCBA9876543210;
    record.userId = 501;
    record.groupId = 0xFFFFFFFF;
    record.lastModified = 1700000001;
    record.lastStatusChange = 1700000002;
    record.birth = 1700000003;
    record.sizeBytes = 0x123456789A;
    record.protectionClass = 11;
    record.properties = {{"com.apple.name", QByteArray("\0\xFF", 2)}, {"", "no name"}};
    FileRecord other = fileAt("MediaDomain", "");
    other.userId = 502;
    FileCatalogue catalogue;
    const auto index = catalogue.insert(record);
    const auto otherIndex = catalogue.insert(other);
    catalogue.squeeze();
    QCOMPARE(catalogue.record(index), record);
    QCOMPARE(catalogue.record(otherIndex), other);
    QCOMPARE(catalogue.encryptionKey(index).toByteArray(), record.encryptionKey);
    QCOMPARE(catalogue.sizeBytes(index), record.sizeBytes);
    QCOMPARE(catalogue.fileId(index), QByteArray("3d0d7e5fb2ce288813306e4d4636395e047a3d28"));
}

void TestFileCatalogue::keepsLengths_data()
{
    QTest::addColumn<int>("length");
    for (const int length : {0, 1, 127, 128, 129, 16383, 16384, 70000})
        QTest::addRow("%d bytes", length) << length;
}

void TestFileCatalogue::keepsLengths()
{
    QFETCH(int, length);
    FileRecord record = fileAt("HomeDomain", QByteArray(length, 'p'));
    record.digest = "behind";
    FileCatalogue catalogue;
    QCOMPARE(catalogue.record(catalogue.insert(record)), record);
}

void TestFileCatalogue::laterReplacesEarlier()
{
    FileCatalogue catalogue;
    FileRecord record = fileAt("HomeDomain", "a");
    record.digest = "earlier";
    const auto first = catalogue.insert(record);
    catalogue.insert(fileAt("HomeDomain", "b"));
    record.digest = "much later";
    QCOMPARE(catalogue.insert(record), first);
    QCOMPARE(catalogue.size(), 2U);
    QCOMPARE(catalogue.record(first), record);
}

// The id is made of "domain-path", so the place of the dash between them does not matter.
void TestFileCatalogue::sameIdIsSameRecord()
{
    FileCatalogue catalogue;
    const auto first = catalogue.insert(fileAt("AppDomain", "com.example-a"));
    QCOMPARE(catalogue.insert(fileAt("AppDomain-com.example", "a")), first);
    QCOMPARE(catalogue.domain(first).toByteArray(), QByteArray("AppDomain-com.example"));
    QCOMPARE(catalogue.find("AppDomain", "com.example-a"), first);
    QCOMPARE(catalogue.find("AppDomain", "com.example"), FileCatalogue::none);
}

void TestFileCatalogue::findsAmongMany()
{
    constexpr int count = 5000;
    FileCatalogue catalogue;
    for (int i = 0; i < count; ++i)
        catalogue.insert(fileAt(i % 2 ? "HomeDomain" : "MediaDomain", QByteArray::number(i)));
    const auto check = [&] {
        for (int i = 0; i < count; ++i) {
            const QByteArray domain = i % 2 ? "HomeDomain" : "MediaDomain";
            const auto index = static_cast<FileCatalogue::Index>(i);
            QCOMPARE(catalogue.find(domain, QByteArray::number(i)), index);
            QCOMPARE(catalogue.find(domain, QByteArray::number(i + 1)), FileCatalogue::none);
            QCOMPARE(catalogue.findById(fileId(domain, QByteArray::number(i))), index);
        }
    };
    catalogue.squeeze();
    check();
    QCOMPARE(catalogue.findById(fileId("HomeDomain", "0")), FileCatalogue::none);
    QCOMPARE(catalogue.findById("3d0d7e5fb2ce288813306e4d4636395e047a3d2"), FileCatalogue::none);
    QCOMPARE(catalogue.findById(QByteArray(40, 'z')), FileCatalogue::none);
}

void TestFileCatalogue::emptyFindsNothing()
{
    FileCatalogue catalogue;
    catalogue.squeeze();
    QCOMPARE(catalogue.find("HomeDomain", "a"), FileCatalogue::none);
    QCOMPARE(catalogue.findById(fileId("HomeDomain", "a")), FileCatalogue::none);
}

QTEST_APPLESS_MAIN(TestFileCatalogue)
#include "tst_file_catalogue.moc"

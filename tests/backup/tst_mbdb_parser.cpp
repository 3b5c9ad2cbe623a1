#include "backup/mbdb_parser.h"
#include "base/error.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace {
// Written byte by byte, so that reading and writing are not each other's only proof.
const QByteArray header = QByteArray::fromHex("6d626462 0500");
const QByteArray record = QByteArray::fromHex("000a") + "HomeDomain" + QByteArray::fromHex("0001") + "p" +
                          QByteArray::fromHex("ffff" // no link target
                                              "0000" // an empty digest
                                              "0003") +
                          "key" +
                          QByteArray::fromHex("81a4"              // mode
                                              "0000000100000002"  // inode, high half first
                                              "000001f5 000001f6" // user, group
                                              "00000001 00000002 fffffffe"
                                              "0000000500000006" // size
                                              "04 02"            // class, two properties
                                              "0001") +
                          "n" + QByteArray::fromHex("0002 00ff") + QByteArray::fromHex("0001") + "m" +
                          QByteArray::fromHex("ffff");

FileRecord expectedRecord()
{
    FileRecord expected;
    expected.domain = "HomeDomain";
    expected.relativePath = "p";
    expected.encryptionKey = "key";
    expected.mode = 0x81A4;
    expected.inode = Q_UINT64_C(0x100000002);
    expected.userId = 501;
    expected.groupId = 502;
    expected.lastModified = 1;
    expected.lastStatusChange = 2;
    expected.birth = 0xFFFFFFFE;
    expected.sizeBytes = Q_UINT64_C(0x500000006);
    expected.protectionClass = 4;
    expected.properties = {{"n", QByteArray("\0\xff", 2)}, {"m", {}}};
    return expected;
}

FileRecord named(const QByteArray &relativePath)
{
    FileRecord named;
    named.domain = "d";
    named.relativePath = relativePath;
    return named;
}

QByteArray withDomain(const QByteArray &domainField)
{
    return domainField + record.mid(2 + 10);
}

QList<FileRecord> read(const QByteArray &bytes)
{
    QList<FileRecord> records;
    MBDBParser::readBytes(bytes, [&](FileRecord &&read) { records.append(std::move(read)); });
    return records;
}

template <typename Work>
QString errorOf(Work work)
{
    try {
        work();
    } catch (const Error &error) {
        return error.sentence();
    }
    return {};
}
} // namespace

class TestMbdbParser : public QObject
{
    Q_OBJECT

private slots:
    void reads_data();
    void reads();
    void truncated_data();
    void truncated();
    void writes();
    void tooLongToWrite();
    void files();
    void descriptorVectors_data();
    void descriptorVectors();
    void descriptorPadding_data();
    void descriptorPadding();
};

void TestMbdbParser::reads_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QList<FileRecord>>("expected");
    const FileRecord one = expectedRecord();
    QTest::newRow("no records") << header << QList<FileRecord>{};
    QTest::newRow("two records") << header + record + record << QList<FileRecord>{one, one};
    QTest::newRow("any header of that length") << "abcdef" + record << QList<FileRecord>{one};
    FileRecord nowhere = one;
    nowhere.domain.clear();
    QTest::newRow("record without a domain")
        << header + withDomain(QByteArray::fromHex("ffff")) + record << QList<FileRecord>{nowhere, one};
    QTest::newRow("record with an empty domain")
        << header + withDomain(QByteArray::fromHex("0000")) + record << QList<FileRecord>{nowhere, one};
}

void TestMbdbParser::reads()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QList<FileRecord>, expected);
    QVERIFY(read(bytes) == expected);
}

void TestMbdbParser::truncated_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("recordsBefore");
    QTest::newRow("no bytes") << QByteArray() << 0;
    QTest::newRow("inside the header") << header.left(5) << 0;
    QTest::newRow("inside a length") << header + record + record.left(1) << 1;
    QTest::newRow("inside a text") << header + record.left(5) << 0;
    QTest::newRow("inside the numbers") << header + record.left(30) << 0;
    QTest::newRow("inside the last property") << header + record + record.chopped(1) << 1;
}

void TestMbdbParser::truncated()
{
    QFETCH(QByteArray, bytes);
    int records = 0;
    QVERIFY_EXCEPTION_THROWN(MBDBParser::readBytes(bytes, [&](FileRecord &&) { ++records; }), Error);
    QTEST(records, "recordsBefore");
}

void TestMbdbParser::writes()
{
    const QList<FileRecord> records = {expectedRecord(), named({})};
    const QByteArray bytes = MBDBParser::serialise(records);
    QVERIFY(bytes.startsWith(header));
    QVERIFY(read(bytes) == records);
}

void TestMbdbParser::tooLongToWrite()
{
    FileRecord longest = named(QByteArray(0xFFFE, 'x'));
    QVERIFY(read(MBDBParser::serialise({longest})) == QList<FileRecord>{longest});
    longest.relativePath += 'x';
    QVERIFY_EXCEPTION_THROWN(MBDBParser::serialise({longest}), Error);
    FileRecord properties = named({});
    properties.properties.fill({"n", "v"}, 256);
    QVERIFY_EXCEPTION_THROWN(MBDBParser::serialise({properties}), Error);
}

void TestMbdbParser::files()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("Manifest.mbdb"));
    const auto ignore = [](FileRecord &&) {};
    QCOMPARE(errorOf([&] { MBDBParser::read(path, ignore); }),
             QStringLiteral("can not open %1. No such file or directory").arg(path));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(header + record + "\x01");
    file.close();
    QList<FileRecord> records;
    const QString error =
        errorOf([&] { MBDBParser::read(path, [&](FileRecord &&read) { records.append(std::move(read)); }); });
    QVERIFY(error.startsWith(QStringLiteral("Manifest.mbdb")));
    QVERIFY(records == QList<FileRecord>{expectedRecord()});
}

void TestMbdbParser::descriptorVectors_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("cipher");
    // NIST SP 800-38A, F.2.1, F.2.3 and F.2.5: their initialisation vector is this cipher's fixed one.
    QTest::newRow("CBC-AES128") << QByteArray::fromHex("2b7e151628aed2a6abf7158809cf4f3c")
                                << QByteArray::fromHex("7649abac8119b246cee98e9b12e9197d"
                                                       "5086cb9b507219ee95db113a917678b2"
                                                       "73bed6b8e3c1743b7116e69e22229516"
                                                       "3ff1caa1681fac09120eca307586e1a7");
    QTest::newRow("CBC-AES192") << QByteArray::fromHex("8e73b0f7da0e6452c810f32b809079e562f8ead2522c6b7b")
                                << QByteArray::fromHex("4f021db243bc633d7178183a9fa071e8"
                                                       "b4d9ada9ad7dedf4e5e738763f69145a"
                                                       "571b242012fb7ae07fa9baac3df102e0"
                                                       "08b0e27988598881d920a9e64f5615cd");
    QTest::newRow("CBC-AES256") << QByteArray::fromHex("603deb1015ca71be2b73aef0857d7781"
                                                       "1f352c073b6108d72d9810a30914dff4")
                                << QByteArray::fromHex("f58c4c04d6e5f1ba779eabfb5f7bfbd6"
                                                       "9cfc4e967edb808d679f777bc6702c7d"
                                                       "39f23369a9d9bacfa530e26304231461"
                                                       "b2eb05e2c39be9fcda6c19078c6a9d1b");
}

void TestMbdbParser::descriptorVectors()
{
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, cipher);
    const QByteArray plain = QByteArray::fromHex("6bc1bee22e409f96e93d7e117393172a"
                                                 "ae2d8a571e03ac9c9eb76fac45af8e51"
                                                 "30c81c46a35ce411e5fbc1191a0a52ef"
                                                 "f69f2445df4f9b17ad2b417be66c3710");
    const QByteArray encrypted = MBDBParser::encryptFileDesc(plain, key);
    QCOMPARE(encrypted.first(64), cipher);
    QCOMPARE(MBDBParser::decryptFileDesc(encrypted, key), plain);
    // The last byte of the vectors' plain text says 16, which drops the last block.
    QCOMPARE(MBDBParser::decryptFileDesc(cipher, key), plain.first(48));
}

void TestMbdbParser::descriptorPadding_data()
{
    QTest::addColumn<qsizetype>("size");
    QTest::addColumn<qsizetype>("keySize");
    QTest::addColumn<QString>("error");
    const QString length = QStringLiteral("MBDBParser::decryptFileDesc, size % 16 != 0.");
    const QString failed = QStringLiteral("MBDBParser::decryptFileDesc, aes_crypt_cbc failed.");
    QTest::newRow("one byte less than a block") << qsizetype{15} << qsizetype{16} << length;
    QTest::newRow("one byte more than a block") << qsizetype{17} << qsizetype{16} << length;
    QTest::newRow("no key of AES") << qsizetype{16} << qsizetype{15} << failed;
    QTest::newRow("nothing") << qsizetype{0} << qsizetype{16} << QString();
    QTest::newRow("a padding longer than the bytes") << qsizetype{16} << qsizetype{16} << QString();
}

void TestMbdbParser::descriptorPadding()
{
    QFETCH(qsizetype, size);
    QFETCH(qsizetype, keySize);
    QByteArray plain(16, '\xff');
    const QByteArray cipher =
        MBDBParser::encryptFileDesc(plain, QByteArray(16, 'k')).first(16).repeated(2).first(size);
    QByteArray decrypted;
    QTEST(errorOf([&] { decrypted = MBDBParser::decryptFileDesc(cipher, QByteArray(keySize, 'k')); }),
          "error");
    QCOMPARE(decrypted, QByteArray());
}

QTEST_APPLESS_MAIN(TestMbdbParser)
#include "tst_mbdb_parser.moc"

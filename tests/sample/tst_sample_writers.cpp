#include "outside_tools.h"

#include "sample/cipher.h"
#include "sample/keyed_archive.h"
#include "sample/catalogue_record.h"
#include "sample/typedstream_writer.h"

#include <QBuffer>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace sample;

class TestSampleWriters : public QObject
{
    Q_OBJECT

private slots:
    void publishedVectors();
    void contentOfEveryLength_data();
    void contentOfEveryLength();
    void plistOfEveryKind_data();
    void plistOfEveryKind();
    void fileRecord_data();
    void fileRecord();
    void typedstream();
};

void TestSampleWriters::publishedVectors()
{
    // RFC 3394, 4.6: 256 bits of key data with a 256-bit key-encryption key
    const QByteArray kek =
        QByteArray::fromHex("000102030405060708090A0B0C0D0E0F101112131415161718191A1B1C1D1E1F");
    const QByteArray key =
        QByteArray::fromHex("00112233445566778899AABBCCDDEEFF000102030405060708090A0B0C0D0E0F");
    QCOMPARE(wrapKey(kek, key).toHex().toUpper(),
             QByteArray("28C9F404C4B810F4CBCCB35CFB87F8263F5786E2D80ED326CBC7F0E71A99F43BFB988B9B7A02DD21"));
    // RFC 6070, fifth case; its 25 bytes are the beginning of our 32
    const QByteArray derived =
        passwordKey("passwordPASSWORDpassword", {}, 0, "saltSALTsaltSALTsaltSALTsaltSALTsalt", 4096);
    QCOMPARE(derived.left(25).toHex(), QByteArray("3d2eec4fe41c849b80c8d83662c0e44a8b291a964cf2f07038"));
    // RFC 7914, 11: PBKDF2-HMAC-SHA-256 of "passwd" and "salt", one round; the inner derivation by openssl
    const QByteArray outer =
        QByteArray::fromHex("55ac046e56e3089fec1691c22544b605f94185216dde0465e68b9d57c20dacbc");
    QCOMPARE(passwordKey("passwd", "salt", 1, "inner", 7), opensslPbkdf2("SHA1", outer, "inner", 7));
}

void TestSampleWriters::contentOfEveryLength_data()
{
    QTest::addColumn<int>("length");
    for (const int length : {0, 1, 15, 16, 17, 8192, (1 << 20) - 1, 1 << 20, (1 << 20) + 1})
        QTest::addRow("%d bytes", length) << length;
}

void TestSampleWriters::contentOfEveryLength()
{
    QFETCH(int, length);
    const QByteArray key("0123456789abcdef0123456789ABCDEF");
    const QByteArray plain = QByteArray("quill").repeated(length / 5 + 1).left(length);
    QCOMPARE(opensslDecrypt(key, encryptContent(key, plain)), plain);

    QBuffer in, out;
    in.setData(plain);
    QVERIFY(in.open(QIODevice::ReadOnly) && out.open(QIODevice::WriteOnly));
    encryptContent(key, in, out);
    QCOMPARE(opensslDecrypt(key, out.data()), plain);
}

void TestSampleWriters::plistOfEveryKind_data()
{
    QTest::addColumn<bool>("binary");
    QTest::newRow("binary") << true;
    QTest::newRow("XML") << false;
}

void TestSampleWriters::plistOfEveryKind()
{
    QFETCH(bool, binary);
    PlistValue::Array many;
    for (int i = 0; i < 300; ++i) // more objects than one byte can number
        many.emplace_back(i);
    const PlistValue value(PlistValue::Dictionary{
        {u"small"_s, 7},
        {u"byte"_s, 200},
        {u"wide"_s, 70000},
        {u"wider"_s, qint64(1) << 40},
        {u"negative"_s, -5},
        {u"yes"_s, true},
        {u"real"_s, 2.5},
        {u"date"_s, PlistDate{347068800}},
        {u"text"_s, u"a < b & ünï 😀"_s},
        {u"a key of more than fifteen characters"_s, u"ascii text of more than fifteen"_s},
        {u"data"_s, QByteArray("\0\1\2\xff", 4)},
        {u"long data"_s, QByteArray(70000, 'x')},
        {u"nothing"_s, QByteArray("")},
        {u"many"_s, many},
        {u"empty"_s, PlistValue::Dictionary{}},
    });
    const QVariantMap read = readPlist(binary ? binaryPlist(value) : xmlPlist(value)).toMap();
    QCOMPARE(read.size(), 15);
    QCOMPARE(read[u"small"_s], QVariant(7));
    QCOMPARE(read[u"byte"_s], QVariant(200));
    QCOMPARE(read[u"wide"_s], QVariant(70000));
    QCOMPARE(read[u"wider"_s], QVariant(qint64(1) << 40));
    QCOMPARE(read[u"negative"_s], QVariant(-5));
    QCOMPARE(read[u"yes"_s], QVariant(true));
    QCOMPARE(read[u"real"_s], QVariant(2.5));
    QCOMPARE(read[u"date"_s], QVariant(u"2012-01-01T00:00:00Z"_s));
    QCOMPARE(read[u"text"_s], QVariant(u"a < b & ünï 😀"_s));
    QCOMPARE(read[u"a key of more than fifteen characters"_s],
             QVariant(u"ascii text of more than fifteen"_s));
    QCOMPARE(read[u"data"_s], QVariant(QByteArray("\0\1\2\xff", 4)));
    QCOMPARE(read[u"long data"_s], QVariant(QByteArray(70000, 'x')));
    QCOMPARE(read[u"nothing"_s].toByteArray().size(), 0);
    QCOMPARE(read[u"many"_s].toList().size(), 300);
    QCOMPARE(read[u"many"_s].toList().last(), QVariant(299));
    QCOMPARE(read[u"empty"_s].toMap().size(), 0);
}

void TestSampleWriters::fileRecord_data()
{
    QTest::addColumn<bool>("rootFirst");
    QTest::newRow("record first") << true;
    QTest::newRow("record last, data in objects") << false;
}

void TestSampleWriters::fileRecord()
{
    QFETCH(bool, rootFirst);
    CatalogueRecord record;
    record.domain = u"HomeDomain"_s;
    record.relativePath = u"Library/SMS/sms.db"_s;
    record.digest = "01234567890123456789";
    record.encryptionKey = QByteArray(44, 'k');
    record.mode = 0100644;
    record.size = 5000000000;
    record.protectionClass = 3;
    QCOMPARE(record.fileId(), u"3d0d7e5fb2ce288813306e4d4636395e047a3d28"_s);

    const QVariantMap archive =
        readPlist(archivedFileRecord(record, rootFirst ? RecordLayout::RootFirst : RecordLayout::RootLast))
            .toMap();
    const QVariantList objects = archive[u"$objects"_s].toList();
    const auto follow = [&](const QVariant &uid) { return objects[uid.toMap()[u"CF$UID"_s].toInt()]; };
    const QVariantMap fields = follow(archive[u"$top"_s].toMap()[u"root"_s]).toMap();
    QCOMPARE(follow(fields[u"$class"_s]).toMap()[u"$classname"_s], QVariant(u"MBFile"_s));
    QCOMPARE(follow(fields[u"RelativePath"_s]), QVariant(record.relativePath));
    QCOMPARE(fields[u"Size"_s], QVariant(record.size));
    QCOMPARE(fields[u"Mode"_s], QVariant(record.mode));
    QCOMPARE(follow(fields[u"EncryptionKey"_s]).toMap()[u"NS.data"_s], QVariant(record.encryptionKey));
    const QVariant digest = follow(fields[u"Digest"_s]);
    QCOMPARE(rootFirst ? digest : digest.toMap()[u"NS.data"_s], QVariant(record.digest));
    QVERIFY(!fields.contains(u"Target"_s));
}

void TestSampleWriters::typedstream()
{
    // The bytes that the device's own archiver makes of "hello" as one part of a message.
    const QByteArray expected = QByteArray::fromHex("040b73747265616d747970656481e803840140848484124e53417474"
                                                    "72696275746564537472696e67008484084e534f626a65637400"
                                                    "8592848484084e53537472696e67019484012b0568656c6c6f868402"
                                                    "69490105928484840c4e5344696374696f6e6172790094840169"
                                                    "01928496961d5f5f6b494d4d65737361676550617274417474726962"
                                                    "7574654e616d658692848484084e534e756d626572008484074e"
                                                    "5356616c7565009484012a84999900868686");
    QCOMPARE(typedstreamBody("hello").toHex(), expected.toHex());
    // Lengths of two and four bytes are announced by 81 and 82.
    QVERIFY(typedstreamBody(QByteArray(128, 'a'))
                .contains(QByteArray::fromHex("84012b818000") + QByteArray(128, 'a')));
    QVERIFY(
        typedstreamBody(QByteArray(40000, 'a')).contains(QByteArray::fromHex("84012b82409c0000") + "aaaa"));
}

QTEST_GUILESS_MAIN(TestSampleWriters)
#include "tst_sample_writers.moc"

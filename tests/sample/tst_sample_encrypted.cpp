#include "outside_tools.h"

#include <QCryptographicHash>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <map>

using namespace Qt::StringLiterals;

using Layout = SampleOptions::Layout;
using Protection = SampleOptions::Protection;

/// Opens encrypted samples with openssl and plistutil alone.
class TestSampleEncrypted : public QObject
{
    Q_OBJECT

private slots:
    void opensWithThePassword_data();
    void opensWithThePassword();
    void saltedDescriptors();
    void optionsThatDoNotGoTogether();
};

namespace {

struct Keybag
{
    std::map<QByteArray, QByteArray> top;
    std::map<quint32, std::map<QByteArray, QByteArray>> classes;
    std::map<quint32, QByteArray> keys;
};

quint32 number(const QByteArray &bytes)
{
    return qFromBigEndian<quint32>(bytes.constData());
}

Keybag readKeybag(const QByteArray &bytes)
{
    Keybag keybag;
    std::map<QByteArray, QByteArray> *current = &keybag.top;
    std::map<QByteArray, QByteArray> pending;
    const auto keep = [&] {
        if (current == &pending)
            keybag.classes[number(pending["CLAS"])] = pending;
        pending.clear();
    };
    for (qsizetype at = 0; at + 8 <= bytes.size();) {
        const QByteArray tag = bytes.mid(at, 4);
        const auto length = static_cast<qsizetype>(number(bytes.mid(at + 4, 4)));
        if (tag == "UUID" && keybag.top.contains("UUID")) {
            keep();
            current = &pending;
        }
        (*current)[tag] = bytes.mid(at + 8, length);
        at += 8 + length;
    }
    keep();
    return keybag;
}

void unlock(Keybag &keybag, const QByteArray &password)
{
    QByteArray secret = password;
    if (keybag.top.contains("DPSL"))
        secret =
            opensslPbkdf2("SHA256", secret, keybag.top["DPSL"], static_cast<int>(number(keybag.top["DPIC"])));
    const QByteArray key =
        opensslPbkdf2("SHA1", secret, keybag.top["SALT"], static_cast<int>(number(keybag.top["ITER"])));
    for (auto &[protectionClass, entry] : keybag.classes)
        keybag.keys[protectionClass] = opensslUnwrap(key, entry["WPKY"]);
}

/// A file key out of 4 bytes of class, little-endian, and the wrapped key.
QByteArray openKey(const Keybag &keybag, const QByteArray &stored)
{
    const auto found = keybag.keys.find(qFromLittleEndian<quint32>(stored.constData()));
    return stored.size() != 44 || found == keybag.keys.end() || found->second.isEmpty()
               ? QByteArray()
               : opensslUnwrap(found->second, stored.mid(4));
}

QVariantMap recordOf(const QByteArray &blob)
{
    const QVariantMap archive = readPlist(blob).toMap();
    const QVariantList objects = archive[u"$objects"_s].toList();
    const auto follow = [&](const QVariant &uid) { return objects[uid.toMap()[u"CF$UID"_s].toInt()]; };
    QVariantMap fields = follow(archive[u"$top"_s].toMap()[u"root"_s]).toMap();
    fields[u"EncryptionKey"_s] = follow(fields[u"EncryptionKey"_s]).toMap()[u"NS.data"_s];
    return fields;
}

} // namespace

void TestSampleEncrypted::opensWithThePassword_data()
{
    QTest::addColumn<int>("ios");
    QTest::addColumn<Protection>("protection");
    QTest::addColumn<bool>("padded");
    QTest::newRow("two derivations, catalogue encrypted") << 17 << Protection::ByGeneration << true;
    QTest::newRow("catalogue without padding") << 12 << Protection::Double << false;
    QTest::newRow("one derivation, catalogue plain") << 12 << Protection::Single << true;
}

void TestSampleEncrypted::opensWithThePassword()
{
    QFETCH(int, ios);
    QFETCH(Protection, protection);
    QFETCH(bool, padded);
    QTemporaryDir home;
    SampleOptions options;
    options.folder = home.filePath(u"backup"_s);
    options.ios = ios;
    options.password = u"Ünlock-मी 7"_s;
    options.protection = protection;
    options.catalogueWithoutPadding = !padded;
    options.files = 12;
    const SampleSummary summary = makeSample(options);

    const QVariantMap manifest = readPlist(readAll(options.folder + u"/Manifest.plist"_s)).toMap();
    QCOMPARE(manifest[u"IsEncrypted"_s], QVariant(true));
    Keybag keybag = readKeybag(manifest[u"BackupKeyBag"_s].toByteArray());
    QCOMPARE(keybag.classes.size(), std::size_t(11));
    unlock(keybag, options.password.toUtf8());
    for (auto &[protectionClass, entry] : keybag.classes) {
        QCOMPARE(keybag.keys[protectionClass].size(), number(entry["WRAP"]) & 2 ? 32 : 0);
        QCOMPARE(entry["WPKY"].size(), 40);
    }

    QString catalogue = options.folder + u"/Manifest.db"_s;
    if (protection != Protection::Single) {
        const QByteArray key = openKey(keybag, manifest[u"ManifestKey"_s].toByteArray());
        QCOMPARE(key.size(), 32);
        const QByteArray plain = opensslDecrypt(key, readAll(catalogue), padded);
        catalogue = home.filePath(u"plain.db"_s);
        QFile file(catalogue);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(plain) == plain.size());
    }
    QCOMPARE(column(catalogue, u"pragma integrity_check"_s), QStringList{u"ok"_s});
    QCOMPARE(column(catalogue, u"select count(*) from Files"_s).first().toInt(),
             summary.counts.catalogueRows);

    for (const SampleFile &file : summary.files) {
        const QVariantMap record =
            recordOf(blob(catalogue, u"select file from Files where fileID='%1'"_s.arg(file.fileId)));
        const QByteArray key = openKey(keybag, record[u"EncryptionKey"_s].toByteArray());
        QCOMPARE(key.size(), file.locked ? 0 : 32);
        QCOMPARE(QFile::exists(storedPath(options, file)), file.stored);
        if (!file.stored || file.locked)
            continue;
        const QByteArray stored = readAll(storedPath(options, file));
        const QByteArray plain = stored.isEmpty() ? stored : opensslDecrypt(key, stored);
        QCOMPARE(QCryptographicHash::hash(plain, QCryptographicHash::Sha1).toHex(), file.sha1.toHex());
    }
}

void TestSampleEncrypted::saltedDescriptors()
{
    QTemporaryDir home;
    SampleOptions options;
    options.folder = home.filePath(u"backup"_s);
    options.ios = 10;
    options.password = u"secret"_s;
    options.saltedDescriptors = true;
    options.files = 3;
    const SampleSummary summary = makeSample(options);
    const QString catalogue = options.folder + u"/Manifest.db"_s;
    const QByteArray salt = blob(catalogue, u"select value from Properties where key='salt'"_s);
    const QByteArray key = QCryptographicHash::hash("secret" + salt, QCryptographicHash::Sha1).left(16);
    const QByteArray descriptor =
        blob(catalogue, u"select file from Files where fileID='%1'"_s.arg(summary.files.front().fileId));
    const QByteArray plain =
        runTool(u"openssl"_s,
                {u"enc"_s, u"-d"_s, u"-aes-128-cbc"_s, u"-K"_s, QString::fromLatin1(key.toHex()), u"-iv"_s,
                 u"000102030405060708090A0B0C0D0E0F"_s},
                descriptor);
    QCOMPARE(recordOf(plain)[u"Size"_s], QVariant(summary.files.front().cataloguedSize));
    const QVariantMap manifest = readPlist(readAll(options.folder + u"/Manifest.plist"_s)).toMap();
    QVERIFY(!readKeybag(manifest[u"BackupKeyBag"_s].toByteArray()).top.contains("DPIC"));
    QVERIFY(!manifest.contains(u"ManifestKey"_s));
}

void TestSampleEncrypted::optionsThatDoNotGoTogether()
{
    QTemporaryDir home;
    SampleOptions options;
    options.folder = home.filePath(u"backup"_s);
    options.saltedDescriptors = true;
    QVERIFY_THROWS_EXCEPTION(std::runtime_error, makeSample(options));
    options.password = u"p"_s;
    options.layout = Layout::Mbdb;
    QVERIFY_THROWS_EXCEPTION(std::runtime_error, makeSample(options));
    QVERIFY(!QFile::exists(options.folder + u"/Manifest.plist"_s));
}

QTEST_GUILESS_MAIN(TestSampleEncrypted)
#include "tst_sample_encrypted.moc"

#include "keybag_builder.h"

#include "backup/archived_record.h"
#include "backup/cf_type.h"
#include "backup/keybag.h"
#include "backup/mbdb_parser.h"
#include "base/error.h"
#include "sample/catalogue_record.h"
#include "sample/keyed_archive.h"
#include "sample/plist_value.h"

#include <QTest>

#include <functional>

/// Every truncation and every change of one byte: each reader gives an error, a default or another value, and
/// comes back.

namespace {
using sample::PlistValue;
using Reader = std::function<void(const QByteArray &)>;

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

PlistValue manifest()
{
    return PlistValue::Dictionary{
        {text("IsEncrypted"), true},
        {text("Date"), sample::PlistDate{7e8}},
        {text("BackupKeyBag"), QByteArray(16, 'k')},
        {text("Lockdown"), PlistValue::Dictionary{{text("DeviceName"), text("ü📱")}}},
        {text("Applications"), PlistValue::Array{3.5}}};
}

void readPlist(const QByteArray &bytes)
{
    const CFType plist = CFType::parse(bytes);
    for (const QString &key : plist.keys()) {
        const CFType value = plist.get(key);
        value.toText();
        for (const QString &inner : value.keys())
            value.get(inner).toText();
        for (qsizetype i = 0; i < std::min<qsizetype>(value.count(), 100); ++i)
            value.at(i).toText();
    }
}

sample::CatalogueRecord catalogued()
{
    sample::CatalogueRecord record;
    record.relativePath = text("Library/SMS/sms.db");
    record.target = text("/größer");
    record.digest = QByteArray(20, 'd');
    record.encryptionKey = QByteArray(44, 'k');
    record.mode = 0x81A4;
    record.modified = 1'700'000'000;
    record.size = 118784;
    return record;
}

void readRecord(const QByteArray &bytes)
{
    FileRecord before;
    before.domain = "HomeDomain";
    FileRecord record = before;
    if (ArchivedRecordReader().read(bytes, record))
        QCOMPARE(record.domain, before.domain);
    else
        QVERIFY(record == before);
}

QByteArray mbdb()
{
    FileRecord record;
    record.domain = "HomeDomain";
    record.relativePath = "Library/SMS/sms.db";
    record.encryptionKey = QByteArray(44, 'k');
    record.properties = {{"name", "value"}};
    return MBDBParser::serialise({record, record, record});
}

void readMbdb(const QByteArray &bytes)
{
    int records = 0;
    try {
        MBDBParser::readBytes(bytes, [&](FileRecord &&) { ++records; });
        QVERIFY(records <= 3);
    } catch (const Error &error) {
        QVERIFY(!error.sentence().isEmpty());
    }
}

/// A changed count of rounds is left out where trying it would take long.
bool isQuick(const Keybag &keybag, const char *tag)
{
    const QByteArray value = keybag.attributes().value(tag);
    return value.size() != 4 || qFromBigEndian<quint32>(value.constData()) < 1000 ||
           qFromBigEndian<quint32>(value.constData()) > 100'000'000;
}

void readKeybag(const QByteArray &bytes)
{
    try {
        Keybag keybag = Keybag::parse(bytes);
        if (!isQuick(keybag, "ITER") || !isQuick(keybag, "DPIC"))
            return;
        const bool unlocked = keybag.unlock("secret");
        QCOMPARE(unlocked, keybag.isUnlocked());
    } catch (const Error &error) {
        QVERIFY(error.sentence().startsWith(text("The keybag of this backup is damaged: ")));
    }
}
} // namespace

class TestDamagedBytes : public QObject
{
    Q_OBJECT

private slots:
    void truncated_data();
    void truncated();
    void changed_data();
    void changed();

private:
    void addInputs();
};

void TestDamagedBytes::addInputs()
{
    using Layout = sample::RecordLayout;
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<Reader>("read");
    QTest::newRow("Manifest.plist, binary") << binaryPlist(manifest()) << Reader(readPlist);
    QTest::newRow("Manifest.plist, XML") << xmlPlist(manifest()) << Reader(readPlist);
    QTest::newRow("file record") << archivedFileRecord(catalogued(), Layout::RootFirst) << Reader(readRecord);
    QTest::newRow("file record, root last")
        << archivedFileRecord(catalogued(), Layout::RootLast) << Reader(readRecord);
    QTest::newRow("Manifest.mbdb") << mbdb() << Reader(readMbdb);
    keybag_builder::Options oneClass;
    oneClass.classes.resize(1);
    QTest::newRow("keybag") << keybag_builder::build(oneClass) << Reader(readKeybag);
}

void TestDamagedBytes::truncated_data()
{
    addInputs();
}

void TestDamagedBytes::truncated()
{
    QFETCH(QByteArray, bytes);
    QFETCH(Reader, read);
    for (qsizetype size = 0; size <= bytes.size(); ++size) {
        // A copy of exactly that size, so that a sanitizer sees every read behind its end.
        const QByteArray cut(bytes.constData(), size);
        read(cut);
        if (QTest::currentTestFailed())
            QFAIL(qPrintable(text("cut to %1 bytes").arg(size)));
    }
}

void TestDamagedBytes::changed_data()
{
    addInputs();
}

void TestDamagedBytes::changed()
{
    QFETCH(QByteArray, bytes);
    QFETCH(Reader, read);
    for (qsizetype at = 0; at < bytes.size(); ++at) {
        const char original = bytes.at(at);
        for (int value = 0; value < 256; ++value) {
            bytes[at] = static_cast<char>(value);
            read(bytes);
            if (QTest::currentTestFailed())
                QFAIL(qPrintable(text("byte %1 changed to %2").arg(at).arg(value)));
        }
        bytes[at] = original;
    }
}

QTEST_APPLESS_MAIN(TestDamagedBytes)
#include "tst_damaged_bytes.moc"

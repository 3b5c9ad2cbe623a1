#include "keybag_builder.h"

#include "backup/keybag.h"
#include "base/error.h"

#include <QPasswordDigestor>
#include <QTest>

#include <functional>

namespace {
using namespace keybag_builder;

QByteArray hex(const char *digits)
{
    return QByteArray::fromHex(digits);
}

Options quick()
{
    return {};
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

QByteArray oneClass(const QByteArray &head, const QByteArray &key)
{
    return head + item("UUID", QByteArray(16, 'c')) + item("CLAS", number(1)) + item("WRAP", number(2)) +
           item("WPKY", key);
}
} // namespace

class TestKeybag : public QObject
{
    Q_OBJECT

private slots:
    void keyUnwrapVectors_data();
    void keyUnwrapVectors();
    void keyUnwrapRefuses_data();
    void keyUnwrapRefuses();
    void derivations_data();
    void derivations();
    void placesOfTags();
    void unlocks_data();
    void unlocks();
    void derivationCanBeStopped();
    void lockedClassStaysLocked();
    void fileKeys_data();
    void fileKeys();
    void damaged_data();
    void damaged();
};

void TestKeybag::keyUnwrapVectors_data()
{
    QTest::addColumn<QByteArray>("wrapped");
    QTest::addColumn<QByteArray>("key");
    // RFC 3394, the cases with a 256-bit key-encryption key.
    QTest::newRow("4.3, 128 bits of key")
        << hex("64E8C3F9CE0F5BA263E9777905818A2A93C8191E7D6E8AE7") << hex("00112233445566778899AABBCCDDEEFF");
    QTest::newRow("4.5, 192 bits of key")
        << hex("A8F9BC1612C68B3FF6E6F4FBE30E71E4769C8B80A32CB8958CD5D17D6B254DA1")
        << hex("00112233445566778899AABBCCDDEEFF0001020304050607");
    QTest::newRow("4.6, 256 bits of key")
        << hex("28C9F404C4B810F4CBCCB35CFB87F8263F5786E2D80ED326CBC7F0E71A99F43BFB988B9B7A02DD21")
        << hex("00112233445566778899AABBCCDDEEFF000102030405060708090A0B0C0D0E0F");
}

void TestKeybag::keyUnwrapVectors()
{
    QFETCH(QByteArray, wrapped);
    const QByteArray kek = hex("000102030405060708090A0B0C0D0E0F101112131415161718191A1B1C1D1E1F");
    QTEST(aesKeyUnwrap(kek, wrapped), "key");
    for (char &byte : wrapped) {
        byte ^= 0x01;
        QCOMPARE(aesKeyUnwrap(kek, wrapped), QByteArray());
        byte ^= 0x01;
    }
}

void TestKeybag::keyUnwrapRefuses_data()
{
    QTest::addColumn<qsizetype>("keySize");
    QTest::addColumn<qsizetype>("wrappedSize");
    QTest::newRow("no key") << qsizetype{0} << qsizetype{40};
    QTest::newRow("a shorter key") << qsizetype{16} << qsizetype{40};
    QTest::newRow("nothing") << qsizetype{32} << qsizetype{0};
    QTest::newRow("one block") << qsizetype{32} << qsizetype{16};
    QTest::newRow("not whole blocks") << qsizetype{32} << qsizetype{41};
}

void TestKeybag::keyUnwrapRefuses()
{
    QFETCH(qsizetype, keySize);
    QFETCH(qsizetype, wrappedSize);
    QCOMPARE(aesKeyUnwrap(QByteArray(keySize, 'k'), QByteArray(wrappedSize, 'w')), QByteArray());
}

void TestKeybag::derivations_data()
{
    QTest::addColumn<Options>("options");
    QTest::addColumn<QByteArray>("passwordKey");
    const auto single = [](quint32 rounds, const QByteArray &password, const QByteArray &salt) {
        Options options = quick();
        options.doubleProtection = false;
        options.password = password;
        options.iter = rounds;
        options.salt = salt;
        return options;
    };
    // RFC 3962, appendix B: PBKDF2-HMAC-SHA-1 with 256 bits of result.
    QTest::newRow("one round") << single(1, "password", "ATHENA.MIT.EDUraeburn")
                               << hex("cdedb5281bb2f801565a1122b2563515"
                                      "0ad1f7a04bb9f3a333ecc0e2e1f70837");
    QTest::newRow("two rounds") << single(2, "password", "ATHENA.MIT.EDUraeburn")
                                << hex("01dbee7f4a9e243e988b62c73cda935d"
                                       "a05378b93244ec8f48a99e61ad799d86");
    QTest::newRow("1,200 rounds") << single(1200, "password", "ATHENA.MIT.EDUraeburn")
                                  << hex("5c08eb61fdf71e4e4ec3cf6ba1f5512b"
                                         "a7e52ddbc5e5142f708a31e2e62b1e13");
    QTest::newRow("password longer than a block of the hash")
        << single(1200, QByteArray(65, 'X'), "pass phrase exceeds block size")
        << hex("9ccad6d468770cd51b10e6a68721be61"
               "1a8b4d282601db3b36be9246915ec82a");
    // Both steps, by Qt's own derivation, which the next test function's vectors tie to the RFCs.
    Options both = quick();
    both.dpic = 7;
    both.iter = 5;
    const QByteArray outer =
        QPasswordDigestor::deriveKeyPbkdf2(QCryptographicHash::Sha256, both.password, both.dpsl, 7, 32);
    QTest::newRow("SHA-256, then SHA-1")
        << both << QPasswordDigestor::deriveKeyPbkdf2(QCryptographicHash::Sha1, outer, both.salt, 5, 32);
}

void TestKeybag::derivations()
{
    // RFC 6070 (SHA-1, 4,096 rounds) and RFC 7914, section 11 (SHA-256).
    QCOMPARE(QPasswordDigestor::deriveKeyPbkdf2(QCryptographicHash::Sha1, "password", "salt", 4096, 20),
             hex("4b007901b765489abead49d926f721d065a429c1"));
    QCOMPARE(QPasswordDigestor::deriveKeyPbkdf2(QCryptographicHash::Sha256, "passwd", "salt", 1, 32),
             hex("55ac046e56e3089fec1691c22544b605f94185216dde0465e68b9d57c20dacbc"));
    QFETCH(Options, options);
    QFETCH(QByteArray, passwordKey);
    const QByteArray classKey(32, 'C');
    Keybag keybag = Keybag::parse(oneClass(header(options), sample::wrapKey(passwordKey, classKey)));
    QVERIFY(keybag.unlock(options.password));
    QCOMPARE(keybag.classes().value(1).value("KEY"), classKey);
}

void TestKeybag::placesOfTags()
{
    const QByteArray bytes = item("WRAP", number(9)) + item("UUID", "bag") + item("CLAS", number(7)) +
                             item("SALT", "salt") + item("UUID", "first") + item("CLAS", number(1)) +
                             item("WRAP", number(2)) + item("LATE", "late") + item("UUID", "no class") +
                             item("WRAP", number(3)) + item("UUID", "last") + item("PBKY", "public") +
                             item("CLAS", number(2)) + item("KTYP", {});
    const Keybag keybag = Keybag::parse(bytes);
    const Keybag::Attributes top = {
        {"WRAP", number(9)}, {"UUID", "bag"}, {"CLAS", number(7)}, {"SALT", "salt"}, {"LATE", "late"}};
    QCOMPARE(keybag.attributes(), top);
    const QMap<quint32, Keybag::Attributes> classes = {
        {1, {{"UUID", "first"}, {"CLAS", number(1)}, {"WRAP", number(2)}}},
        {2, {{"UUID", "last"}, {"PBKY", "public"}, {"CLAS", number(2)}, {"KTYP", ""}}}};
    QCOMPARE(keybag.classes(), classes);
    QVERIFY(!keybag.isUnlocked());
    QVERIFY(!keybag.hasDoubleProtection());
}

void TestKeybag::unlocks_data()
{
    QTest::addColumn<Options>("options");
    Options single = quick();
    single.doubleProtection = false;
    Options umlaut = quick();
    umlaut.password = "Größe 🔑";
    Options empty = quick();
    empty.password = "";
    QTest::newRow("double") << quick();
    QTest::newRow("single") << single;
    QTest::newRow("password with an umlaut") << umlaut;
    QTest::newRow("empty password") << empty;
}

void TestKeybag::unlocks()
{
    QFETCH(Options, options);
    Keybag keybag = Keybag::parse(build(options));
    QCOMPARE(keybag.hasDoubleProtection(), options.doubleProtection);
    QVERIFY(!keybag.unlock(options.password + 'x'));
    QVERIFY(!keybag.isUnlocked());
    QVERIFY(!keybag.classes().value(1).contains("KEY"));
    QVERIFY(keybag.unlock(options.password));
    QVERIFY(keybag.isUnlocked());
    for (const ClassEntry &entry : options.classes)
        QCOMPARE(keybag.classes().value(entry.number).value("KEY"), entry.key);
    QVERIFY(!keybag.unlock("wrong"));
    QVERIFY(keybag.isUnlocked());
}

void TestKeybag::derivationCanBeStopped()
{
    Options options = quick();
    options.iter = 400'000;
    Keybag keybag = Keybag::parse(build(options));
    std::uint64_t last = 0;
    QVERIFY(keybag.unlock(options.password, [&](std::uint64_t done, std::uint64_t total) {
        QVERIFY(done > last && done <= total && total >= 800'000);
        last = done;
    }));
    QVERIFY(last >= 700'000);
    Keybag stopped = Keybag::parse(build(options));
    int told = 0;
    QVERIFY_EXCEPTION_THROWN(stopped.unlock(options.password,
                                            [&](std::uint64_t, std::uint64_t) {
                                                ++told;
                                                throw Cancelled();
                                            }),
                             Cancelled);
    QCOMPARE(told, 1);
    QVERIFY(!stopped.isUnlocked());
}

void TestKeybag::lockedClassStaysLocked()
{
    Options options = quick();
    options.classes.append({5, 1, QByteArray(32, '\x55')});
    Keybag keybag = Keybag::parse(build(options));
    QVERIFY(keybag.unlock(options.password));
    QVERIFY(!keybag.classes().value(5).contains("KEY"));
    const QByteArray wrapped = sample::wrapKey(QByteArray(32, '\x55'), QByteArray(32, 'f'));
    QCOMPARE(keybag.unwrapFileKey(5, wrapped), QByteArray());
}

void TestKeybag::fileKeys_data()
{
    QTest::addColumn<quint32>("protectionClass");
    QTest::addColumn<QByteArray>("wrapped");
    QTest::addColumn<bool>("unwraps");
    QTest::addColumn<bool>("unwrapsWithAny");
    const QByteArray wrapped = sample::wrapKey(QByteArray(32, '\x44'), QByteArray(32, 'f'));
    QTest::newRow("its class") << 4U << wrapped << true << true;
    QTest::newRow("another class") << 1U << wrapped << false << true;
    QTest::newRow("an unknown class") << 99U << wrapped << false << true;
    QTest::newRow("39 bytes") << 4U << wrapped.chopped(1) << false << false;
    QTest::newRow("41 bytes") << 4U << wrapped + 'x' << false << false;
    QTest::newRow("48 bytes") << 4U << wrapped + wrapped.first(8) << false << false;
    QTest::newRow("no bytes") << 4U << QByteArray() << false << false;
}

void TestKeybag::fileKeys()
{
    QFETCH(quint32, protectionClass);
    QFETCH(QByteArray, wrapped);
    QFETCH(bool, unwraps);
    QFETCH(bool, unwrapsWithAny);
    Keybag keybag = Keybag::parse(build());
    QCOMPARE(keybag.unwrapFileKey(protectionClass, wrapped), QByteArray());
    QVERIFY(keybag.unlock(quick().password));
    const QByteArray key(32, 'f');
    QCOMPARE(keybag.unwrapFileKey(protectionClass, wrapped), unwraps ? key : QByteArray());
    QCOMPARE(keybag.unwrapWithAnyClass(wrapped), unwrapsWithAny ? key : QByteArray());
}

void TestKeybag::damaged_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("hint");
    const auto add = [](const char *name, const QByteArray &bytes, const char *hint) {
        QTest::newRow(name) << bytes << QString::fromLatin1(hint);
    };
    const auto with = [](const std::function<void(Options &)> &change) {
        Options options = quick();
        change(options);
        return header(options);
    };
    const QByteArray key(40, 'k');
    add("nothing", {}, "class");
    add("no classes", header(quick()), "class");
    add("cut inside a tag", build() + "UU", "ends");
    add("cut inside a length", build() + QByteArray("UUID\0\0\0", 7), "ends");
    add("cut inside a value", build().chopped(1), "ends");
    add("a length that overflows", build() + QByteArray("UUID\xff\xff\xff\xff", 8), "ends");
    add("a class number of 3 bytes", header(quick()) + item("UUID", "c") + item("CLAS", "123"), "CLAS");
    add("a WRAP of 5 bytes", oneClass(header(quick()), key) + item("WRAP", "12345"), "WRAP");
    add("a class key of 39 bytes", oneClass(header(quick()), key.chopped(1)), "class 1");
    add("a class key of 48 bytes", oneClass(header(quick()), key + key.first(8)), "class 1");
    add("an empty class key", oneClass(header(quick()), {}), "class 1");
    add("no salt", oneClass(item("UUID", "u") + item("ITER", number(2)), key), "SALT");
    add("no rounds", oneClass(item("UUID", "u") + item("SALT", "s"), key), "ITER");
    add("rounds of 2 bytes", oneClass(item("UUID", "u") + item("SALT", "s") + item("ITER", "12"), key),
        "ITER");
    add("zero rounds", oneClass(with([](Options &o) { o.iter = 0; }), key), "ITER");
    add("more rounds than anybody waits for", oneClass(with([](Options &o) { o.iter = 100'000'001; }), key),
        "ITER");
    add("zero outer rounds", oneClass(with([](Options &o) { o.dpic = 0; }), key), "DPIC");
    add("most outer rounds", oneClass(with([](Options &o) { o.dpic = 0xFFFFFFFF; }), key), "DPIC");
}

void TestKeybag::damaged()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, hint);
    const QString error = errorOf([&] { Keybag::parse(bytes).unlock("secret"); });
    QVERIFY2(error.startsWith(QStringLiteral("The keybag of this backup is damaged: ")), qPrintable(error));
    QVERIFY2(error.contains(hint), qPrintable(error));
}

QTEST_APPLESS_MAIN(TestKeybag)
#include "tst_keybag.moc"

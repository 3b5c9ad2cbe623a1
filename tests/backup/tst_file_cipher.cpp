#include "backup/file_cipher.h"
#include "base/error.h"
#include "sample/cipher.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <functional>
#include <vector>

#include <sys/resource.h>

namespace {
constexpr qsizetype mebi = 1024 * 1024;
const QByteArray key(32, 'k');
const QString wrongPadding = QStringLiteral("BackupManifest::decryptFile, last byte must GT 0 and LET 16");

QByteArray content(qsizetype size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    quint32 state = 1;
    for (char &byte : bytes) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<char>(state >> 24);
    }
    return bytes;
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

/// A folder with a source and a place for what is made of it.
class Place
{
public:
    QString source() const { return m_folder.filePath(QStringLiteral("source")); }
    QString target() const { return m_folder.filePath(QStringLiteral("out/target")); }

    void write(const QByteArray &bytes) const
    {
        QFile file(source());
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), bytes.size());
    }
    QByteArray result() const
    {
        QFile file(target());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
    }
    /// The names in the target's folder, other than the target.
    QStringList leftovers() const
    {
        QStringList names = QDir(m_folder.filePath(QStringLiteral("out")))
                                .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        names.removeAll(QStringLiteral("target"));
        return names;
    }
    void makeFolder() const { QVERIFY(QDir().mkpath(m_folder.filePath(QStringLiteral("out")))); }

private:
    QTemporaryDir m_folder;
};

enum class Job { Copy, Decrypt, Encrypt };

void run(Job job, const Place &place, const CopyProgress &progress = {})
{
    switch (job) {
    case Job::Copy:
        return copyFile(place.source(), place.target(), progress);
    case Job::Decrypt:
        return decryptFile(key, place.source(), place.target(), progress);
    case Job::Encrypt:
        return encryptFile(key, place.source(), place.target());
    }
}

void addJobs()
{
    QTest::addColumn<Job>("job");
    QTest::newRow("copy") << Job::Copy;
    QTest::newRow("decrypt") << Job::Decrypt;
    QTest::newRow("encrypt") << Job::Encrypt;
}
} // namespace

class TestFileCipher : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everySize_data();
    void everySize();
    void publishedVector();
    void progressAfterEachChunk();
    void badContent_data();
    void badContent();
    void sourceMissing_data();
    void sourceMissing();
    void targetCannotBeMade_data();
    void targetCannotBeMade();
    void diskFull_data();
    void diskFull();
    void cancelled_data();
    void cancelled();
    void sourceShrinks_data();
    void sourceShrinks();
    void sourceGrows_data();
    void sourceGrows();
    void linkIsReplaced();
    void failureKeepsTheOldFile();
};

void TestFileCipher::initTestCase()
{
    // A write beyond the limit of the tests for a full disk is to fail, not to end the process.
    std::signal(SIGXFSZ, SIG_IGN);
}

void TestFileCipher::everySize_data()
{
    QTest::addColumn<qsizetype>("size");
    for (const qsizetype size : {qsizetype{0}, qsizetype{1}, qsizetype{15}, qsizetype{16}, qsizetype{17},
                                 qsizetype{8176}, qsizetype{8191}, qsizetype{8192}, 65536 - qsizetype{1},
                                 mebi - 16, mebi - 1, mebi, mebi + 1, 2 * mebi - 1, 2 * mebi, 5 * mebi + 3})
        QTest::addRow("%lld bytes", static_cast<long long>(size)) << size;
}

void TestFileCipher::everySize()
{
    QFETCH(qsizetype, size);
    const QByteArray plain = content(size);
    const QByteArray cipher = sample::encryptContent(key, plain);
    Place place;
    place.write(plain);
    run(Job::Copy, place);
    QVERIFY(place.result() == plain);
    run(Job::Encrypt, place);
    QVERIFY(place.result() == cipher);
    place.write(cipher);
    run(Job::Decrypt, place);
    QVERIFY(place.result() == plain);
    QCOMPARE(place.leftovers(), QStringList());
}

/// NIST SP 800-38A, F.2.6 (CBC-AES256.Decrypt), whose vector of 00 to 0F becomes part of the first block
/// here. The last block ends with 16, which is a padding.
void TestFileCipher::publishedVector()
{
    Place place;
    place.write(QByteArray::fromHex("f58c4c04d6e5f1ba779eabfb5f7bfbd69cfc4e967edb808d679f777bc6702c7d"
                                    "39f23369a9d9bacfa530e26304231461b2eb05e2c39be9fcda6c19078c6a9d1b"));
    decryptFile(QByteArray::fromHex("603deb1015ca71be2b73aef0857d77811f352c073b6108d72d9810a30914dff4"),
                place.source(), place.target());
    QByteArray expected = QByteArray::fromHex("6bc1bee22e409f96e93d7e117393172a"
                                              "ae2d8a571e03ac9c9eb76fac45af8e51"
                                              "30c81c46a35ce411e5fbc1191a0a52ef");
    for (int i = 0; i < 16; ++i)
        expected[i] = static_cast<char>(expected[i] ^ i);
    QCOMPARE(place.result(), expected);
}

void TestFileCipher::progressAfterEachChunk()
{
    Place place;
    place.write(sample::encryptContent(key, content(2 * 8192)));
    for (const Job job : {Job::Copy, Job::Decrypt}) {
        std::vector<std::uint64_t> done;
        run(job, place, [&](std::uint64_t total, std::uint64_t now) {
            QCOMPARE(total, std::uint64_t{16400});
            done.push_back(now);
        });
        QVERIFY(done == (std::vector<std::uint64_t>{8192, 16384, 16400}));
    }
}

void TestFileCipher::badContent_data()
{
    QTest::addColumn<QByteArray>("plain"); // is encrypted without padding
    QTest::newRow("last byte 0") << content(31) + '\0';
    QTest::newRow("last byte 17") << content(31) + '\x11';
    QTest::newRow("last byte 255") << content(8191) + '\xff';
    QTest::newRow("last byte 17 of a large file") << content(3 * mebi - 1) + '\x11';
}

void TestFileCipher::badContent()
{
    QFETCH(QByteArray, plain);
    Place place;
    const QByteArray cipher = sample::encryptContent(key, plain, false);
    place.write(cipher);
    QCOMPARE(errorOf([&] { run(Job::Decrypt, place); }), wrongPadding);
    QVERIFY(!QFile::exists(place.target()));
    decryptFile(key, place.source(), place.target(), {}, Padding::KeepIfBroken);
    QVERIFY(place.result() == plain);

    place.write(cipher + 'x');
    QCOMPARE(errorOf([&] { run(Job::Decrypt, place); }),
             place.source() + QStringLiteral(", POLARSSL_ERR_AES_INVALID_INPUT_LENGTH (rd%16 != 0)."));
    decryptFile(key, place.source(), place.target(), {}, Padding::KeepIfBroken);
    QVERIFY(place.result() == plain);
    QCOMPARE(place.leftovers(), QStringList());
}

void TestFileCipher::sourceMissing_data()
{
    addJobs();
}

void TestFileCipher::sourceMissing()
{
    QFETCH(Job, job);
    Place place;
    QCOMPARE(errorOf([&] { run(job, place); }),
             QStringLiteral("can not open %1. No such file or directory").arg(place.source()));
    QCOMPARE(errorOf([&] { decryptFile("short", place.source(), place.target()); }),
             QStringLiteral("%1, the key has 5 bytes instead of 32.").arg(place.source()));
}

void TestFileCipher::targetCannotBeMade_data()
{
    addJobs();
}

void TestFileCipher::targetCannotBeMade()
{
    QFETCH(Job, job);
    Place place;
    place.write(sample::encryptContent(key, "x"));
    const QString expected = QStringLiteral("can not create %1. ").arg(place.target());
    place.makeFolder();
    QVERIFY(QDir().mkdir(place.target()));
    QVERIFY(errorOf([&] { run(job, place); }).startsWith(expected));
    QCOMPARE(place.leftovers(), QStringList());
    QVERIFY(QDir().rmdir(place.target()));

    QVERIFY(QDir().rmdir(QFileInfo(place.target()).path()));
    QVERIFY(QFile::copy(place.source(), QFileInfo(place.target()).path()));
    QVERIFY(errorOf([&] { run(job, place); }).startsWith(expected));
}

void TestFileCipher::diskFull_data()
{
    QTest::addColumn<Job>("job");
    QTest::addColumn<qsizetype>("size");
    for (const auto &[name, size] : {std::pair("small", 8192), std::pair("large", int{5 * mebi})}) {
        QTest::addRow("copy a %s file", name) << Job::Copy << qsizetype{size};
        QTest::addRow("decrypt a %s file", name) << Job::Decrypt << qsizetype{size};
        QTest::addRow("encrypt a %s file", name) << Job::Encrypt << qsizetype{size};
    }
}

void TestFileCipher::diskFull()
{
    QFETCH(Job, job);
    QFETCH(qsizetype, size);
    Place place;
    place.write(sample::encryptContent(key, content(size)));
    rlimit before;
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit small = {static_cast<rlim_t>(size / 2), before.rlim_max};
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
    const QString error = errorOf([&] { run(job, place); });
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &before), 0);
    QCOMPARE(error, QStringLiteral("can not write %1. File too large").arg(place.target()));
    QVERIFY(!QFile::exists(place.target()));
    QCOMPARE(place.leftovers(), QStringList());
}

void TestFileCipher::cancelled_data()
{
    QTest::addColumn<Job>("job");
    QTest::addColumn<qsizetype>("size");
    QTest::newRow("copy") << Job::Copy << 3 * mebi;
    QTest::newRow("decrypt a small file") << Job::Decrypt << qsizetype{20000};
    QTest::newRow("decrypt a large file") << Job::Decrypt << 9 * mebi;
}

void TestFileCipher::cancelled()
{
    QFETCH(Job, job);
    QFETCH(qsizetype, size);
    Place place;
    place.write(sample::encryptContent(key, content(size)));
    const auto stopHalfway = [](std::uint64_t total, std::uint64_t done) {
        if (done > total / 2)
            throw Cancelled();
    };
    QVERIFY_EXCEPTION_THROWN(run(job, place, stopHalfway), Cancelled);
    QVERIFY(!QFile::exists(place.target()));
    QCOMPARE(place.leftovers(), QStringList());
}

void TestFileCipher::sourceShrinks_data()
{
    QTest::addColumn<Job>("job");
    QTest::addColumn<QString>("error");
    QTest::newRow("copy") << Job::Copy
                          << QStringLiteral("can not read %1. The file became shorter while it was copied.");
    QTest::newRow("decrypt") << Job::Decrypt
                             << QStringLiteral("BackupManifest::decryptFile, imcomplete IO read (rd=0).");
}

void TestFileCipher::sourceShrinks()
{
    QFETCH(Job, job);
    QFETCH(QString, error);
    Place place;
    place.write(sample::encryptContent(key, content(5 * mebi)));
    const auto shrink = [&](std::uint64_t, std::uint64_t) { QFile::resize(place.source(), 100); };
    QCOMPARE(errorOf([&] { run(job, place, shrink); }), error.replace(QStringLiteral("%1"), place.source()));
    QVERIFY(!QFile::exists(place.target()));
    QCOMPARE(place.leftovers(), QStringList());
}

void TestFileCipher::sourceGrows_data()
{
    QTest::addColumn<Job>("job");
    QTest::newRow("copy") << Job::Copy;
    QTest::newRow("decrypt") << Job::Decrypt;
}

void TestFileCipher::sourceGrows()
{
    QFETCH(Job, job);
    Place place;
    const QByteArray plain = content(3 * mebi);
    const QByteArray cipher = sample::encryptContent(key, plain);
    place.write(cipher);
    const auto grow = [&](std::uint64_t total, std::uint64_t) {
        QCOMPARE(total, static_cast<std::uint64_t>(cipher.size()));
        QFile file(place.source());
        QVERIFY(file.open(QIODevice::Append));
        file.write("more");
    };
    run(job, place, grow);
    QVERIFY(place.result() == (job == Job::Copy ? cipher : plain));
}

void TestFileCipher::linkIsReplaced()
{
    Place place;
    place.write(sample::encryptContent(key, "secret"));
    place.makeFolder();
    QTemporaryDir outside;
    const QString victim = outside.filePath(QStringLiteral("victim"));
    QVERIFY(QFile::copy(place.source(), victim));
    for (const Job job : {Job::Copy, Job::Decrypt, Job::Encrypt}) {
        QFile::remove(place.target());
        QVERIFY(QFile::link(victim, place.target()));
        run(job, place);
        QVERIFY(!QFileInfo(place.target()).isSymLink());
        QFile untouched(victim);
        QVERIFY(untouched.open(QIODevice::ReadOnly));
        QCOMPARE(untouched.readAll(), sample::encryptContent(key, "secret"));
    }
}

void TestFileCipher::failureKeepsTheOldFile()
{
    Place place;
    place.write(sample::encryptContent(key, "old"));
    run(Job::Decrypt, place);
    place.write(sample::encryptContent(key, QByteArray(16, '\0'), false));
    QCOMPARE(errorOf([&] { run(Job::Decrypt, place); }), wrongPadding);
    QCOMPARE(place.result(), QByteArray("old"));
    place.write(sample::encryptContent(key, "new"));
    run(Job::Decrypt, place);
    QCOMPARE(place.result(), QByteArray("new"));
}

QTEST_APPLESS_MAIN(TestFileCipher)
#include "tst_file_cipher.moc"

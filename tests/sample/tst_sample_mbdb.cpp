#include "outside_tools.h"

#include <QCryptographicHash>
#include <QDir>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

using namespace Qt::StringLiterals;

class TestSampleMbdb : public QObject
{
    Q_OBJECT

private slots:
    void everyRecordReadsBack_data();
    void everyRecordReadsBack();
};

namespace {

struct Record
{
    QByteArray domain, path, target, digest, key;
    quint64 mode = 0, size = 0, protectionClass = 0, modified = 0;
    std::vector<QByteArray> values;
};

/// Walks the records from front to back; runs into a failed assertion where they do not fit.
class Walker
{
public:
    explicit Walker(const QByteArray &bytes) : m_bytes(bytes) {}

    bool atEnd() const { return m_at == m_bytes.size(); }

    quint64 integer(int width)
    {
        quint64 value = 0;
        for (const char byte : take(width))
            value = value << 8 | static_cast<uchar>(byte);
        return value;
    }

    QByteArray string()
    {
        const quint64 length = integer(2);
        return length == 0xFFFF ? QByteArray() : take(static_cast<qsizetype>(length));
    }

    Record record()
    {
        Record record{string(), string(), string(), string(), string(), 0, 0, 0, 0, {}};
        record.mode = integer(2);
        integer(8);
        integer(8);
        record.modified = integer(4);
        integer(8);
        record.size = integer(8);
        record.protectionClass = integer(1);
        for (quint64 left = integer(1); left > 0; --left) {
            string();
            record.values.push_back(string());
        }
        return record;
    }

    QByteArray take(qsizetype length)
    {
        if (length > m_bytes.size() - m_at)
            throw std::runtime_error("the records do not fit the file");
        m_at += length;
        return m_bytes.mid(m_at - length, length);
    }

private:
    QByteArray m_bytes;
    qsizetype m_at = 0;
};

} // namespace

void TestSampleMbdb::everyRecordReadsBack_data()
{
    QTest::addColumn<QString>("password");
    QTest::newRow("plain") << QString();
    QTest::newRow("encrypted") << u"secret"_s;
}

void TestSampleMbdb::everyRecordReadsBack()
{
    QFETCH(QString, password);
    QTemporaryDir home;
    SampleOptions options;
    options.folder = home.filePath(u"backup"_s);
    options.layout = SampleOptions::Layout::Mbdb;
    options.ios = 9;
    options.password = password;
    const SampleSummary summary = makeSample(options);
    QVERIFY(!QFile::exists(options.folder + u"/Manifest.db"_s));

    Walker walker(readAll(options.folder + u"/Manifest.mbdb"_s));
    QCOMPARE(walker.take(6), QByteArray("mbdb\x05\x00", 6));
    QHash<QString, Record> records;
    QSet<std::size_t> propertyCounts;
    QSet<quint64> kinds;
    while (!walker.atEnd()) {
        const Record record = walker.record();
        const QByteArray id =
            QCryptographicHash::hash(record.domain + '-' + record.path, QCryptographicHash::Sha1);
        records[QString::fromLatin1(id.toHex())] = record;
        propertyCounts << record.values.size();
        kinds << (record.mode & 0170000);
        QCOMPARE(!record.target.isEmpty(), (record.mode & 0170000) == 0120000);
    }
    QCOMPARE(records.size(), summary.counts.catalogueRows);
    QCOMPARE(propertyCounts, (QSet<std::size_t>{0, 1, 11, 12}));
    QCOMPARE(kinds, (QSet<quint64>{0040000, 0100000, 0120000}));

    for (const SampleFile &file : summary.files) {
        QVERIFY2(records.contains(file.fileId), qPrintable(file.relativePath));
        const Record &record = records[file.fileId];
        QCOMPARE(record.size, static_cast<quint64>(file.cataloguedSize));
        QCOMPARE(record.modified, static_cast<quint64>(file.modified));
        const bool stray = file.relativePath.contains(u"odd"_s);
        QCOMPARE(record.key.size(), password.isEmpty() && !stray ? 0 : 44);
        QCOMPARE(QFile::exists(storedPath(options, file)), file.stored);
        if (file.stored && password.isEmpty())
            QCOMPARE(QCryptographicHash::hash(readAll(storedPath(options, file)), QCryptographicHash::Sha1),
                     file.sha1);
    }
}

QTEST_GUILESS_MAIN(TestSampleMbdb)
#include "tst_sample_mbdb.moc"

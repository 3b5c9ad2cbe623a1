#include "base/error.h"
#include "sample/sample_maker.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

class TestSampleBackup : public QObject
{
    Q_OBJECT

private slots:
    void sameOptionsSameBytes();
    void databasesAreWhole();
    void everyStoredFileHasARow();
    void refusesAFolderWithContent();
};

namespace {

/// Relative path, time of last change and content of every file below a folder.
QMap<QString, QPair<qint64, QByteArray>> everything(const QString &folder)
{
    QMap<QString, QPair<qint64, QByteArray>> result;
    QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (file.open(QIODevice::ReadOnly))
            result[QDir(folder).relativeFilePath(file.fileName())] = {
                file.fileTime(QFileDevice::FileModificationTime).toSecsSinceEpoch(), file.readAll()};
    }
    return result;
}

QString firstValue(const QString &path, const char *sql)
{
    sqlite3 *database = nullptr;
    sqlite3_stmt *statement = nullptr;
    const QByteArray uri = "file:" + path.toUtf8() + "?immutable=1";
    sqlite3_open_v2(uri.constData(), &database, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr);
    QString result;
    if (sqlite3_prepare_v2(database, sql, -1, &statement, nullptr) == SQLITE_OK &&
        sqlite3_step(statement) == SQLITE_ROW)
        result = QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(statement, 0)));
    else
        result = QString::fromUtf8(sqlite3_errmsg(database));
    sqlite3_finalize(statement);
    sqlite3_close(database);
    return result;
}

QString storedPath(const QString &folder, const SampleFile &file)
{
    return folder + u'/' + file.fileId.left(2) + u'/' + file.fileId;
}

} // namespace

void TestSampleBackup::sameOptionsSameBytes()
{
    QTemporaryDir home;
    SampleOptions options;
    options.folder = home.filePath(u"one"_s);
    makeSample(options);
    options.folder = home.filePath(u"two"_s);
    makeSample(options);
    const auto one = everything(home.filePath(u"one"_s));
    const auto two = everything(home.filePath(u"two"_s));
    QVERIFY(one.size() >= 5);
    QCOMPARE(one.keys(), two.keys());
    for (auto file = one.begin(); file != one.end(); ++file)
        QVERIFY2(file.value() == two[file.key()], qPrintable(file.key()));
}

void TestSampleBackup::databasesAreWhole()
{
    QTemporaryDir home;
    SampleOptions options;
    options.folder = home.filePath(u"backup"_s);
    const SampleSummary summary = makeSample(options);
    QCOMPARE(firstValue(options.folder + u"/Manifest.db"_s, "pragma integrity_check"), u"ok"_s);
    QCOMPARE(firstValue(options.folder + u"/Manifest.db"_s, "select count(*) from Files").toInt(),
             summary.counts.catalogueRows);

    const SampleFile *messages = summary.file(u"HomeDomain"_s, u"Library/SMS/sms.db"_s);
    QVERIFY(messages);
    const QString path = storedPath(options.folder, *messages);
    QCOMPARE(firstValue(path, "pragma integrity_check"), u"ok"_s);
    QCOMPARE(firstValue(path, "select count(*) from message").toInt(), options.messages);
    QCOMPARE(summary.counts.messageRows, options.messages);
    QCOMPARE(firstValue(path, "select count(*) from chat_message_join as j inner join message as m "
                              "on j.message_id = m.rowid and m.item_type <> 4")
                 .toInt(),
             summary.counts.joinedMessages);
    QCOMPARE(firstValue(path,
                        "select count(distinct m.rowid) from chat_message_join as j inner join message as m "
                        "on j.message_id = m.rowid inner join chat as c on c.rowid=j.chat_id "
                        "and m.item_type = 0")
                 .toInt(),
             summary.counts.listedMessages);
}

void TestSampleBackup::everyStoredFileHasARow()
{
    QTemporaryDir home;
    SampleOptions options;
    options.folder = home.filePath(u"backup"_s);
    const SampleSummary summary = makeSample(options);
    for (const SampleFile &file : summary.files) {
        QFile stored(storedPath(options.folder, file));
        QCOMPARE(stored.exists(), file.stored);
        if (!file.stored)
            continue;
        QVERIFY(stored.open(QIODevice::ReadOnly));
        QCOMPARE(QCryptographicHash::hash(stored.readAll(), QCryptographicHash::Sha1), file.sha1);
        QCOMPARE(stored.size(), file.sizeBytes);
        QCOMPARE(stored.fileTime(QFileDevice::FileModificationTime).toSecsSinceEpoch(), file.modified);
    }
}

void TestSampleBackup::refusesAFolderWithContent()
{
    QTemporaryDir home;
    QVERIFY(QDir(home.path()).mkdir(u"something"_s));
    SampleOptions options;
    options.folder = home.path();
    QVERIFY_EXCEPTION_THROWN(makeSample(options), Error);
}

QTEST_GUILESS_MAIN(TestSampleBackup)
#include "tst_sample_backup.moc"

#include "backup/backup_manifest.h"
#include "base/texts.h"
#include "export/message_export.h"
#include "messages/abs_message_db.h"
#include "read_back.h"
#include "resources/resources.h"
#include "sample/sample_maker.h"
#include "sample_messages.h"

#include <QTemporaryDir>
#include <QTest>

#include <climits>

/// From a backup folder to pages, through everything between.
class TestBackupExport : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void pagesLeadToTheirFiles_data();
    void pagesLeadToTheirFiles();

private:
    QTemporaryDir m_temporary;
};

void TestBackupExport::initTestCase()
{
    initResources();
    installTexts();
    // Thumbnails stay in the temporary folder.
    qputenv("TMPDIR", m_temporary.path().toUtf8());
}

void TestBackupExport::pagesLeadToTheirFiles_data()
{
    using Layout = SampleOptions::Layout;
    QTest::addColumn<Layout>("layout");
    QTest::addColumn<int>("ios");
    QTest::addColumn<QString>("password");
    QTest::newRow("iOS 6, older layout") << Layout::Mbdb << 6 << "";
    QTest::newRow("iOS 9, older layout, encrypted") << Layout::Mbdb << 9 << "secret";
    QTest::newRow("iOS 12") << Layout::Modern << 12 << "";
    QTest::newRow("iOS 17, encrypted") << Layout::Modern << 17 << "secret";
}

void TestBackupExport::pagesLeadToTheirFiles()
{
    QFETCH(SampleOptions::Layout, layout);
    QFETCH(int, ios);
    QFETCH(QString, password);
    const QTemporaryDir folder;
    SampleOptions options;
    options.folder = folder.filePath("backup");
    options.layout = layout;
    options.ios = ios;
    options.password = password;
    makeSample(options);

    BackupManifest backup(options.folder);
    backup.loadInfo();
    QVERIFY(password.isEmpty() || backup.openEncrypted(password));
    NoProgress progress;
    backup.buildIndex(progress);
    const std::unique_ptr<AbsMessageDb> db = openMessageDb(backup);
    db->loadChats();
    db->loadMessages(0, progress);
    const std::vector<MessageRef> refs = db->select({}, INT_MIN, INT_MAX);
    const ExportedMessages exported =
        exportMessages(refs, MessageFormat::Html, folder.filePath("out"), &backup, progress);

    QCOMPARE(exported.report.done, qint64(refs.size()));
    QCOMPARE(namesIn(folder.filePath("out")).size(), exported.files.size());
    QVERIFY(exported.attachmentsCopied >= 10);
    QVERIFY(exported.report.count("IDS_ISSUE_ATTACHMENTS_ABSENT") > 0);
    QCOMPARE(exported.report.count(IssueKind::Locked), 0);
    qsizetype pictures = 0;
    const QJsonArray pages = readWith("read_page.py", exported.files).array();
    QCOMPARE(pages.size(), exported.files.size());
    for (const QJsonValue &page : pages) {
        QCOMPARE(strings(page["missing"]), QStringList());
        pictures += strings(page["pictures"]).filter(".thumb").size();
    }
    QVERIFY(pictures >= 3);
}

QTEST_MAIN(TestBackupExport)
#include "tst_backup_export.moc"

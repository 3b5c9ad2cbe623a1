#include "backup/backup_fixture.h"

#include <QTest>

class TestBackupManifest : public QObject
{
    Q_OBJECT

private slots:
    void opensEveryKind_data();
    void opensEveryKind();
};

namespace {
FileCatalogue::Index indexOf(const BackupManifest &backup, const SampleFile &file)
{
    return backup.catalogue().find(file.domain.toUtf8(), file.relativePath.toUtf8());
}
} // namespace

void TestBackupManifest::opensEveryKind_data()
{
    QTest::addColumn<SampleOptions>("options");
    const auto row = [](const char *name, SampleOptions::Layout layout, int ios, const char *password) {
        SampleOptions options;
        options.layout = layout;
        options.ios = ios;
        options.password = QString::fromUtf8(password);
        return &(QTest::newRow(name) << options);
    };
    using Layout = SampleOptions::Layout;
    row("modern, plain", Layout::Modern, 17, "");
    row("older, plain", Layout::Mbdb, 6, "");
    row("modern, encrypted", Layout::Modern, 17, "pässwörd");
    row("older, encrypted", Layout::Mbdb, 9, "x");
}

void TestBackupManifest::opensEveryKind()
{
    QFETCH(SampleOptions, options);
    const BackupFixture fixture(options);
    const QString before = fingerprint(fixture.folder());
    {
        BackupManifest backup(fixture.folder());
        backup.loadInfo();
        QCOMPARE(backup.info().encrypted, !options.password.isEmpty());
        if (!options.password.isEmpty()) {
            QVERIFY(!backup.openEncrypted(QStringLiteral("wrong")));
            QVERIFY(!backup.isUnlocked());
            QVERIFY(backup.openEncrypted(options.password));
        }
        QVERIFY(backup.isUnlocked());
        NoProgress progress;
        backup.buildIndex(progress);
        QCOMPARE(int(backup.catalogue().size()), fixture.summary.counts.catalogueRows);
        QCOMPARE(backup.skippedRows(), 0);
        for (const SampleFile &file : fixture.summary.files) {
            const auto index = indexOf(backup, file);
            QVERIFY2(index != FileCatalogue::none, qPrintable(file.relativePath));
            QCOMPARE(backup.catalogue().fileId(index), file.fileId.toLatin1());
            QCOMPARE(backup.isLocked(index), file.locked);
            QCOMPARE(backup.hasContent({file.domain, file.relativePath}), file.stored);
            const QString copy = fixture.path(QStringLiteral("copy"));
            if (!file.stored) {
                QVERIFY_EXCEPTION_THROWN(backup.fetchFile(index, copy), Error);
                QVERIFY(!QFile::exists(copy));
                continue;
            }
            const FetchOutcome outcome = backup.fetchFile(index, copy);
            QCOMPARE(outcome == FetchOutcome::CopiedLocked, file.locked);
            if (!file.locked)
                QCOMPARE(sha1Of(copy).toHex(), file.sha1.toHex());
            QCOMPARE(QFileInfo(copy).lastModified().toSecsSinceEpoch(), file.modified);
            QFile::remove(copy);
        }
    }
    QCOMPARE(fingerprint(fixture.folder()), before);
}

QTEST_GUILESS_MAIN(TestBackupManifest)
#include "tst_backup_manifest.moc"

#include "app/item_model_bk.h"
#include "base/texts.h"
#include "resources/resources.h"

#include <QAbstractItemModelTester>
#include <QTest>

class TestItemModelBK : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void roots();
    void backupNodes();
    void sources();
};

void TestItemModelBK::initTestCase()
{
    initResources();
    installTexts();
}

void TestItemModelBK::roots()
{
    const ItemModelBK model;
    QCOMPARE(model.rowCount(), 2);
    QCOMPARE(model.index(0, 0).data().toString(), QStringLiteral("iTunes Backup"));
    QCOMPARE(model.index(1, 0).data().toString(), QStringLiteral("Local Database"));
    QCOMPARE(static_cast<int>(model.backupsRoot()->kind()), 1);
    QCOMPARE(static_cast<int>(model.localDatabasesRoot()->kind()), 2);
    QCOMPARE(model.rowCount(model.index(1, 0)), 0);
}

void TestItemModelBK::backupNodes()
{
    ItemModelBK model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    BackupCounts counts;
    counts.messages = 1234;
    BkNode *node = model.addBackup(std::make_shared<OpenBackup>(QStringLiteral("/backups/one")), counts);
    model.addBackup(std::make_shared<OpenBackup>(QStringLiteral("/backups/two")), {});
    const QModelIndex first = model.indexOf(node);
    QCOMPARE(model.rowCount(first), 2);
    QCOMPARE(model.index(0, 0, first).data().toString(), QStringLiteral("SMS(1234)"));
    QCOMPARE(model.index(1, 0, first).data().toString(), QStringLiteral("File System"));
    QCOMPARE(static_cast<int>(model.bkNode(model.index(0, 0, first))->kind()), 5);
    QCOMPARE(static_cast<int>(model.bkNode(model.index(1, 0, first))->kind()), 13);
    QCOMPARE(model.backupUids(), QSet<QString>({backupUid(QStringLiteral("/backups/one")),
                                                backupUid(QStringLiteral("/backups/two"))}));
    model.removeNode(node);
    QCOMPARE(model.rowCount(model.index(0, 0)), 1);
    QCOMPARE(model.backupUids(), QSet<QString>({backupUid(QStringLiteral("/backups/two"))}));
}

void TestItemModelBK::sources()
{
    ItemModelBK model;
    BkNode *backup = model.addBackup(std::make_shared<OpenBackup>(QStringLiteral("/backups/one")), {});
    BkNode *database = model.addLocalDatabase(QStringLiteral("/data/local_databases/Family"));
    QCOMPARE(database->label(), QStringLiteral("Family"));
    QCOMPARE(model.sourceOf(nullptr).backup, nullptr);
    QCOMPARE(model.sourceOf(model.backupsRoot()).backup, nullptr);
    QCOMPARE(model.sourceOf(model.localDatabasesRoot()).localDatabase, nullptr);
    QCOMPARE(model.sourceOf(backup).backup, backup);
    QCOMPARE(model.sourceOf(backup).localDatabase, nullptr);
    const auto *messages = backup->children().front().get();
    QCOMPARE(model.sourceOf(model.bkNode(model.indexOf(messages))).backup, backup);
    QCOMPARE(model.sourceOf(database).localDatabase, database);
    QCOMPARE(model.sourceOf(database).backup, nullptr);
}

QTEST_MAIN(TestItemModelBK)
#include "tst_item_model_bk.moc"

#include "app/item_model_bk.h"
#include "base/texts.h"
#include "resources/resources.h"

#include <QAbstractItemModelTester>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class TestItemModelBK : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void roots();
    void backupNodes();
    void sources();
    void damagedLocalDatabase();
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
    for (const DataClass dataClass : allDataClasses)
        counts.known.insert(dataClass, 0);
    counts.known.insert(DataClass::Messages, 1234);
    counts.known.insert(DataClass::Contacts, 12);
    counts.known.insert(DataClass::Photos, 50000);
    counts.known.remove(DataClass::Voicemail);
    BkNode *node = model.addBackup(std::make_shared<OpenBackup>(QStringLiteral("/backups/one")), counts);
    model.addBackup(std::make_shared<OpenBackup>(QStringLiteral("/backups/two")), {});
    const QModelIndex first = model.indexOf(node);
    QStringList labels;
    QList<int> kinds;
    for (int row = 0; row < model.rowCount(first); ++row) {
        labels.append(model.index(row, 0, first).data().toString());
        kinds.append(static_cast<int>(model.bkNode(model.index(row, 0, first))->kind()));
    }
    QCOMPARE(labels, (QStringList{QStringLiteral("Photos(50000)"), QStringLiteral("Videos(0)"),
                                  QStringLiteral("SMS(1234)"), QStringLiteral("Contacts(12)"),
                                  QStringLiteral("Voicemail(?)"), QStringLiteral("Calendar(0)"),
                                  QStringLiteral("Notes(0)"), QStringLiteral("Call History(0)"),
                                  QStringLiteral("Recordings(0)"), QStringLiteral("Bookmarks(0)"),
                                  QStringLiteral("File System")}));
    QCOMPARE(kinds, (QList<int>{14, 15, 5, 6, 7, 8, 9, 10, 11, 12, 13}));
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
    QStringList labels;
    for (const auto &child : database->children())
        labels << child->data(Qt::DisplayRole).toString();
    QCOMPARE(labels, (QStringList{QStringLiteral("SMS(0)"), QStringLiteral("Contacts(0)"),
                                  QStringLiteral("Calendar(0)"), QStringLiteral("Notes(0)"),
                                  QStringLiteral("Bookmarks(0)"), QStringLiteral("Call History(0)")}));

    BkNode *ofFile = model.addMessageFile(QStringLiteral("/macs/chat.db"), 7);
    QCOMPARE(ofFile->label(), QStringLiteral("SMS(7)"));
    QCOMPARE(model.sourceOf(ofFile).node()->folder(), QStringLiteral("/macs/chat.db"));
    QVERIFY(!model.sourceOf(ofFile).backup && !model.sourceOf(ofFile).localDatabase);
    QCOMPARE(model.backupUids().size(), 1);
}

void TestItemModelBK::damagedLocalDatabase()
{
    const QTemporaryDir folder;
    QFile store(folder.filePath(QStringLiteral("messages.db")));
    QVERIFY(store.open(QIODevice::WriteOnly) && store.write(QByteArray(5000, 'x')) == 5000);
    store.close();
    ItemModelBK model;
    BkNode *database = model.addLocalDatabase(folder.path());
    QCOMPARE(database->children().front()->data(Qt::DisplayRole).toString(), QStringLiteral("SMS(?)"));
    QVERIFY(database->data(Qt::ToolTipRole).toString().contains(QStringLiteral("messages")));
    QVERIFY(database->report().isFailure());
    QVERIFY(store.remove());
    QCOMPARE(model.addLocalDatabase(folder.path()), database);
    QCOMPARE(database->children().front()->data(Qt::DisplayRole).toString(), QStringLiteral("SMS(0)"));
    QVERIFY(database->report().isEmpty());
}

QTEST_MAIN(TestItemModelBK)
#include "tst_item_model_bk.moc"

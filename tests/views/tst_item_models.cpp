#include "base/texts.h"
#include "resources/resources.h"
#include "support/sample_backup.h"
#include "views/conversation_filter.h"
#include "views/item_model_backups.h"
#include "views/item_model_file_sys.h"
#include "views/item_model_messages.h"
#include "views/item_model_sms.h"

#include <QAbstractItemModelTester>
#include <QTest>

class TestItemModels : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void backups();
    void conversations();
    void conversationsInARange();
    void conversationFilter();
    void messages();
    void filesAllThere();
    void filesSorted();
    void filesFiltered();

private:
    std::unique_ptr<SampleBackup> m_sample;
    OpenBackupPtr m_backup;
    LoadedMessagesPtr m_messages;
};

void TestItemModels::initTestCase()
{
    initResources();
    installTexts();
    m_sample = std::make_unique<SampleBackup>();
    m_backup = m_sample->opened();
    NoProgress nobody;
    m_messages = loadMessages({m_backup}, nobody);
}

void TestItemModels::backups()
{
    ItemModelBackups model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.append(m_backup->info());
    BackupInfo odd;
    odd.displayName = QStringLiteral("<b>");
    odd.folder = QStringLiteral("/a&b");
    odd.encrypted = true;
    model.append(odd);
    QCOMPARE(model.rowCount(), 2);
    QCOMPARE(model.rowOf(QStringLiteral("/a&b")), 1);
    QCOMPARE(model.rowOf(QStringLiteral("/a")), -1);
    QCOMPARE(model.index(1).data(ItemModelBackups::DescriptionRole).toString(), QStringLiteral("Encrypted"));
    QVERIFY(!model.index(1).data(Qt::ToolTipRole).toString().contains(QStringLiteral("<b>")));
    model.setBackups({});
    QCOMPARE(model.rowCount(), 0);
}

void TestItemModels::conversations()
{
    ItemModelSms model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.setMessages(m_messages);
    qint64 total = 0;
    for (int row = 0; row < model.rowCount(); ++row) {
        total += model.messageCount(row);
        QVERIFY(model.messageCount(row) > 0);
        QCOMPARE(model.index(row, ItemModelSms::LastDate).data(ItemModelSms::SortRole).toLongLong(),
                 qint64(model.chat(row)._last));
    }
    QVERIFY(model.rowCount() > 3);
    std::size_t all = 0;
    for (const _MsgChat *chat : m_messages->database->chats())
        all += chat->messages.size();
    QCOMPARE(std::size_t(total), all);
    model.setMessages(nullptr);
    QCOMPARE(model.rowCount(), 0);
    QVERIFY(model.bounds().isAll());
}

void TestItemModels::conversationsInARange()
{
    ItemModelSms model;
    model.setMessages(m_messages);
    const DateRange bounds = model.bounds();
    QVERIFY(!bounds.isAll());
    const int all = model.rowCount();
    model.setRange({bounds.to, bounds.to});
    QVERIFY(model.rowCount() >= 1 && model.rowCount() < all);
    for (int row = 0; row < model.rowCount(); ++row)
        QCOMPARE(model.index(row, ItemModelSms::LastDate).data(ItemModelSms::SortRole).toLongLong(),
                 qint64(bounds.to));
    QCOMPARE(model.bounds(), bounds);
    model.setRange({bounds.to + 1, INT64_MAX});
    QCOMPARE(model.rowCount(), 0);
    model.setRange({});
    QCOMPARE(model.rowCount(), all);
}

void TestItemModels::conversationFilter()
{
    ItemModelSms model;
    model.setMessages(m_messages);
    ConversationFilter proxy;
    proxy.setSourceModel(&model);
    const QAbstractItemModelTester tester(&proxy, QAbstractItemModelTester::FailureReportingMode::QtTest);
    proxy.sort(ItemModelSms::Count, Qt::DescendingOrder);
    for (int row = 1; row < proxy.rowCount(); ++row)
        QVERIFY(proxy.index(row - 1, ItemModelSms::Count).data(ItemModelSms::SortRole).toLongLong() >=
                proxy.index(row, ItemModelSms::Count).data(ItemModelSms::SortRole).toLongLong());

    NoProgress nobody;
    model.setMessages(loadMessages({m_backup}, nobody, Scope::Everything));
    for (const Qt::SortOrder order : {Qt::AscendingOrder, Qt::DescendingOrder}) {
        proxy.sort(ItemModelSms::Name, order);
        QVERIFY(model.chat(proxy.mapToSource(proxy.index(proxy.rowCount() - 1, 0)).row()).isNone());
    }

    const _MsgChat &chat = model.chat(0);
    QVERIFY(!chat.handles.empty());
    proxy.setText(chat.handles.front()->id.toUpper());
    QVERIFY2(proxy.rowCount() >= 1 && proxy.rowCount() < model.rowCount(), "found by the address too");
    proxy.setText(QStringLiteral("no such person"));
    QCOMPARE(proxy.rowCount(), 0);
    proxy.setText({});
    QCOMPARE(proxy.rowCount(), model.rowCount());
}

void TestItemModels::messages()
{
    ItemModelMessages model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    const std::vector<MessageRef> all = m_messages->database->select({}, INT64_MIN, INT64_MAX);
    model.setMessages(all, m_messages);
    QCOMPARE(model.rowCount(), static_cast<int>(all.size()));
    for (int row = 0; row < model.rowCount(); ++row) {
        const QModelIndex index = model.index(row);
        QVERIFY(!index.data(Qt::DisplayRole).toString().isEmpty());
        QVERIFY(!index.data(ItemModelMessages::DescriptionRole).toString().contains(QChar(0xFFFC)));
        if (all[static_cast<std::size_t>(row)].message->is_from_me)
            QVERIFY(index.data(Qt::DisplayRole).toString().startsWith(QStringLiteral("You")) ||
                    all[static_cast<std::size_t>(row)].message->item_type != 0);
    }
}

void TestItemModels::filesAllThere()
{
    ItemModelFileSys model(m_backup);
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QVERIFY(model.fileCount() > 0);
    qint64 files = 0;
    std::vector<QModelIndex> open = {QModelIndex()};
    while (!open.empty()) {
        const QModelIndex parent = open.back();
        open.pop_back();
        QVERIFY(model.rowCount(parent) > 0);
        for (int row = 0; row < model.rowCount(parent); ++row) {
            const QModelIndex child = model.index(row, 0, parent);
            if (model.hasChildren(child))
                open.push_back(child);
            else if (!m_backup->manifest().tree().isFolder(model.node(child)))
                ++files;
        }
    }
    QCOMPARE(files, model.fileCount());
}

void TestItemModels::filesSorted()
{
    ItemModelFileSys model(m_backup);
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.setFilter(QStringLiteral("."));
    QTRY_VERIFY(model.isFiltered());
    QVERIFY(model.rowCount() > 5);
    const QPersistentModelIndex kept = model.index(3, 0);
    const QString name = kept.data().toString();
    model.sort(ItemModelFileSys::Size, Qt::DescendingOrder);
    const FileCatalogue &catalogue = m_backup->manifest().catalogue();
    const FileTree &tree = m_backup->manifest().tree();
    quint64 before = UINT64_MAX;
    for (int row = 0; row < model.rowCount(); ++row) {
        const FileTree::Node node = model.node(model.index(row, 0));
        if (tree.isFolder(node))
            continue;
        const quint64 size = catalogue.sizeBytes(tree.record(node));
        QVERIFY(size <= before);
        before = size;
    }
    QCOMPARE(kept.data().toString(), name);
}

void TestItemModels::filesFiltered()
{
    ItemModelFileSys model(m_backup);
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    const int top = model.rowCount();
    model.setFilter(QStringLiteral(" SMS.DB "));
    QTRY_VERIFY(model.isFiltered());
    QVERIFY(model.rowCount() >= 1);
    bool found = false;
    for (int row = 0; row < model.rowCount(); ++row) {
        const QModelIndex index = model.index(row, 0);
        QVERIFY(!model.hasChildren(index));
        found = found ||
                (index.data().toString() == QStringLiteral("sms.db") &&
                 index.siblingAtColumn(ItemModelFileSys::Folder).data() == QStringLiteral("Library/SMS"));
    }
    QVERIFY(found);
    model.setFilter(QStringLiteral("no such file"));
    QTRY_COMPARE(model.rowCount(), 0);
    model.setFilter(QStringLiteral("sms"));
    model.setFilter({}); // while it still looks for the other
    QVERIFY(!model.isSearching());
    QCOMPARE(model.rowCount(), top);
}

QTEST_MAIN(TestItemModels)
#include "tst_item_models.moc"

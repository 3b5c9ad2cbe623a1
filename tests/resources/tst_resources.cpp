#include "base/texts.h"
#include "resources/resources.h"

#include <QCoreApplication>
#include <QTest>

class TestResources : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void text_data();
    void text();
};

void TestResources::initTestCase()
{
    initResources();
    installTexts();
}

void TestResources::text_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QString>("expected");
    QTest::newRow("plain") << QByteArray("IDS_ROOT_BK") << "iTunes Backup";
    QTest::newRow("key with a place holder")
        << QByteArray("IDS_SUC_BACKUP_%1_BOOKMARKS") << "Successfully backup %1 Bookmarks";
    QTest::newRow("line break") << QByteArray("IDS_SYS_LEFT_%1_%2") << "%1 left the conversation.\n%2";
    QTest::newRow("two blanks are kept")
        << QByteArray("IDS_SUC_BACKUP_%1_CONTACTS_MERGED_%2") << "Successfully backup %1 contacts with %2  merged.";
    QTest::newRow("markup") << QByteArray("IDS_BK_DEVICE") << "<b style=\"font-style:italic;\">Device:</b>";
    QTest::newRow("no entry: the key itself") << QByteArray("Messages: %1/%2") << "Messages: %1/%2";
}

void TestResources::text()
{
    QFETCH(QByteArray, key);
    QTEST(textFor(key.constData()), "expected");
}

QTEST_GUILESS_MAIN(TestResources)
#include "tst_resources.moc"

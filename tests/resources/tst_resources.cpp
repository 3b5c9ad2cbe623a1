#include "base/texts.h"
#include "resources/resources.h"

#include <QDir>
#include <QImage>
#include <QRegularExpression>
#include <QTest>

class TestResources : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void text_data();
    void text();
    void pictureLoads_data();
    void pictureLoads();
    void bubbleFolderIsWhole();
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
    QTest::newRow("two blanks are kept") << QByteArray("IDS_SUC_BACKUP_%1_CONTACTS_MERGED_%2")
                                         << "Successfully backup %1 contacts with %2  merged.";
    QTest::newRow("markup") << QByteArray("IDS_BK_DEVICE") << "<b style=\"font-style:italic;\">Device:</b>";
    QTest::newRow("no entry: the key itself") << QByteArray("Messages: %1/%2") << "Messages: %1/%2";
}

void TestResources::text()
{
    QFETCH(QByteArray, key);
    QTEST(textFor(key.constData()), "expected");
}

void TestResources::pictureLoads_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QSize>("size");
    const char *named[] = {"load_itunes", "mi_open_local_db_folder", "exit", "register", "help", "home"};
    for (const char *name : named) {
        const QString path = QStringLiteral(":res/%1").arg(QLatin1String(name));
        QTest::addRow("%s", name) << path + QStringLiteral(".png") << QSize(24, 24);
        QTest::addRow("%s, sharp screen", name) << path + QStringLiteral("@2x.png") << QSize(48, 48);
    }
    QTest::newRow("banner") << ":res/banner.png" << QSize(320, 40);
    QTest::newRow("information panel") << ":res/bk_big.png" << QSize(128, 128);
    QTest::newRow("incoming corner") << ":/bubble/bb1_01.png" << QSize(36, 36);
    QTest::newRow("outgoing corner") << ":/bubble/bb2_09.png" << QSize(36, 36);
    QTest::newRow("photo without a thumbnail") << ":/bubble/empty_photo.jpg" << QSize(240, 180);
}

void TestResources::pictureLoads()
{
    QFETCH(QString, path);
    QTEST(QImage(path).size(), "size");
}

// An export copies the folder file by file, so whatever the style sheet asks for has to lie in it.
void TestResources::bubbleFolderIsWhole()
{
    QFile sheet(QStringLiteral(":/bubble/style.css"));
    QVERIFY(sheet.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(sheet.readAll());
    const QStringList files = QDir(QStringLiteral(":/bubble")).entryList(QDir::Files);
    static const QRegularExpression url(QStringLiteral("url\\(([^)]*)\\)"));
    int pieces = 0;
    for (auto match = url.globalMatch(text); match.hasNext(); ++pieces) {
        const QString name = match.next().captured(1);
        QVERIFY2(files.contains(name), qPrintable(name));
    }
    QCOMPARE(pieces, 18);
}

QTEST_GUILESS_MAIN(TestResources)
#include "tst_resources.moc"

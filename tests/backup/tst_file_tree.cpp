#include "backup/file_tree.h"

#include <QTest>

class TestFileTree : public QObject
{
    Q_OBJECT

private slots:
    void virtualPaths_data();
    void virtualPaths();
    void shape_data();
    void shape();
    void mergedFolderKeepsItsRecord();
    void kindlessRecords();
    void forgedPaths_data();
    void forgedPaths();
    void veryDeep();
};

namespace {
struct Item
{
    QByteArray domain;
    QByteArray path;
    std::uint16_t mode = modeRegular;
};

FileCatalogue catalogueOf(const QList<Item> &items)
{
    FileCatalogue catalogue;
    for (const Item &item : items) {
        FileRecord record;
        record.domain = item.domain;
        record.relativePath = item.path;
        record.mode = item.mode;
        catalogue.insert(record);
    }
    return catalogue;
}

/// Every node below `node` in order, folders with a "/" at the end; the tree as one readable line.
QString shapeOf(const FileTree &tree, FileTree::Node node = FileTree::root)
{
    QStringList parts;
    for (const FileTree::Node child : tree.children(node)) {
        if (tree.parent(child) != node)
            return QStringLiteral("a child that does not know its parent");
        const QString below = shapeOf(tree, child);
        parts.append(tree.name(child) + (tree.isFolder(child) ? QStringLiteral("/") : QString()) +
                     (below.isEmpty() ? QString() : QStringLiteral("(%1)").arg(below)));
    }
    return parts.join(QLatin1Char(' '));
}
} // namespace

void TestFileTree::virtualPaths_data()
{
    QTest::addColumn<QByteArray>("domain");
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char *name, const char *domain, const char *path, const char *expected) {
        QTest::newRow(name) << QByteArray(domain) << QByteArray(path) << QByteArray(expected);
    };
    row("device's own disk", "HomeDomain", "Library/a", "Library/a");
    row("any letter case", "camerarolldomain", "Media", "Media");
    row("root of the disk", "RootDomain", "", "");
    row("nameless domain", "Domain", "a", "a");
    row("application", "AppDomain-com.example.x", "Documents/a", "Applications/com.example.x/Documents/a");
    row("application's own folder", "AppDomain-com.example.x", "", "Applications/com.example.x");
    row("group", "AppDomainGroup-group.x-y", "a", "AppDomainGroup/group.x-y/a");
    row("application without an id", "AppDomain-", "a", "AppDomain-/a");
    row("any other", "InstallDomain", "a/b", "InstallDomain/a/b");
    row("part of a merged name", "MediaDom", "a", "MediaDom/a");
}

void TestFileTree::virtualPaths()
{
    QFETCH(QByteArray, domain);
    QFETCH(QByteArray, path);
    QTEST(FileTree::virtualPath(domain, path), "expected");
}

void TestFileTree::shape_data()
{
    QTest::addColumn<QList<Item>>("items");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QList<Item> &items, const char *expected) {
        QTest::newRow(name) << items << QString::fromLatin1(expected);
    };
    row("nothing", {}, "");
    row("folders made up", {{"HomeDomain", "a/b/c"}, {"HomeDomain", "a/d"}}, "a/(b/(c) d)");
    row("folder listed after its content",
        {{"HomeDomain", "a/b"}, {"HomeDomain", "a", modeDirectory}, {"HomeDomain", "", modeDirectory}},
        "a/(b)");
    row("folder of two domains",
        {{"HomeDomain", "a", modeDirectory},
         {"RootDomain", "a", modeDirectory},
         {"RootDomain", "a/y"},
         {"HomeDomain", "a/x"}},
        "a/(x y)");
    row("made up for one domain, listed by another",
        {{"MediaDomain", "a/x"}, {"HomeDomain", "a", modeDirectory}, {"HomeDomain", "a/y"}}, "a/(x y)");
    row("file of two domains", {{"HomeDomain", "a"}, {"RootDomain", "a"}}, "a a");
    row("file where another domain has a folder", {{"HomeDomain", "a"}, {"RootDomain", "a/b"}}, "a a/(b)");
    row("names in order, prefixes first",
        {{"HomeDomain", "IMG_00020"},
         {"HomeDomain", "IMG_0002"},
         {"HomeDomain", "IMG_00010"},
         {"HomeDomain", "B"}},
        "B IMG_00010 IMG_0002 IMG_00020");
    row("applications",
        {{"AppDomain-x", "", modeDirectory},
         {"AppDomain-y", "d/a"},
         {"AppDomainPlugin-z", "b"},
         {"Odd", "c"}},
        "AppDomainPlugin/(z/(b)) Applications/(x/ y/(d/(a))) Odd/(c)");
    row("disk folder of an application's place",
        {{"RootDomain", "Applications/x/a"}, {"AppDomain-x", "b"}, {"AppDomain-x", "", modeDirectory}},
        "Applications/(x/(a b))");
    row("empty folder and a link", {{"HomeDomain", "e", modeDirectory}, {"HomeDomain", "l", modeLink}},
        "e/ l");
}

void TestFileTree::shape()
{
    QFETCH(QList<Item>, items);
    const FileCatalogue catalogue = catalogueOf(items);
    const FileTree tree = FileTree::build(catalogue);
    QTEST(shapeOf(tree), "expected");
    for (const Item &item : items) {
        const auto node = tree.findUtf8(FileTree::virtualPath(item.domain, item.path));
        QVERIFY(node != FileTree::none);
        QCOMPARE(tree.path(node).toUtf8(), FileTree::virtualPath(item.domain, item.path));
    }
    QCOMPARE(tree.find(QStringLiteral("a/no such name")), FileTree::none);
}

void TestFileTree::mergedFolderKeepsItsRecord()
{
    const FileCatalogue catalogue = catalogueOf({{"MediaDomain", "a/b/x"},
                                                 {"HomeDomain", "a", modeDirectory},
                                                 {"AppDomain-i", "c"},
                                                 {"AppDomain-i", "", modeDirectory}});
    const FileTree tree = FileTree::build(catalogue);
    const auto recordAt = [&](const char *path) { return tree.record(tree.findUtf8(path)); };
    QCOMPARE(recordAt("a"), 1U);
    QCOMPARE(recordAt("a/b"), FileCatalogue::none);
    QCOMPARE(recordAt("a/b/x"), 0U);
    QCOMPARE(recordAt("Applications"), FileCatalogue::none);
    QCOMPARE(recordAt("Applications/i"), 3U);
    QCOMPARE(recordAt(""), FileCatalogue::none);
    QCOMPARE(tree.nodeCount(), std::size_t(7));
}

// Some catalogues tell no kinds: what has something below it is a folder, whatever the order.
void TestFileTree::kindlessRecords()
{
    const FileCatalogue catalogue = catalogueOf({{"HomeDomain", "a/b/c", 0},
                                                 {"HomeDomain", "a", 0},
                                                 {"RootDomain", "a", 0},
                                                 {"HomeDomain", "a/b", 0},
                                                 {"RootDomain", "a/d", 0}});
    const FileTree tree = FileTree::build(catalogue);
    QCOMPARE(shapeOf(tree), QStringLiteral("a/(b/(c) d)"));
    QCOMPARE(tree.record(tree.find(QStringLiteral("a"))), 1U);
    QCOMPARE(tree.record(tree.find(QStringLiteral("a/b"))), 3U);
}

void TestFileTree::forgedPaths_data()
{
    QTest::addColumn<QByteArray>("domain");
    QTest::addColumn<QByteArray>("path");
    for (const char *domain : {"HomeDomain", "AppDomain-x", "Other", "Sl/ash/", "/", "AppDomain-/"})
        for (const char *path :
             {"/", "//", "/a", "//a", "a/", "a//b", "..", "../../x", "a/../b", "/etc/passwd", "."})
            QTest::addRow("%s %s", domain, path) << QByteArray(domain) << QByteArray(path);
}

// Whatever a row claims, the tree stays a tree: every node leads up to the root, and is listed once.
void TestFileTree::forgedPaths()
{
    QFETCH(QByteArray, domain);
    QFETCH(QByteArray, path);
    const FileCatalogue catalogue = catalogueOf({{domain, "", modeDirectory},
                                                 {domain, "/", modeDirectory},
                                                 {domain, path, modeDirectory},
                                                 {domain, path + "/below"},
                                                 {domain, "a", modeDirectory}});
    const FileTree tree = FileTree::build(catalogue);
    std::vector<FileTree::Node> open = tree.children(FileTree::root);
    std::size_t seen = 1;
    while (!open.empty() && seen < 100) {
        const FileTree::Node node = open.back();
        open.pop_back();
        ++seen;
        for (const FileTree::Node child : tree.children(node)) {
            QCOMPARE(tree.parent(child), node);
            open.push_back(child);
        }
    }
    QCOMPARE(seen, tree.nodeCount());
}

void TestFileTree::veryDeep()
{
    const FileCatalogue catalogue = catalogueOf({{"HomeDomain", QByteArray("d/").repeated(2000) + "f"}});
    const FileTree tree = FileTree::build(catalogue);
    QCOMPARE(tree.nodeCount(), std::size_t(2002));
    QCOMPARE(tree.record(tree.findUtf8(catalogue.relativePath(0))), 0U);
}

QTEST_APPLESS_MAIN(TestFileTree)
#include "tst_file_tree.moc"

#include "raw_plist.h"

#include "backup/cf_type.h"
#include "backup/plist_guard.h"

#include <QTest>

namespace {
RawPlist chain(quint64 depth)
{
    RawPlist plist;
    plist.offsetSize = plist.referenceSize = 4;
    for (quint64 i = 1; i < depth; ++i)
        plist.objects.append(plist.array({i}));
    plist.objects.append(plist.array({}));
    return plist;
}

/// Each array holds the next one twice: 2^n leaves in a few bytes.
RawPlist doubling(quint64 depth)
{
    RawPlist plist;
    for (quint64 i = 1; i < depth; ++i)
        plist.objects.append(plist.array({i, i}));
    plist.objects.append(RawPlist::ascii("leaf"));
    return plist;
}

QByteArray xmlArrays(int depth)
{
    return "<plist>" + QByteArray("<array>").repeated(depth) + QByteArray("</array>").repeated(depth) +
           "</plist>";
}

QByteArray manyKeys(int count)
{
    QByteArray xml = "<plist><dict>";
    for (int i = 0; i < count; ++i)
        xml += "<key>" + QByteArray::number(i) + "</key><true/>";
    return xml + "</dict></plist>";
}

template <typename Change>
QByteArray lie(Change change)
{
    RawPlist plist;
    plist.objects = {plist.array({1, 2}), RawPlist::ascii("one"), RawPlist::ascii("two")};
    change(plist);
    return plist.bytes();
}
} // namespace

class TestPlistGuard : public QObject
{
    Q_OBJECT

private slots:
    void binary_data();
    void binary();
    void xml_data();
    void xml();
};

void TestPlistGuard::binary_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("accepted");
    const auto add = [](const char *name, bool accepted, const QByteArray &bytes) {
        QTest::newRow(name) << bytes << accepted;
    };
    constexpr quint64 huge = Q_UINT64_C(0xFFFFFFFFFFFFFFFF);
    add("honest", true, lie([](RawPlist &) {}));
    add("one object used by many", true, lie([](RawPlist &p) {
            p.objects[0] = p.array({1, 1, 1, 1, 2, 2, 2, 2});
        }));
    add("nested as deep as allowed", true, chain(512).bytes());
    add("nested one deeper", false, chain(513).bytes());
    add("nested a hundred thousand deep", false, chain(100'000).bytes());
    add("doubling at each of 40 levels", false, doubling(40).bytes());
    add("refers to itself", false, lie([](RawPlist &p) { p.objects[0] = p.array({0}); }));
    add("refers to its parent", false, lie([](RawPlist &p) { p.objects[1] = p.array({0}); }));
    add("reference behind the last object", false, lie([](RawPlist &p) { p.objects[0] = p.array({3}); }));
    add("top behind the last object", false, lie([](RawPlist &p) { p.top = 3; }));
    add("huge top", false, lie([](RawPlist &p) { p.top = huge; }));
    add("more objects than offsets", false, lie([](RawPlist &p) { p.objectCount = 4; }));
    add("number of objects overflows", false, lie([](RawPlist &p) { p.objectCount = qint64{1} << 62; }));
    add("offset table behind the trailer", false, lie([](RawPlist &p) { p.tablePosition = 1000; }));
    add("offset table before the objects", false, lie([](RawPlist &p) { p.tablePosition = 8; }));
    add("offset before the objects", false, lie([](RawPlist &p) { p.offsets = {8, 2, 14}; }));
    add("offset behind the objects", false, lie([](RawPlist &p) { p.offsets = {8, 60000, 14}; }));
    add("no width of offsets", false, lie([](RawPlist &p) { p.offsetSize = 0; }));
    add("width of references beyond 8", false, lie([](RawPlist &p) { p.referenceSize = 9; }));
    add("text longer than the file", false,
        lie([](RawPlist &p) { p.objects[1] = RawPlist::object(5, 1000, "x"); }));
    add("array whose size overflows", false,
        lie([](RawPlist &p) { p.objects[1] = RawPlist::object(0xA, huge / 2 + 1, "x"); }));
    add("dictionary whose size overflows", false,
        lie([](RawPlist &p) { p.objects[1] = RawPlist::object(0xD, huge / 4 + 1, "x"); }));
    add("integer of 32 bytes", false, lie([](RawPlist &p) { p.objects[1] = "\x15"; }));
    add("unknown kind", false, lie([](RawPlist &p) { p.objects[1] = "\x70"; }));
    add("text with a NUL", false, lie([](RawPlist &p) {
            p.objects[1] = QByteArray("\x52"
                                      "a\0",
                                      3);
        }));
    add("a thousand objects at the bytes of one long array", false, [] {
        RawPlist plist;
        plist.objects = {plist.array({}), plist.array(QList<quint64>(2000, 0))};
        QList<quint64> everyone;
        for (quint64 i = 2; i < 1000; ++i)
            everyone.append(i);
        plist.objects[0] = plist.array(everyone);
        const quint64 second = 8 + static_cast<quint64>(plist.objects[0].size());
        plist.offsets = QList<quint64>(1000, second);
        plist.offsets[0] = 8;
        plist.objectCount = 1000;
        return plist.bytes();
    }());
}

void TestPlistGuard::binary()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, accepted);
    QCOMPARE(isSafeBinaryPlist(bytes), accepted);
    QCOMPARE(!CFType::parse(bytes).isEmpty(), accepted);
}

void TestPlistGuard::xml_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("nested 500 deep") << xmlArrays(500) << true;
    QTest::newRow("nested 600 deep") << xmlArrays(600) << false;
    QTest::newRow("nested a million deep, never closed")
        << "<plist>" + QByteArray("<dict>").repeated(1'000'000) << false;
    QTest::newRow("ends that only a comment holds")
        << "<plist>" + QByteArray("<array><!--</array>-->").repeated(600) << false;
    QTest::newRow("ends that only a text holds")
        << "<plist>" + QByteArray("<array><string><![CDATA[</array>]]></string>").repeated(600) << false;
    QTest::newRow("entities that double")
        << QByteArray("<!DOCTYPE plist [<!ENTITY a \"xx\"><!ENTITY b \"&a;&a;\">]><plist><string>&b;</string>"
                      "</plist>")
        << false;
    QTest::newRow("tags hidden by an end inside quotes")
        << "<!DOCTYPE plist \"><!--\"><plist>" + QByteArray("<array>").repeated(600) + "<!-- -->" << false;
    QTest::newRow("a text of ten thousand entities")
        << "<plist><string>" + QByteArray("&amp;").repeated(10'000) + "</string></plist>" << true;
    QTest::newRow("a text of a million entities")
        << "<plist><string>" + QByteArray("&amp;").repeated(1'000'000) + "</string></plist>" << false;
    QTest::newRow("many keys in one dictionary") << manyKeys(1'000'000) << false;
    QTest::newRow("a NUL") << QByteArray("<plist><string>a\0b</string></plist>", 35) << false;
    QTest::newRow("a tag without an end") << QByteArray("<plist><string") << false;
    QTest::newRow("a comment without an end")
        << QByteArray("<plist><!-- <string>x</string></plist>") << false;
    QTest::newRow("an unknown tag") << QByteArray("<plist><script>x</script></plist>") << false;
    QTest::newRow("nothing") << QByteArray() << false;
    QTest::newRow("no property list") << QByteArray("SQLite format 3") << false;
}

void TestPlistGuard::xml()
{
    QFETCH(QByteArray, bytes);
    QTEST(!CFType::parse(bytes).isEmpty(), "accepted");
}

QTEST_APPLESS_MAIN(TestPlistGuard)
#include "tst_plist_guard.moc"

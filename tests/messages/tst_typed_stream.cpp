#include "messages/typed_stream.h"

#include <QTest>

namespace {
const QByteArray header = "\x04\x0Bstreamtyped\x81\xE8\x03";

/// The bytes of a literal that holds NULs.
template <std::size_t size>
QByteArray bytesOf(const char (&literal)[size])
{
    return QByteArray(literal, size - 1);
}

/// The bytes of a text with the length as a typed stream announces it.
QByteArray counted(const QByteArray &utf8)
{
    const auto size = static_cast<quint32>(utf8.size());
    const auto byte = [&](int shift) { return QByteArray(1, static_cast<char>(size >> shift)); };
    if (size < 0x80)
        return byte(0) + utf8;
    if (size < 0x10000)
        return "\x81" + byte(0) + byte(8) + utf8;
    return "\x82" + byte(0) + byte(8) + byte(16) + byte(24) + utf8;
}

/// An attributed string as devices write it, up to the end of its text.
QByteArray plainUpToText(const QByteArray &utf8)
{
    return header +
           bytesOf("\x84\x01@\x84\x84\x84\x12NSAttributedString\x00\x84\x84\x08NSObject\x00\x85"
                   "\x92\x84\x84\x84\x08NSString\x01\x94\x84\x01+") +
           counted(utf8);
}

/// The same of the mutable classes, whose chains are one longer.
QByteArray mutableUpToText(const QByteArray &utf8)
{
    return header +
           bytesOf("\x84\x01@\x84\x84\x84\x19NSMutableAttributedString\x00\x84\x84\x12NSAttributedString\x00"
                   "\x84\x84\x08NSObject\x00\x85\x92\x84\x84\x84\x0FNSMutableString\x01\x84\x84\x08NSString"
                   "\x01\x95\x84\x01+") +
           counted(utf8);
}

const QByteArray
    attributes("\x86\x84\x02iI\x01\x05\x92\x84\x84\x84\x0CNSDictionary\x00\x94\x84\x01i\x01\x92\x84"
               "\x96\x96\x1D__kIMMessagePartAttributeName\x86\x92\x84\x84\x84\x08NSNumber\x00\x84"
               "\x84\x07NSValue\x00\x94\x84\x01*\x84\x99\x99\x00\x86\x86\x86",
               98);
} // namespace

class TestTypedStream : public QObject
{
    Q_OBJECT

private slots:
    void texts_data();
    void texts();
    void refused_data();
    void refused();
    void everyTruncation();
    void everyByteChanged();
};

void TestTypedStream::texts_data()
{
    QTest::addColumn<QByteArray>("utf8");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("short") << QByteArray("Hello");
    QTest::newRow("127 bytes") << QByteArray(127, 'a');
    QTest::newRow("128 bytes") << QByteArray(128, 'b');
    QTest::newRow("65535 bytes") << QByteArray(65535, 'c');
    QTest::newRow("65536 bytes") << QByteArray(65536, 'd');
    QTest::newRow("speaks of its own classes") << QByteArray("NSString\x01\x94\x84\x01+\x03no!\x86");
    QTest::newRow("emoji, attachment and right to left")
        << QByteArray("\xF0\x9F\x98\x80 \xEF\xBF\xBC \xD7\xA9");
}

void TestTypedStream::texts()
{
    QFETCH(QByteArray, utf8);
    const QString expected = QString::fromUtf8(utf8);
    QCOMPARE(typedStreamText(plainUpToText(utf8) + attributes), expected);
    QCOMPARE(typedStreamText(mutableUpToText(utf8) + attributes), expected);
    QCOMPARE(typedStreamText(plainUpToText(utf8)), expected);
}

void TestTypedStream::refused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const auto changed = [](const char *before, const QByteArray &after) {
        QByteArray bytes = plainUpToText("Hello") + attributes;
        return bytes.replace(bytes.indexOf(before), static_cast<qsizetype>(qstrlen(before)), after);
    };
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("another format") << QByteArray("bplist00\xD4");
    QTest::newRow("header alone") << header;
    QTest::newRow("other object") << changed("NSString", "NSNumber");
    QTest::newRow("text longer than the stream")
        << changed("\x05Hello", bytesOf("\x82\xFF\xFF\xFF\xFF") + "Hello");
    QTest::newRow("class that was not read") << changed("NSString\x01\x94", "NSString\x01\xA4");
    QTest::newRow("type that was not read")
        << changed("\x92\x84\x84\x84\x08NSString", "\x99\x84\x84\x84\x08NSString");
    QTest::newRow("numbers where the text belongs") << changed("\x84\x01+", "\x84\x01i");
    QTest::newRow("nil where the text belongs")
        << changed("\x92\x84\x84\x84\x08NSString", "\x92\x85\x84\x84\x08NSString");
}

void TestTypedStream::refused()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(!typedStreamText(bytes));
}

void TestTypedStream::everyTruncation()
{
    for (const QByteArray &whole : {plainUpToText(QByteArray(300, 'x')), mutableUpToText("short")})
        for (qsizetype size = 0; size < whole.size(); ++size)
            QVERIFY2(!typedStreamText(whole.first(size)), qPrintable(QString::number(size)));
}

void TestTypedStream::everyByteChanged()
{
    const QByteArray whole = mutableUpToText("Hello") + attributes;
    for (qsizetype i = 0; i < whole.size(); ++i)
        for (int value = 0; value < 256; ++value) {
            QByteArray bytes = whole;
            bytes[i] = static_cast<char>(value);
            const std::optional<QString> text = typedStreamText(bytes);
            QVERIFY(!text || text->size() <= whole.size());
        }
}

QTEST_GUILESS_MAIN(TestTypedStream)
#include "tst_typed_stream.moc"

#include "export/emoji_scan.h"
#include "export/html_text.h"

#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

namespace {
/// The rules one after the other, as slowly and plainly as they can be written down.
QString plainly(QString text)
{
    text.replace(QLatin1Char('&'), QStringLiteral("&amp;"));
    text.replace(QLatin1Char('<'), QStringLiteral("&lt;"));
    text.replace(QLatin1Char('>'), QStringLiteral("&gt;"));
    text.replace(QRegularExpression(QStringLiteral("\\r?\\n")), QStringLiteral("<br/>"));
    const QRegularExpression one(QStringLiteral(
        "[\\x{e000}-\\x{e537}\\x{203C}\\x{2049}\\x{2139}\\x{2194}\\x{2195}\\x{21A9}\\x{21AA}\\x{231A}\\x{"
        "231B}"
        "\\x{23EB}\\x{23EC}\\x{23F0}\\x{23F3}\\x{24C2}\\x{25AA}\\x{25AB}\\x{25FB}\\x{25FC}\\x{25FD}\\x{25FE}"
        "\\x{2611}\\x{267B}\\x{2693}\\x{26AA}\\x{26AB}\\x{26C5}\\x{26D4}\\x{2705}\\x{2709}\\x{270F}\\x{2712}"
        "\\x{2714}\\x{2744}\\x{2747}\\x{274E}\\x{2795}\\x{2796}\\x{2797}\\x{27B0}\\x{2934}\\x{2935}\\x{2B1B}"
        "\\x{2B1C}\\x{3030}]"));
    const QRegularExpression pair(QStringLiteral("[\\x{1F000}-\\x{1F7FF}]"));
    for (const QRegularExpression &pattern : {one, pair})
        for (QRegularExpressionMatch match = pattern.match(text); match.hasMatch();
             match = pattern.match(text, match.capturedStart())) {
            const uint key = match.captured().toUcs4().first();
            text.replace(match.capturedStart(), match.capturedLength(),
                         QStringLiteral("<img src=\"files/app_res/emoji/%1.png\" />")
                             .arg(QString::number(key, 16).toUpper()));
        }
    return text;
}

QString marked(const QString &text)
{
    QByteArray out;
    HtmlText("files").append(out, text);
    return QString::fromUtf8(out);
}
} // namespace

class TestHtmlText : public QObject
{
    Q_OBJECT

private slots:
    void text_data();
    void text();
    void everyUnitAsTheRulesSay();
    void mixturesAsTheRulesSay();
    void halvesAreNoEmoji_data();
    void halvesAreNoEmoji();
    void picturesAreAskedForOnce();
    void address_data();
    void address();
};

void TestHtmlText::text_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    const auto picture = [](const char *key) {
        return QStringLiteral("<img src=\"files/app_res/emoji/%1.png\" />").arg(QLatin1String(key));
    };
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("markup and a CR LF") << "a<b>\r\n&amp;"
                                        << "a&lt;b&gt;<br/>&amp;amp;";
    QTest::newRow("line feeds alone") << "\n\n"
                                      << "<br/><br/>";
    QTest::newRow("a carriage return alone stays") << "a\rb\r"
                                                   << "a\rb\r";
    QTest::newRow("quotes are text") << "\"it's\""
                                     << "\"it's\"";
    QTest::newRow("emoji of two units") << QString::fromUtf8("x😀y") << "x" + picture("1F600") + "y";
    QTest::newRow("symbol") << QString(QChar(0x2714)) << picture("2714");
    QTest::newRow("private use, first and last")
        << QString::fromUtf16(u"\uE000\uE537") << picture("E000") + picture("E537");
    QTest::newRow("private use behind the last")
        << QString::fromUtf16(u"\uE538") << QString::fromUtf16(u"\uE538");
    QTest::newRow("emoji of the next block stays") << QString::fromUtf8("🤣") << QString::fromUtf8("🤣");
    QTest::newRow("flag: two pictures") << QString::fromUtf8("🇩🇪") << picture("1F1E9") + picture("1F1EA");
    QTest::newRow("right to left and combining")
        << QString::fromUtf8("שלום é́") << QString::fromUtf8("שלום é́");
}

void TestHtmlText::text()
{
    QFETCH(QString, text);
    QTEST(marked(text), "expected");
}

void TestHtmlText::everyUnitAsTheRulesSay()
{
    QString all;
    for (char32_t c = 1; c < 0x20000; ++c)
        if (!QChar::isSurrogate(c))
            all += QString::fromUcs4(&c, 1);
    // In pieces, so that a failure names its neighbourhood.
    for (qsizetype at = 0; at < all.size(); at += 64) {
        const QString piece = all.mid(at, 64);
        if (!piece.front().isLowSurrogate() && !piece.back().isHighSurrogate())
            QCOMPARE(marked(piece), plainly(piece));
    }
}

void TestHtmlText::mixturesAsTheRulesSay()
{
    const char32_t alphabet[] = {U'a',   U'&',   U'<',    U'>',    U'\r',   U'\n',
                                 0x2714, 0xE001, 0x1F600, 0x1F3FB, 0x1F923, 0x4E2D};
    QRandomGenerator random(7);
    for (int i = 0; i < 2000; ++i) {
        QString text;
        for (int n = random.bounded(12); n > 0; --n)
            text += QString::fromUcs4(&alphabet[random.bounded(int(std::size(alphabet)))], 1);
        QCOMPARE(marked(text), plainly(text));
    }
}

void TestHtmlText::halvesAreNoEmoji_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    const QChar high(0xD83D);
    const QChar low(0xDE00);
    const QString replaced(QChar::ReplacementCharacter);
    QTest::newRow("first half at the end") << QString(high) << replaced;
    QTest::newRow("first half before markup")
        << high + QStringLiteral("<") << replaced + QStringLiteral("&lt;");
    QTest::newRow("first half before a symbol")
        << QString(high) + QChar(0x2714) << replaced + marked(QString(QChar(0x2714)));
    QTest::newRow("second half alone") << QString(low) << replaced;
}

void TestHtmlText::halvesAreNoEmoji()
{
    QFETCH(QString, text);
    QTEST(marked(text), "expected");
}

void TestHtmlText::picturesAreAskedForOnce()
{
    HtmlText text("files");
    QByteArray out;
    text.append(out, QString::fromUtf8("😀✔😀"));
    QCOMPARE(text.takeNewEmoji(), (std::vector<char32_t>{0x1F600, 0x2714}));
    text.append(out, QString::fromUtf8("✔😁"));
    QCOMPARE(text.takeNewEmoji(), (std::vector<char32_t>{0x1F601}));
}

void TestHtmlText::address_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("plain") << "IMG_0001.jpg" << QByteArray("IMG_0001.jpg");
    QTest::newRow("markup") << "\"><script>&'.js" << QByteArray("%22%3E%3Cscript%3E%26%27.js");
    QTest::newRow("address characters") << "50% #1?.txt" << QByteArray("50%25%20%231%3F.txt");
    QTest::newRow("scheme") << "javascript:x" << QByteArray("javascript%3Ax");
    QTest::newRow("umlaut") << QString::fromUtf8("ü.png") << QByteArray("%C3%BC.png");
}

void TestHtmlText::address()
{
    QFETCH(QString, name);
    QTEST(addressOf(name), "expected");
}

QTEST_GUILESS_MAIN(TestHtmlText)
#include "tst_html_text.moc"

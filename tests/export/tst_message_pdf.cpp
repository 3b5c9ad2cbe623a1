#include "base/texts.h"
#include "export/message_export.h"
#include "obstacles.h"
#include "pdf_pages.h"
#include "resources/resources.h"
#include "sample/heic_writer.h"
#include "sample_messages.h"
#include "support/small_disk.h"

#include <QBuffer>
#include <QTemporaryDir>
#include <QTest>

namespace {
constexpr double margin = 20;
constexpr double pageWidth = 595;
constexpr QRgb outgoingColour = 0xFF2B7A78;
constexpr QRgb incomingColour = 0xFFE8ECEB;

QImage plain(QRgb colour)
{
    QImage image(200, 100, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

QByteArray png(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

/// The smallest rectangle around what is filled with a colour, give or take what a JPEG changes; the rims of
/// letters, which may have any colour, are not filled.
QRect whereIs(const QImage &page, QRgb colour)
{
    const auto is = [&](int x, int y) {
        const QRgb pixel = page.pixel(x, y);
        return std::abs(qRed(pixel) - qRed(colour)) < 6 && std::abs(qGreen(pixel) - qGreen(colour)) < 6 &&
               std::abs(qBlue(pixel) - qBlue(colour)) < 6;
    };
    QRect found;
    for (int y = 1; y < page.height() - 1; ++y)
        for (int x = 1; x < page.width() - 1; ++x)
            if (is(x, y) && is(x - 1, y) && is(x + 1, y) && is(x, y - 1) && is(x, y + 1))
                found |= QRect(x - 1, y - 1, 3, 3);
    return found;
}

bool isAbout(QSize size, QSize expected)
{
    return std::abs(size.width() - expected.width()) <= 1 && std::abs(size.height() - expected.height()) <= 1;
}
} // namespace

class TestMessagePdf : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void textIsFound_data();
    void textIsFound();
    void datesAndLabels();
    void bubblesStandAtTheirSide();
    void systemItemsAreCentred();
    void longMessagesGoOnOverPages_data();
    void longMessagesGoOnOverPages();
    void dateStaysWithItsBubble();
    void attachments();
    void pictureOfEachKind_data();
    void pictureOfEachKind();
    void emojiAreDrawn_data();
    void emojiAreDrawn();
    void oneFileAConversation();
    void stopsLeaveNothing_data();
    void stopsLeaveNothing();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    SampleMessages m_sample;
    MemorySource m_source;
    ExportedMessages m_exported;

    QString path(const QString &name) const { return m_folder->filePath(name); }
    void say(const QString &text, int isFromMe = 0) { m_sample.message(nullptr, text).is_from_me = isFromMe; }
    /// Of messages without a conversation.
    QString made()
    {
        NoProgress progress;
        m_exported = exportMessages(m_sample.refs, MessageFormat::Pdf, m_folder->path(), &m_source, progress);
        return path("unknown-chat.pdf");
    }
};

void TestMessagePdf::initTestCase()
{
    initResources();
    installTexts();
}

void TestMessagePdf::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_sample.~SampleMessages();
    new (&m_sample) SampleMessages;
    m_source = MemorySource();
}

void TestMessagePdf::textIsFound_data()
{
    QTest::addColumn<QString>("text");
    const auto row = [](const char *text) { QTest::newRow(text) << QString::fromUtf8(text); };
    row("letters that fonts join: office file fluffy afflict");
    row("ligatures beside 😀 a flag");
    row("Größe, naïve, façade, Ærø");
    row("<b>not bold</b> & \"quotes\"");
    row("Καλημέρα κόσμε, доброе утро");
    row("שלום עולם");
    row("مرحبا صديقي");
    row("日本語の文字と一人");
    row("中文人力");
    row("안녕하세요");
    row("สวัสดี");
}

void TestMessagePdf::textIsFound()
{
    QFETCH(QString, text);
    say(text);
    QString found = pdfText(made());
    found.remove(QString::fromUtf8("😀"));
    QVERIFY2(found.contains(text.remove(QString::fromUtf8("😀")).simplified()), qPrintable(found));
}

void TestMessagePdf::datesAndLabels()
{
    const _MsgHandle &anna = m_sample.handle(QStringLiteral("+49 1"), QStringLiteral("Anna"));
    const _MsgHandle &ben = m_sample.handle(QStringLiteral("ben@x.org"));
    const _MsgChat &group = m_sample.chat(QStringLiteral("chat1"), {&anna, &ben});
    const _MsgHandle *speakers[] = {&anna, &ben, &ben, nullptr, &anna};
    int after = 0;
    for (const _MsgHandle *speaker : speakers) {
        _MsgMessage &message = m_sample.message(&group, QStringLiteral("text%1").arg(after));
        message.date = SampleMessages::noon + after;
        message.handle = speaker;
        message.is_from_me = after == 121;
        after += after == 60 ? 1 : 60;
    }
    made();
    QCOMPARE(pdfText(path("chat1.pdf")), QStringLiteral("01 Jan 2012 12:0 PM Anna text0 ben@x.org text60 "
                                                        "01 Jan 2012 12:1 PM ben@x.org text61 text121 "
                                                        "01 Jan 2012 12:3 PM Anna text181"));
    const QList<PdfWord> words = pdfWords(path("chat1.pdf"));
    QCOMPARE(words[5].text, QStringLiteral("Anna"));
    QVERIFY(std::abs(words[5].place.left() - margin - 25) < 1.5);
    // The date is centred in a line 22 high.
    QVERIFY(std::abs((words[0].place.left() + words[4].place.right()) / 2 - pageWidth / 2) < 1);
    QVERIFY(std::abs(words[0].place.center().y() - margin - 11) < 3);
    // The next message begins after the date's 24, the label's 19, the bubble and 11.
    const double step = words[7].place.top() - words[5].place.top();
    QVERIFY2(step > 19 + 11 + 12 && step < 19 + 11 + 36, qPrintable(QString::number(step)));
}

void TestMessagePdf::bubblesStandAtTheirSide()
{
    say(QStringLiteral("short"));
    say(QStringLiteral("wide ").repeated(60), 1);
    const QImage page = pdfPage(made(), 1);
    const QRect incoming = whereIs(page, incomingColour);
    const QRect outgoing = whereIs(page, outgoingColour);
    QVERIFY(std::abs(incoming.left() - margin) <= 1);
    QVERIFY(incoming.width() < 80);
    QVERIFY(std::abs(page.width() - outgoing.right() - margin) <= 2);
    const double widest = 0.8 * (pageWidth - 2 * margin);
    QVERIFY(outgoing.width() <= widest + 1 && outgoing.width() > widest - 60);
    QVERIFY(outgoing.top() > incoming.bottom());
}

void TestMessagePdf::systemItemsAreCentred()
{
    const _MsgHandle &anna = m_sample.handle(QStringLiteral("a@x.org"), QStringLiteral("Anna"));
    _MsgMessage &item = m_sample.message(nullptr, {});
    item.item_type = 2;
    item.handle = &anna;
    item.group_title = QStringLiteral("Walks");
    say(QStringLiteral("after"));
    const QString file = made();
    QVERIFY(pdfText(file).startsWith(QStringLiteral(
        "Anna named the conversation \"Walks\". 01 Jan 2012 12:0 PM 01 Jan 2012 12:1 PM after")));
    const QList<PdfWord> words = pdfWords(file);
    QVERIFY(std::abs((words[0].place.left() + words[4].place.right()) / 2 - pageWidth / 2) < 1);
    QVERIFY(words[0].place.height() < words.last().place.height());
}

void TestMessagePdf::longMessagesGoOnOverPages_data()
{
    QTest::addColumn<QString>("separator");
    QTest::addColumn<int>("words");
    QTest::newRow("many lines") << "\n" << 400;
    QTest::newRow("one paragraph") << " " << 9000;
    QTest::newRow("empty lines between") << "\n\n" << 300;
}

void TestMessagePdf::longMessagesGoOnOverPages()
{
    QFETCH(QString, separator);
    QFETCH(int, words);
    QStringList all;
    for (int i = 0; i < words; ++i)
        all += QStringLiteral("w%1").arg(i);
    say(QStringLiteral("before"));
    say(all.join(separator));
    say(QStringLiteral("after"), 1);
    const QString file = made();
    const QString text = pdfText(file);
    QVERIFY(text.contains(all.join(' ')));
    QVERIFY(text.endsWith(QStringLiteral(" after")));
    QVERIFY(pdfPageCount(file) > 4);
    for (const PdfWord &word : pdfWords(file))
        QVERIFY2(word.place.bottom() < 842 - margin + 1 && word.place.right() < pageWidth - margin,
                 qPrintable(word.text));
    QCOMPARE(whereIs(pdfPage(file, 3), incomingColour).left(), 20);
}

void TestMessagePdf::dateStaysWithItsBubble()
{
    for (int i = 0; i < 60; ++i)
        m_sample.message(nullptr, QStringLiteral("text%1").arg(i)).date += 300 * i;
    const QList<PdfWord> words = pdfWords(made());
    int pages = 0;
    for (qsizetype i = 5; i < words.size(); i += 6) {
        QVERIFY(words[i].text.startsWith(QStringLiteral("text")));
        QCOMPARE(words[i - 5].page, words[i].page);
        pages = words[i].page;
    }
    QVERIFY(pages > 2);
}

void TestMessagePdf::attachments()
{
    _MsgMessage &message = m_sample.message(nullptr, {});
    const QImage red = plain(0xFFC03020);
    m_sample.attach(message, QStringLiteral("a.png"), QStringLiteral("image/png"), m_source, png(red));
    m_sample.attach(message, QStringLiteral("lost.png"), QStringLiteral("image/png"));
    m_sample.attach(message, QStringLiteral("n.txt"), QStringLiteral("text/plain"), m_source, "the note");
    m_sample.attach(message, QStringLiteral("gone.txt"), QStringLiteral("text/plain"));
    m_sample.attach(message, QStringLiteral("l.txt"), QStringLiteral("Text/Plain"), m_source,
                    QByteArray(2'000'000, 'x'));
    m_sample.attach(message, QStringLiteral("a.vcf"), QStringLiteral("text/x-vCard"), m_source, "N:A");
    m_sample.attach(message, QStringLiteral("b.vcf"), QStringLiteral("text/vcard"), m_source,
                    "PHOTO;ENCODING=b:" + png(plain(0xFF3060C0)).toBase64());
    m_sample.attach(message, QStringLiteral("c.mov"), QStringLiteral("video/mp4"), m_source, "x");
    m_sample.attach(message, QStringLiteral("c.amr"), QStringLiteral("AUDIO/amr"), m_source, "x");
    m_sample.attach(message, QStringLiteral("c.pdf"), QStringLiteral("application/pdf"), m_source, "x");
    const QString file = made();
    QCOMPARE(pdfText(file), QStringLiteral("01 Jan 2012 12:0 PM the note [ATTACHMENT] [VCARD] [VIDEO] "
                                           "[AUDIO] [ATTACHMENT]"));
    const QImage page = pdfPage(file, 1);
    const QRect picture = whereIs(page, 0xFFC03020);
    QVERIFY(isAbout(picture.size(), {90, 45}));
    const QRect card = whereIs(page, 0xFF3060C0);
    QVERIFY(isAbout(card.size(), {150, 75}));
    QVERIFY(picture.bottom() < card.top());
    const QList<Issue> &issues = m_exported.report.issues();
    QCOMPARE(issues.size(), 2);
    QCOMPARE(issues[0].where, QStringLiteral("lost.png"));
    QCOMPARE(issues[1].where, QStringLiteral("gone.txt"));
    QCOMPARE(m_source.fetches, 5); // what is not shown is not fetched
}

void TestMessagePdf::pictureOfEachKind_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isShown");
    const QImage image = plain(0xFFC03020);
    QTest::newRow("PNG") << png(image) << true;
    QTest::newRow("HEIC") << sample::heicOf(image) << true;
    QTest::newRow("HEIC with a smaller version") << sample::heicOf(image, {1, 160}) << true;
    QTest::newRow("no picture") << QByteArray("<svg/>") << false;
    QTest::newRow("cut off") << png(image).left(40) << false;
}

void TestMessagePdf::pictureOfEachKind()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, isShown);
    m_sample.attach(m_sample.message(nullptr, {}), QStringLiteral("x"), QStringLiteral("image/x"), m_source,
                    content);
    const QImage page = pdfPage(made(), 1);
    // The bubble is there in any case, with the picture for none in it.
    QVERIFY(whereIs(page, incomingColour).width() > 90);
    QVERIFY(isAbout(whereIs(page, 0xFFC03020).size(), isShown ? QSize(90, 45) : QSize(0, 0)));
}

void TestMessagePdf::emojiAreDrawn_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("pictures");
    QTest::newRow("one") << QString::fromUtf8("😀") << 1;
    QTest::newRow("newer") << QString::fromUtf8("🥰") << 1;
    QTest::newRow("skin colour") << QString::fromUtf8("👍🏽") << 1;
    QTest::newRow("family") << QString::fromUtf8("👩‍👩‍👧") << 1;
    QTest::newRow("flags") << QString::fromUtf8("🇩🇪🇫🇷") << 2;
    QTest::newRow("key") << QString::fromUtf8("1️⃣ 1") << 1;
    QTest::newRow("heart with a choice of look") << QString::fromUtf8("❤️") << 1;
    QTest::newRow("sign as text") << QString::fromUtf8("✔︎") << 0;
    QTest::newRow("old telephone") << QString(QChar(0xE415)) << 1;
    QTest::newRow("the same ones") << QString::fromUtf8("😀😀 and 😀") << 3;
    QTest::newRow("half of one") << QString(QChar(0xD83D)) << 0;
    QTest::newRow("right to left") << QString::fromUtf8("שלום 😀") << 1;
}

void TestMessagePdf::emojiAreDrawn()
{
    QFETCH(QString, text);
    QFETCH(int, pictures);
    say(text);
    const QByteArray list = outputOf("pdfimages", {"-list", made()});
    QCOMPARE(int(list.count(" smask ")), pictures);
}

void TestMessagePdf::oneFileAConversation()
{
    const _MsgHandle &anna = m_sample.handle(QStringLiteral("+49 1"), QStringLiteral("Anna"));
    const _MsgChat &one = m_sample.chat(QStringLiteral("+49 1"), {&anna});
    const _MsgChat &device = m_sample.chat(QStringLiteral("x"), {&anna}, QStringLiteral("con"));
    m_sample.message(&one, QStringLiteral("first"));
    m_sample.message(&device, QStringLiteral("second"));
    say(QStringLiteral("third"));
    made();
    QCOMPARE(m_exported.files,
             (QStringList{path("Anna (+49 1).pdf"), path("$$con$$.pdf"), path("unknown-chat.pdf")}));
    QCOMPARE(m_exported.report.done, 3);
    QVERIFY(pdfText(m_exported.files[0]).endsWith(QStringLiteral("first")));
    QVERIFY(outputOf("pdfinfo", {m_exported.files[0]}).contains("Anna (+49 1)\n"));
    QVERIFY(outputOf("pdfinfo", {m_exported.files[0]}).contains("A4"));
    QCOMPARE(namesIn(m_folder->path()).size(), 3);
}

void TestMessagePdf::stopsLeaveNothing_data()
{
    QTest::addColumn<int>("questions"); // after which the export is cancelled
    QTest::addColumn<int>("diskBytes");
    QTest::addColumn<bool>("isCancelled");
    QTest::newRow("cancelled") << 500 << 1'000'000'000 << true;
    QTest::newRow("full disk") << 100'000 << 300'000 << false;
}

void TestMessagePdf::stopsLeaveNothing()
{
    QFETCH(int, questions);
    QFETCH(int, diskBytes);
    QFETCH(bool, isCancelled);
    for (int i = 0; i < 3000; ++i)
        say(QStringLiteral("a message of some length, number %1, so that the file grows").arg(i));
    StopAfter progress(questions);
    QString failure;
    bool cancelled = false;
    {
        const SmallDisk disk(static_cast<rlim_t>(diskBytes));
        try {
            failure = failureOf([&] {
                exportMessages(m_sample.refs, MessageFormat::Pdf, m_folder->path(), nullptr, progress);
            });
        } catch (const Cancelled &) {
            cancelled = true;
        }
    }
    QCOMPARE(cancelled, isCancelled);
    QCOMPARE(failure.contains(QStringLiteral("unknown-chat.pdf")), !isCancelled);
    QCOMPARE(namesIn(m_folder->path()), QStringList());
}

QTEST_MAIN(TestMessagePdf)
#include "tst_message_pdf.moc"

#include "base/texts.h"
#include "export/bubble_markup.h"
#include "export/export_messages_html.h"
#include "resources/resources.h"
#include "sample_messages.h"

#include <QTest>

namespace {
/// Every file is there under its device path; "gone" is not, and "long" is too long to show.
class FakeLinks : public AttachmentLinks
{
public:
    QByteArray link(const _MsgAttachment &attachment) override
    {
        return attachment.filename == QLatin1String("gone") ? "#" : attachment.filename.toUtf8();
    }
    QByteArray picture(const _MsgAttachment &attachment) override
    {
        return attachment.filename.contains(QLatin1String("pic")) ? "small" : "";
    }
    std::optional<QString> text(const _MsgAttachment &attachment) override
    {
        if (attachment.filename == QLatin1String("gone") || attachment.filename == QLatin1String("long"))
            return std::nullopt;
        return QStringLiteral("<b>\n");
    }
};

QString page(const std::vector<MessageRef> &refs, Labels labels = Labels::Names)
{
    FakeLinks links;
    DateText dates = ExportMessagesHtml::dateLines();
    BubbleMarkup markup({.emojiEndpoint = "files", .emptyPhoto = "empty", .labels = labels}, dates, links, 0);
    QByteArray out;
    for (const MessageRef &ref : refs) {
        markup.append(out, ref);
        out += '\n';
    }
    QString text = QString::fromUtf8(out);
    // The nine cells are the same in every bubble.
    const QString cells = QStringLiteral(
        "<div class=\"bb_bg top_left\"></div><div class=\"bb_bg top_middle\"></div><div class=\"bb_bg "
        "top_right\"></div><div class=\"bb_bg middle_left\"></div><div class=\"bb_bg "
        "middle_middle\"></div><div "
        "class=\"bb_bg middle_right\"></div><div class=\"bb_bg bottom_left\"></div><div class=\"bb_bg "
        "bottom_middle\"></div><div class=\"bb_bg bottom_right\"></div>");
    return text.replace(cells, QStringLiteral("*"));
}

const QString dateLine = QStringLiteral("<div class=\"dt\">01 Jan 2012 12:00 PM</div>");
const QString bubbleEnd = QStringLiteral("</div><div class=\"clear\"></div>");
} // namespace

class TestBubbleMarkup : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void bubble();
    void systemItemStandsAlone();
    void dateLineAfterMoreThanAMinute_data();
    void dateLineAfterMoreThanAMinute();
    void label_data();
    void label();
    void attachment_data();
    void attachment();
    void emptyBubble_data();
    void emptyBubble();
};

void TestBubbleMarkup::initTestCase()
{
    initResources();
    installTexts();
}

void TestBubbleMarkup::bubble()
{
    SampleMessages sample;
    sample.message(nullptr, QStringLiteral(" <script>alert(1)</script> "));
    _MsgMessage &outgoing = sample.message(nullptr, QStringLiteral("ok"));
    outgoing.is_from_me = 1;
    outgoing.subject = QStringLiteral("re");
    QCOMPARE(page(sample.refs),
             dateLine + QStringLiteral("<div class=\"bb1\">*&lt;script&gt;alert(1)&lt;/script&gt;") +
                 bubbleEnd + QStringLiteral("\n<div class=\"bb2\">*&lt;Subject:re&gt;<br/>ok") + bubbleEnd +
                 QStringLiteral("\n"));
}

void TestBubbleMarkup::systemItemStandsAlone()
{
    SampleMessages sample;
    _MsgMessage &message = sample.message(nullptr, QStringLiteral("x"));
    message.item_type = 2;
    message.group_title = QString::fromUtf8("<i>😀");
    sample.attach(message, QStringLiteral("a"), QStringLiteral("image/png"));
    QCOMPARE(page(sample.refs),
             QStringLiteral("<div class=\"sysif\">You named the conversation \"&lt;i&gt;<img "
                            "src=\"files/app_res/emoji/1F600.png\" />\".<br/>01 Jan 2012 12:0 PM</div>\n"));
}

void TestBubbleMarkup::dateLineAfterMoreThanAMinute_data()
{
    QTest::addColumn<QList<int>>("seconds");
    QTest::addColumn<int>("lines");
    QTest::newRow("60 seconds share one") << QList<int>{0, 60} << 1;
    QTest::newRow("61 seconds get two") << QList<int>{0, 61} << 2;
    QTest::newRow("counted from the last line, not from the last message") << QList<int>{0, 40, 80} << 2;
    QTest::newRow("an earlier message gets none") << QList<int>{0, -500, 50} << 1;
}

void TestBubbleMarkup::dateLineAfterMoreThanAMinute()
{
    QFETCH(QList<int>, seconds);
    SampleMessages sample;
    for (const int offset : seconds)
        sample.message(nullptr, QStringLiteral("x")).date = SampleMessages::noon + offset;
    QTEST(int(page(sample.refs).count(QStringLiteral("class=\"dt\""))), "lines");
}

void TestBubbleMarkup::label_data()
{
    QTest::addColumn<bool>("group");
    QTest::addColumn<bool>("outgoing");
    QTest::addColumn<bool>("senderKnown");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("nameAndAddress");
    QTest::newRow("incoming, group") << true << false << true << "A & B"
                                     << "A & B (+49 1)";
    QTest::newRow("outgoing, group") << true << true << true << ""
                                     << "";
    QTest::newRow("incoming, group, unknown sender") << true << false << false << ""
                                                     << "A & B (+49 1), b@example.org";
    QTest::newRow("incoming, one to one") << false << false << true << ""
                                          << "A & B (+49 1)";
    QTest::newRow("outgoing, one to one") << false << true << true << ""
                                          << "";
}

void TestBubbleMarkup::label()
{
    QFETCH(bool, group);
    QFETCH(bool, outgoing);
    QFETCH(bool, senderKnown);
    SampleMessages sample;
    const _MsgHandle &anna = sample.handle(QStringLiteral("+49 1"), QStringLiteral("A & B"));
    const _MsgHandle &other = sample.handle(QStringLiteral("b@example.org"));
    std::vector<const _MsgHandle *> people{&anna};
    if (group)
        people.push_back(&other);
    _MsgMessage &message = sample.message(&sample.chat(QStringLiteral("c"), people), QStringLiteral("x"));
    message.is_from_me = outgoing;
    if (!senderKnown)
        message.handle = nullptr;
    const auto expected = [&](const char *column) {
        QString label = *static_cast<QString *>(QTest::qData(column, qMetaTypeId<QString>()));
        label.replace(QLatin1Char('&'), QLatin1String("&amp;"));
        if (!label.isEmpty())
            label = QStringLiteral("<div class=\"ct_left\">") + label + bubbleEnd;
        return dateLine + label + QStringLiteral("<div class=\"%1\">*x").arg(outgoing ? "bb2" : "bb1") +
               bubbleEnd + QStringLiteral("\n");
    };
    QCOMPARE(page(sample.refs), expected("name"));
    QCOMPARE(page(sample.refs, Labels::NamesAndAddresses), expected("nameAndAddress"));
}

void TestBubbleMarkup::attachment_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("mimeType");
    QTest::addColumn<QString>("content"); // null: no bubble
    QTest::newRow("image") << "pic.jpg"
                           << "image/jpeg"
                           << "<a href=\"pic.jpg\"><img src=\"small\" "
                              "stype=\"max-width:120px;max-height:120px\"></a>";
    QTest::newRow("image without a thumbnail") << "x.heic"
                                               << "Image/HEIC"
                                               << "<a href=\"x.heic\"><img src=\"empty\" "
                                                  "stype=\"max-width:120px;max-height:120px\"></a>";
    QTest::newRow("missing image") << "gone"
                                   << "image/gif"
                                   << "<a href=\"#\"><img src=\"empty\" "
                                      "stype=\"max-width:120px;max-height:120px\"></a>";
    QTest::newRow("video") << "v.mov"
                           << "video/quicktime"
                           << "<a href=\"v.mov\">[VIDEO]</a>";
    QTest::newRow("missing audio") << "gone"
                                   << "AUDIO/amr"
                                   << "<a href=\"#\">[AUDIO]</a>";
    QTest::newRow("card with a picture") << "pic.vcf"
                                         << "text/x-vcard"
                                         << "<a href=\"pic.vcf\"><img src=\"small\" "
                                            "stype=\"max-width:200px;max-height:200px\"></a>";
    QTest::newRow("card without one") << "c.vcf"
                                      << "text/vcard"
                                      << "<a href=\"c.vcf\">[VCARD]</a>";
    QTest::newRow("text") << "t.txt"
                          << "text/plain"
                          << "&lt;b&gt;<br/>";
    QTest::newRow("text too long for a page") << "long"
                                              << "text/plain"
                                              << "<a href=\"long\">[ATTACHMENT]</a>";
    QTest::newRow("missing text") << "gone"
                                  << "text/plain" << QString();
    QTest::newRow("anything else") << "x.pdf"
                                   << "application/pdf"
                                   << "<a href=\"x.pdf\">[ATTACHMENT]</a>";
    QTest::newRow("no type") << "x"
                             << ""
                             << "<a href=\"x\">[ATTACHMENT]</a>";
}

void TestBubbleMarkup::attachment()
{
    QFETCH(QString, file);
    QFETCH(QString, mimeType);
    QFETCH(QString, content);
    SampleMessages sample;
    _MsgMessage &message = sample.message(nullptr, QString(QChar(0xFFFC)));
    message.is_from_me = 1;
    sample.attach(message, file, mimeType);
    const QString bubble =
        content.isNull() ? QString() : QStringLiteral("<div class=\"bb2\">*") + content + bubbleEnd;
    QCOMPARE(page(sample.refs), dateLine + bubble + QStringLiteral("\n"));
}

void TestBubbleMarkup::emptyBubble_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("attachments");
    QTest::addColumn<int>("bubbles");
    QTest::newRow("nothing at all: one empty bubble") << "" << 0 << 1;
    QTest::newRow("an attachment alone: its bubble only") << " " << 1 << 1;
    QTest::newRow("text and two attachments") << "x" << 2 << 3;
}

void TestBubbleMarkup::emptyBubble()
{
    QFETCH(QString, text);
    QFETCH(int, attachments);
    SampleMessages sample;
    _MsgMessage &message = sample.message(nullptr, text);
    for (int i = 0; i < attachments; ++i)
        sample.attach(message, QStringLiteral("a"), QStringLiteral("video/mp4"));
    QTEST(int(page(sample.refs).count(QStringLiteral("class=\"bb1\""))), "bubbles");
}

QTEST_GUILESS_MAIN(TestBubbleMarkup)
#include "tst_bubble_markup.moc"

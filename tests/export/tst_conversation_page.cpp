#include "base/texts.h"
#include "export/conversation_page.h"
#include "resources/resources.h"
#include "sample_messages.h"

#include <QTest>

namespace {
/// Every attachment is under its row id; a text that is "gone" is nowhere.
class Links : public AttachmentLinks
{
public:
    QByteArray link(const _MsgAttachment &attachment) override
    {
        return attachment.filename == QLatin1String("gone") ? "#" : QByteArray::number(attachment.rowid);
    }
    QByteArray picture(const _MsgAttachment &) override { return {}; }
    std::optional<QString> text(const _MsgAttachment &) override { return std::nullopt; }
};

QString page(const SampleMessages &sample, int number = 1, int count = 1)
{
    Links links;
    return QString::fromUtf8(conversationPage({number, count, sample.refs}, links));
}
} // namespace

class TestConversationPage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void wholePage();
    void pageLinks_data();
    void pageLinks();
    void pageCount_data();
    void pageCount();
    void dates();
    void attachments();
};

void TestConversationPage::initTestCase()
{
    initResources();
    installTexts();
}

void TestConversationPage::wholePage()
{
    SampleMessages sample;
    sample.message(nullptr, QString::fromUtf8("<1>\r\n😀")).rowid = 77;
    const QString html = page(sample);
    QVERIFY(html.startsWith(QStringLiteral(
        "<!DOCTYPE html PUBLIC \"-//W3C//DTD XHTML 1.0 Transitional//EN\" "
        "\"http://www.w3.org/TR/xhtml1/DTD/xhtml1-transitional.dtd\"><html "
        "xmlns=\"http://www.w3.org/1999/xhtml\"><head><meta http-equiv=\"Content-Type\" content=\"text/html; "
        "charset=utf-8\" /><title>Bubble</title><link href=\"bubble/style.css\" type=\"text/css\" "
        "rel=\"stylesheet\"/></head><body><a name=\"start\"></a><a name=\"sms_77\"></a><div class=\"dt\">01 "
        "Jan 2012 12:0 PM</div><div class=\"bb1\">")));
    QVERIFY(html.endsWith(QStringLiteral("&lt;1&gt;<br/><img src=\"/app_res/emoji/1F600.png\" /></div><div "
                                         "class=\"clear\"></div><a name=\"end\"></a></body></html>")));
}

void TestConversationPage::pageLinks_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("back");
    QTest::addColumn<bool>("on");
    QTest::newRow("the only one") << 1 << 1 << false << false;
    QTest::newRow("first") << 1 << 3 << false << true;
    QTest::newRow("middle") << 2 << 3 << true << true;
    QTest::newRow("last") << 3 << 3 << true << false;
}

void TestConversationPage::pageLinks()
{
    QFETCH(int, number);
    QFETCH(int, count);
    SampleMessages sample;
    sample.message(nullptr, QStringLiteral("x"));
    const QString html = page(sample, number, count);
    QTEST(html.contains(
              QStringLiteral("<a name=\"start\"></a><p><a href=\"/pre_page\">&lt;&lt;Previous Page</a></p>")),
          "back");
    QTEST(html.contains(
              QStringLiteral("<p><a href=\"/next_page\">&gt;&gt;Next Page</a></p><a name=\"end\"></a>")),
          "on");
}

void TestConversationPage::pageCount_data()
{
    QTest::addColumn<int>("messages");
    QTest::addColumn<int>("pages");
    QTest::newRow("none") << 0 << 0;
    QTest::newRow("one") << 1 << 1;
    QTest::newRow("50") << 50 << 1;
    QTest::newRow("51") << 51 << 2;
    QTest::newRow("101") << 101 << 3;
}

void TestConversationPage::pageCount()
{
    QFETCH(int, messages);
    QTEST(ConversationPage::countFor(static_cast<std::size_t>(messages)), "pages");
}

// The first message of every page tells its time, even one from before there were telephones.
void TestConversationPage::dates()
{
    SampleMessages sample;
    for (const int date : {INT_MIN, INT_MIN + 60, INT_MIN + 61, 0})
        sample.message(nullptr, QStringLiteral("x")).date = date;
    QCOMPARE(int(page(sample).count(QStringLiteral("class=\"dt\""))), 3);
}

void TestConversationPage::attachments()
{
    SampleMessages sample;
    _MsgMessage &message = sample.message(nullptr, QString(QChar(0xFFFC)));
    sample.attach(message, QStringLiteral("a"), QStringLiteral("Image/PNG"));
    sample.attach(message, QStringLiteral("gone"), QStringLiteral("text/plain"));
    const QString html = page(sample);
    QCOMPARE(int(html.count(QStringLiteral("class=\"bb1\""))), 1);
    QVERIFY(html.contains(QStringLiteral("<a href=\"1\"><img src=\"bubble/empty_photo.jpg\" "
                                         "stype=\"max-width:120px;max-height:120px\"></a>")));
}

QTEST_GUILESS_MAIN(TestConversationPage)
#include "tst_conversation_page.moc"

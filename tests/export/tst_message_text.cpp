#include "base/texts.h"
#include "export/date_text.h"
#include "export/export_messages_csv.h"
#include "export/message_text.h"
#include "resources/resources.h"
#include "sample_messages.h"

#include <QLocale>
#include <QTest>

class TestMessageText : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void systemItem_data();
    void systemItem();
    void bodyAndSummary_data();
    void bodyAndSummary();
    void summaryNamesAttachments_data();
    void summaryNamesAttachments();
    void field_data();
    void field();
    void datesEqualTheSlowWay_data();
    void datesEqualTheSlowWay();
};

void TestMessageText::initTestCase()
{
    initResources();
    installTexts();
}

void TestMessageText::systemItem_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("withPeople");
    QTest::addColumn<int>("shareStatus");
    QTest::addColumn<QString>("expected");
    const QString time = QStringLiteral("\n01 Jan 2012 12:0 PM");
    QTest::newRow("added") << 1 << true << 0 << "Anna Added +49 2 to the conversation." + time;
    QTest::newRow("added by you") << 1 << false << 0 << "You Added You to the conversation." + time;
    QTest::newRow("named, with place holders in the name")
        << 2 << true << 0 << "Anna named the conversation \"100 %1 %2\"." + time;
    QTest::newRow("left") << 3 << true << 0 << "Anna left the conversation." + time;
    QTest::newRow("started sharing") << 4 << true << 0 << "Anna started sharing location with +49 2." + time;
    QTest::newRow("stopped sharing") << 4 << false << 1 << "You stopped sharing location with You." + time;
    QTest::newRow("unknown") << 9 << true << 0 << "System Information." + time;
}

void TestMessageText::systemItem()
{
    QFETCH(int, type);
    QFETCH(bool, withPeople);
    QFETCH(int, shareStatus);
    SampleMessages sample;
    _MsgMessage &message = sample.message(nullptr, QStringLiteral("never shown"));
    message.item_type = type;
    message.group_title = QStringLiteral("100 %1 %2");
    message.share_status = shareStatus;
    if (withPeople) {
        message.handle = &sample.handle(QStringLiteral("+49 1"), QStringLiteral("Anna"));
        message.otherHandle = &sample.handle(QStringLiteral("+49 2"));
    }
    QTEST(systemText(message), "expected");
    QTEST(summaryText(message), "expected");
}

void TestMessageText::bodyAndSummary_data()
{
    QTest::addColumn<QString>("subject");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("summary");
    const QString place = QString(QChar(0xFFFC));
    QTest::newRow("plain") << ""
                           << "hello"
                           << "hello"
                           << "hello";
    QTest::newRow("blanks around") << ""
                                   << " \n a b\t"
                                   << "a b"
                                   << "a b";
    QTest::newRow("subject") << "re %1"
                             << "text"
                             << "<Subject:re %1>\ntext"
                             << "text";
    QTest::newRow("subject without text") << "re"
                                          << ""
                                          << "<Subject:re>"
                                          << "";
    QTest::newRow("places of attachments") << "" << place + " a" + place + "b " + place << "ab"
                                           << "ab";
    QTest::newRow("place alone") << "" << place << ""
                                 << "";
    QTest::newRow("emoji stay") << "" << QString::fromUtf8("😀✔") << QString::fromUtf8("😀✔")
                                << QString::fromUtf8("😀✔");
}

void TestMessageText::bodyAndSummary()
{
    QFETCH(QString, subject);
    QFETCH(QString, text);
    SampleMessages sample;
    _MsgMessage &message = sample.message(nullptr, text);
    message.subject = subject;
    QTEST(messageBody(message), "body");
    QTEST(summaryText(message), "summary");
}

void TestMessageText::summaryNamesAttachments_data()
{
    QTest::addColumn<QString>("mimeType");
    QTest::addColumn<QString>("word");
    QTest::newRow("image") << "image/heic"
                           << "[IMAGE]";
    QTest::newRow("image in capitals") << "IMAGE/JPEG"
                                       << "[IMAGE]";
    QTest::newRow("video") << "video/quicktime"
                           << "[VIDEO]";
    QTest::newRow("audio") << "audio/amr"
                           << "[AUDIO]";
    QTest::newRow("card") << "text/vcard"
                          << "[VCARD]";
    QTest::newRow("older card") << "text/x-vCard"
                                << "[VCARD]";
    QTest::newRow("card of another kind") << "text/vcard2"
                                          << "[ATTA]";
    QTest::newRow("text") << "text/plain"
                          << "[ATTA]";
    QTest::newRow("nothing known") << ""
                                   << "[ATTA]";
    QTest::newRow("no prefix of a type") << "x-image/png"
                                         << "[ATTA]";
}

void TestMessageText::summaryNamesAttachments()
{
    QFETCH(QString, mimeType);
    QFETCH(QString, word);
    SampleMessages sample;
    _MsgMessage &message = sample.message(nullptr, QStringLiteral("see"));
    sample.attach(message, QStringLiteral("a"), QStringLiteral("image/png"));
    sample.attach(message, QStringLiteral("b"), mimeType);
    QCOMPARE(summaryText(message), QStringLiteral("see [IMAGE] ") + word);
    message.text.clear();
    QCOMPARE(summaryText(message), QStringLiteral("[IMAGE] ") + word);
}

void TestMessageText::field_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("plain") << "a b;c" << QByteArray("a b;c");
    QTest::newRow("empty") << "" << QByteArray("");
    QTest::newRow("comma") << "a,b" << QByteArray("\"a,b\"");
    QTest::newRow("quote") << "a\"" << QByteArray("\"a\"\"\"");
    QTest::newRow("comma and quote") << "\"a\",b" << QByteArray("\"\"\"a\"\",b\"");
    QTest::newRow("line feed") << "a\nb" << QByteArray("\"a\nb\"");
    QTest::newRow("carriage return alone") << "a\rb" << QByteArray("a\rb");
    // Its low byte is a comma's.
    QTest::newRow("character beyond U+00FF") << QString(QChar(0x012C)) << QByteArray("\xC4\xAC");
}

void TestMessageText::field()
{
    QFETCH(QString, field);
    QTEST(csvField(field), "expected");
}

void TestMessageText::datesEqualTheSlowWay_data()
{
    QTest::addColumn<int>("date");
    const int noon = SampleMessages::noon;
    QTest::newRow("noon") << noon;
    QTest::newRow("one second later") << noon + 1;
    QTest::newRow("midnight") << noon + 12 * 3600;
    QTest::newRow("a second before midnight") << noon + 12 * 3600 - 1;
    QTest::newRow("first second of the summer time") << 354330000;
    QTest::newRow("the hour that comes twice, first") << 373077000;
    QTest::newRow("the hour that comes twice, second") << 373080600;
    QTest::newRow("zero") << 0;
    QTest::newRow("before 1970") << -1000000000;
    QTest::newRow("earliest") << std::numeric_limits<int>::min();
    QTest::newRow("latest") << std::numeric_limits<int>::max();
}

void TestMessageText::datesEqualTheSlowWay()
{
    QFETCH(int, date);
    const QDateTime time = QDateTime::fromSecsSinceEpoch(unixFromApple(date));
    const auto written = [date](DateText text) {
        QByteArray first;
        text.append(first, date);
        QByteArray second;
        text.append(second, date); // out of what it remembers
        return first == second ? QString::fromUtf8(first) : QStringLiteral("differs");
    };
    QCOMPARE(written(DateText::systemShort()), QLocale::system().toString(time, QLocale::ShortFormat));
    QCOMPARE(written(DateText::fixed(QStringLiteral("yyyy-MM-dd"), QStringLiteral("hh:mm:ss"))),
             time.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")));
    QCOMPARE(written(DateText::fixed(QStringLiteral("dd MMM yyyy"), QStringLiteral("hh:mm AP"))),
             time.toString(QStringLiteral("dd MMM yyyy hh:mm AP")));
    QCOMPARE(conversationDate(date), time.toString(QStringLiteral("dd MMM yyyy h:m AP")));
}

QTEST_GUILESS_MAIN(TestMessageText)
#include "tst_message_text.moc"

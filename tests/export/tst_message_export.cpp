#include "base/texts.h"
#include "export/message_export.h"
#include "obstacles.h"
#include "read_back.h"
#include "resources/resources.h"
#include "sample_messages.h"
#include "support/small_disk.h"

#include <QBuffer>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

namespace {
QByteArray png(int side)
{
    QImage image(side, side, QImage::Format_RGB32);
    image.fill(0xFF2B7A78);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

QStringList bubbleTexts(const QJsonObject &page)
{
    QStringList result;
    for (const QJsonValue &bubble : page[QLatin1String("bubbles")].toArray())
        result += bubble.toArray()[1].toString();
    return result;
}
} // namespace

class TestMessageExport : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void reference_data();
    void reference();
    void csvComesBackAsItWas();
    void textAndCsvAreSortedAnew();
    void pageHoldsNothingButText();
    void hostileAttachmentNames_data();
    void hostileAttachmentNames();
    void attachmentsOfOneName();
    void attachmentInTwoConversationsIsCopiedOnce();
    void attachmentWithALocalPathNeedsNoSource();
    void whatCannotBeHadIsNamed();
    void pageNames_data();
    void pageNames();
    void chatsOfOneIdentifierShareAPage();
    void secondExportLeavesTheFirstAlone();
    void progressAndCancel();
    void cancelInsideAnAttachment();
    void failures_data();
    void failures();
    void fullDiskEndsTheExport();
    void formatNames();

private:
    QTemporaryDir m_temporary;
    std::unique_ptr<QTemporaryDir> m_folder;
    SampleMessages m_sample;
    MemorySource m_source;

    QString path(const QString &name) const { return m_folder->filePath(name); }
    ExportedMessages run(MessageFormat format, const QString &target)
    {
        NoProgress progress;
        return exportMessages(m_sample.refs, format, target, &m_source, progress);
    }
    QJsonObject page(const QString &name) const
    {
        return readWith("read_page.py", {path(name)}).array().first().toObject();
    }
    void fillWithEverything();
};

void TestMessageExport::initTestCase()
{
    initResources();
    installTexts();
    // Thumbnails stay in the temporary folder.
    qputenv("TMPDIR", m_temporary.path().toUtf8());
}

void TestMessageExport::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_sample.~SampleMessages();
    new (&m_sample) SampleMessages;
    m_source = MemorySource();
}

/// One of each kind of line that a conversation may hold.
void TestMessageExport::fillWithEverything()
{
    const _MsgHandle &anna = m_sample.handle(QStringLiteral("+49 170 1"), QStringLiteral("Anna, \"A\""));
    const _MsgHandle &other = m_sample.handle(QStringLiteral("b@example.org"));
    const _MsgChat &group =
        m_sample.chat(QStringLiteral("chat1"), {&anna, &other}, QStringLiteral("Our & group"));
    m_sample.message(&group, QString::fromUtf8("Hi 😀 ✔ <b>\r\nשלום")).subject = QStringLiteral("re");
    m_sample.message(&group, QStringLiteral("soon")).is_from_me = 1;
    _MsgMessage &late = m_sample.message(&group, QString(QChar(0xFFFC)) + QStringLiteral("look"));
    late.date += 3600;
    late.handle = &other;
    m_sample.attach(late, QStringLiteral("~/Library/SMS/a b.png"), QStringLiteral("image/png"), m_source,
                    png(200));
    m_sample.attach(late, QStringLiteral("/x/note.txt"), QStringLiteral("text/plain"), m_source,
                    "one\n<two> ü");
    m_sample.attach(late, QStringLiteral("/x/clip.mov"), QStringLiteral("video/quicktime"));
    _MsgMessage &named = m_sample.message(&group, {});
    named.item_type = 2;
    named.group_title = QStringLiteral("Our & group");
}

void TestMessageExport::reference_data()
{
    QTest::addColumn<MessageFormat>("format");
    QTest::addColumn<QString>("written");
    QTest::newRow("text") << MessageFormat::Text << "messages.txt";
    QTest::newRow("csv") << MessageFormat::Csv << "messages.csv";
    QTest::newRow("html") << MessageFormat::Html << "chat1.html";
}

void TestMessageExport::reference()
{
    QFETCH(MessageFormat, format);
    QFETCH(QString, written);
    fillWithEverything();
    // A thumbnail is named by the place of its picture, which differs from run to run.
    const bool isPage = format == MessageFormat::Html;
    const ExportedMessages exported = run(format, isPage ? m_folder->path() : path(written));
    QCOMPARE(exported.report.done, 4);
    QCOMPARE(exported.files, QStringList{path(written)});
    QByteArray bytes = readFile(path(written));
    if (isPage) {
        const QStringList thumbnails = QDir(path("files")).entryList({QStringLiteral("*.thumb")});
        QCOMPARE(thumbnails.size(), 1);
        bytes.replace(thumbnails.first().toUtf8(), "THUMBNAIL");
    }
    const QString expected = QStringLiteral(TEST_REFERENCES "/") + written;
    if (qEnvironmentVariableIsSet("UPDATE_REFERENCES")) {
        QFile file(expected);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }
    QCOMPARE(bytes, readFile(expected));
}

void TestMessageExport::csvComesBackAsItWas()
{
    const _MsgHandle &anna = m_sample.handle(QStringLiteral("+1,2"), QStringLiteral("A \"x\"\nB"));
    const _MsgHandle &other = m_sample.handle(QStringLiteral("o"));
    m_sample.message(&m_sample.chat(QStringLiteral("one"), {&anna}), QStringLiteral("a,\"b\"\nc"))
        .is_from_me = 1;
    m_sample.message(&m_sample.chat(QStringLiteral("chat,9"), {&anna, &other}), QString::fromUtf8("ü😀"));
    m_sample.message(&m_sample.chat(QStringLiteral("nobody"), {}), QStringLiteral("x"));
    m_sample.message(nullptr, QStringLiteral("y"));
    run(MessageFormat::Csv, path("out.csv"));
    const QString who = QStringLiteral("A \"x\"\nB");
    const QJsonArray expected{
        QJsonArray{"date", "send", "person", "number", "content"},
        QJsonArray{"2012-01-01 12:00:00", "1", who, "+1,2", "a,\"b\"\nc"},
        QJsonArray{"2012-01-01 12:01:00", "0", "chat,9", "chat,9", QString::fromUtf8("ü😀")},
        QJsonArray{"2012-01-01 12:02:00", "0", "", "", "x"},
        QJsonArray{"2012-01-01 12:03:00", "0", "", "", "y"},
    };
    QCOMPARE(readWith("read_csv.py", {path("out.csv")}).array(), expected);
}

void TestMessageExport::textAndCsvAreSortedAnew()
{
    const _MsgChat &first = m_sample.chat(QStringLiteral("a"), {});
    const _MsgChat &second = m_sample.chat(QStringLiteral("b"), {});
    m_sample.message(&first, QStringLiteral("1"));
    m_sample.message(&first, QStringLiteral("4")).date += 4000;
    // Close to each other, so the row ids decide.
    m_sample.message(&second, QStringLiteral("2")).date += 100;
    m_sample.message(&second, QStringLiteral("3"));
    run(MessageFormat::Csv, path("out.csv"));
    QStringList contents;
    for (const QJsonValue &row : readWith("read_csv.py", {path("out.csv")}).array())
        contents += row.toArray().last().toString();
    QCOMPARE(contents, (QStringList{"content", "1", "2", "3", "4"}));
}

void TestMessageExport::pageHoldsNothingButText()
{
    const QString nasty =
        QStringLiteral("\"'><script src=x>alert(1)</script><img onerror=x>&lt;</div></body>");
    const _MsgHandle &one = m_sample.handle(nasty);
    const _MsgHandle &two = m_sample.handle(QStringLiteral("2"), nasty);
    const _MsgChat &chat = m_sample.chat(QStringLiteral("chat1"), {&one, &two}, nasty);
    _MsgMessage &message = m_sample.message(&chat, nasty);
    message.handle = &two;
    message.subject = nasty;
    m_sample.attach(message, QStringLiteral("t"), QStringLiteral("text/plain"), m_source, nasty.toUtf8());
    m_sample.attach(message, nasty, nasty, m_source, "x");
    _MsgMessage &system = m_sample.message(&chat, {});
    system.item_type = 1;
    system.handle = &two;
    run(MessageFormat::Html, m_folder->path());

    const QJsonObject read = page(QStringLiteral("chat1.html"));
    QCOMPARE(QStringList(read["tags"].toObject().keys()),
             (QStringList{"a", "body", "br", "div", "head", "html", "link", "meta", "title"}));
    QCOMPARE(strings(read["attributes"]),
             (QStringList{"class", "content", "href", "http-equiv", "rel", "type", "xmlns"}));
    QCOMPARE(bubbleTexts(read), (QStringList{"<Subject:" + nasty + ">\n" + nasty, nasty, "[ATTACHMENT]"}));
    QCOMPARE(strings(read["labels"]), QStringList(3, nasty));
    QCOMPARE(strings(read["missing"]), QStringList());
}

void TestMessageExport::hostileAttachmentNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("file");
    QTest::newRow("blanks and signs of addresses") << "a b #1 50%?.txt"
                                                   << "a b #1 50%.txt";
    QTest::newRow("percent code") << "%41%2F..%00.bin"
                                  << "%41%2F..%00.bin";
    QTest::newRow("line break and quotes") << "a\n\"b\"'c'.bin"
                                           << "ab'c'.bin";
    QTest::newRow("climbing") << "../../../evil.bin"
                              << "evil.bin";
    QTest::newRow("climbing as Windows does") << "..\\..\\evil.bin"
                                              << "evil.bin";
    QTest::newRow("dots") << "x/.."
                          << "attachment";
    QTest::newRow("nothing") << ""
                             << "attachment";
    QTest::newRow("device") << "CON.bin"
                            << "$$CON$$.bin";
    QTest::newRow("NUL character") << QStringLiteral("a") + QChar(0) + "b.bin"
                                   << "ab.bin";
    QTest::newRow("one of ours") << "style.css"
                                 << "style(1).css";
    QTest::newRow("our folder") << "app_res"
                                << "app_res(1)";
    QTest::newRow("markup") << "<img src=x onerror=y>&amp;.bin"
                            << "img src=x onerror=y&amp;.bin";
    QTest::newRow("script address") << "javascript:alert(1)"
                                    << "javascriptalert(1)";
    QTest::newRow("too long") << QString(300, 'x') + ".bin" << QString(251, 'x') + ".bin";
    QTest::newRow("umlaut and emoji") << QString::fromUtf8("ü😀.bin") << QString::fromUtf8("ü😀.bin");
}

void TestMessageExport::hostileAttachmentNames()
{
    QFETCH(QString, name);
    QFETCH(QString, file);
    m_sample.attach(m_sample.message(nullptr, {}), name, QStringLiteral("x/y"), m_source, "content");
    const ExportedMessages exported = run(MessageFormat::Html, path("out"));
    QCOMPARE(exported.attachmentsCopied, 1);
    QCOMPARE(readFile(path("out/files/") + file), QByteArray("content"));
    const QJsonObject read = page(QStringLiteral("out/unknown-chat.html"));
    QCOMPARE(strings(read["missing"]), QStringList());
    QCOMPARE(strings(read["links"]).last(), "files/" + file);
    QCOMPARE(namesIn(m_folder->path()), QStringList());
}

void TestMessageExport::attachmentsOfOneName()
{
    _MsgMessage &message = m_sample.message(nullptr, {});
    for (const char *content : {"first", "second", "third"})
        m_sample.attach(message, QStringLiteral("/x/%1/a.b.jpg").arg(content), QStringLiteral("x/y"),
                        m_source, content);
    run(MessageFormat::Html, m_folder->path());
    QCOMPARE(strings(page(QStringLiteral("unknown-chat.html"))["links"]).mid(1),
             (QStringList{"files/a.b.jpg", "files/a(1).jpg", "files/a(2).jpg"}));
    QCOMPARE(readFile(path("files/a.b.jpg")), QByteArray("first"));
    QCOMPARE(readFile(path("files/a(2).jpg")), QByteArray("third"));
    QCOMPARE(QFileInfo(path("files/a(1).jpg")).lastModified().toSecsSinceEpoch(), 1325419200);
}

void TestMessageExport::attachmentInTwoConversationsIsCopiedOnce()
{
    const _MsgChat &first = m_sample.chat(QStringLiteral("one"), {});
    const _MsgChat &second = m_sample.chat(QStringLiteral("two"), {});
    _MsgMessage &message = m_sample.message(&first, {});
    m_sample.attach(message, QStringLiteral("a.png"), QStringLiteral("image/png"), m_source, png(10));
    m_sample.refs.push_back({&second, &message});
    const ExportedMessages exported = run(MessageFormat::Html, m_folder->path());
    QCOMPARE(exported.attachmentsCopied, 1);
    QCOMPARE(m_source.fetches, 1);
    QCOMPARE(exported.files, (QStringList{path("Unknown.html"), path("Unknown(1).html")}));
    const auto link = [&](const char *name) { return strings(page(QLatin1String(name))["links"]).last(); };
    QCOMPARE(link("Unknown.html"), QStringLiteral("files/a.png"));
    QCOMPARE(link("Unknown(1).html"), QStringLiteral("files/a.png"));
}

void TestMessageExport::attachmentWithALocalPathNeedsNoSource()
{
    QFile local(path("local.bin"));
    QVERIFY(local.open(QIODevice::WriteOnly) && local.write("here") == 4 && local.flush());
    QVERIFY(local.setFileTime(QDateTime::fromSecsSinceEpoch(1000000000), QFileDevice::FileModificationTime));
    local.close();
    m_sample.attach(m_sample.message(nullptr, {}), QStringLiteral("x.bin"), QStringLiteral("x/y"))
        .local_path = local.fileName();
    NoProgress progress;
    exportMessages(m_sample.refs, MessageFormat::Html, path("out"), nullptr, progress);
    QCOMPARE(readFile(path("out/files/x.bin")), QByteArray("here"));
    QCOMPARE(QFileInfo(path("out/files/x.bin")).lastModified().toSecsSinceEpoch(), 1000000000);
}

void TestMessageExport::whatCannotBeHadIsNamed()
{
    _MsgMessage &message = m_sample.message(nullptr, {});
    m_sample.attach(message, QStringLiteral("unlisted.mov"), QStringLiteral("video/mp4"));
    const auto held = [&](const char *name) -> MemorySource::File & {
        return m_source
            .files[m_sample.attach(message, QLatin1String(name), QStringLiteral("video/mp4"), m_source, "x")
                       .source.relativePath];
    };
    held("listed.mov").listedOnly = true;
    held("broken.mov").failure = QStringLiteral("last byte must GT 0 and LET 16");
    held("unwritable.mov").unwritable = true;
    held("locked.mov").locked = true;
    held("good.mov");
    held("cut.mov").lacks = 5;
    const ExportedMessages exported = run(MessageFormat::Html, m_folder->path());
    const auto told = [](IssueKind kind, const char *what, const char *where, const QString &reason = {}) {
        return Issue{.kind = kind, .what = what, .where = QLatin1String(where), .reason = reason};
    };
    QCOMPARE(exported.report.issues(),
             (QList<Issue>{
                 told(IssueKind::Absent, "IDS_ISSUE_ATTACHMENTS_ABSENT", "unlisted.mov"),
                 told(IssueKind::Damaged, "IDS_ISSUE_ATTACHMENTS_LOST", "MediaDomain 2"),
                 told(IssueKind::Damaged, "IDS_ISSUE_ATTACHMENTS_NOT_READ", "MediaDomain 3",
                      "last byte must GT 0 and LET 16"),
                 told(IssueKind::Refused, "IDS_ISSUE_ATTACHMENTS_NOT_WRITTEN", "MediaDomain 4", "no"),
                 told(IssueKind::Locked, "IDS_ISSUE_ATTACHMENTS_LOCKED", "MediaDomain 5"),
                 told(IssueKind::Damaged, "IDS_ISSUE_FILES_CUT_OFF", "MediaDomain 7", "1 of 6 bytes"),
             }));
    QCOMPARE(exported.attachmentsCopied, 3);
    QCOMPARE(exported.report.done, 1);
    QCOMPARE(strings(page(QStringLiteral("unknown-chat.html"))["links"]).mid(1),
             (QStringList{"#", "#", "#", "#", "files/locked.mov", "files/good.mov", "files/cut.mov"}));
    QVERIFY(!QFileInfo::exists(path("files/broken.mov")));

    const Report kept = run(MessageFormat::Database, path("kept")).report;
    QCOMPARE(kept.count(IssueKind::Absent), 1);
    QVERIFY2(kept.count(IssueKind::Locked) == 1 && kept.isFailure(), qPrintable(problemsOf(kept).join(u'|')));
}

void TestMessageExport::pageNames_data()
{
    QTest::addColumn<QString>("identifier");
    QTest::addColumn<QStringList>("people"); // "id" or "id=name"
    QTest::addColumn<QString>("displayName");
    QTest::addColumn<QString>("file");
    const QStringList one{"+49 1=Anna"};
    const QStringList two{"+49 1=Anna", "b@x.org"};
    QTest::newRow("one to one") << "+49 1" << one << ""
                                << "Anna (+49 1).html";
    QTest::newRow("one without a name") << "b@x.org" << QStringList{"b@x.org"} << ""
                                        << "b@x.org.html";
    QTest::newRow("group") << "chat17" << two << "Ours"
                           << "chat17.html";
    QTest::newRow("group without an identifier") << "" << two << ""
                                                 << "Anna (+49 1), b@x.org.html";
    QTest::newRow("nobody in it") << "x" << QStringList{} << ""
                                  << "Unknown.html";
    QTest::newRow("display name") << "x" << one << "A/B: \"c\"?"
                                  << "AB c.html";
    QTest::newRow("device") << "x" << one << "con"
                            << "$$con$$.html";
    QTest::newRow("device with a middle part") << "x" << one << "Nul.x"
                                               << "$$Nul$$.html";
    QTest::newRow("a device that the rule leaves alone") << "x" << one << "lpt2"
                                                         << "lpt2.html";
    QTest::newRow("nothing left") << "x" << one << " ??? "
                                  << "unknown-chat.html";
    QTest::newRow("climbing") << "../../x" << two << ""
                              << "....x.html";
    QTest::newRow("line break") << "a\r\n\tb" << two << ""
                                << "ab.html";
    QTest::newRow("too long") << "x" << one << QString(300, 'y') << QString(250, 'y') + ".html";
}

void TestMessageExport::pageNames()
{
    QFETCH(QString, identifier);
    QFETCH(QStringList, people);
    QFETCH(QString, displayName);
    QFETCH(QString, file);
    std::vector<const _MsgHandle *> handles;
    for (const QString &person : people)
        handles.push_back(&m_sample.handle(person.section('=', 0, 0), person.section('=', 1)));
    m_sample.message(&m_sample.chat(identifier, handles, displayName), QStringLiteral("x"));
    run(MessageFormat::Html, path("out"));
    QCOMPARE(namesIn(path("out")), QStringList{file});
}

void TestMessageExport::chatsOfOneIdentifierShareAPage()
{
    const _MsgHandle &anna = m_sample.handle(QStringLiteral("A@x.org"));
    const _MsgChat &texts = m_sample.chat(QStringLiteral("A@x.org"), {&anna});
    const _MsgChat &other = m_sample.chat(QStringLiteral("other"), {&anna}, QStringLiteral("a@x.ORG"));
    const _MsgChat &messages = m_sample.chat(QStringLiteral("a@X.org"), {&anna});
    const auto say = [&](const _MsgChat &chat, const char *text, int minute) {
        m_sample.message(&chat, QLatin1String(text)).date = SampleMessages::noon + 60 * minute;
    };
    say(texts, "1", 0);
    say(texts, "4", 30);
    say(other, "another", 15);
    say(messages, "2", 10);
    say(messages, "3", 20);
    const ExportedMessages exported = run(MessageFormat::Html, m_folder->path());
    QCOMPARE(exported.files, (QStringList{path("A@x.org.html"), path("a@x(1).html")}));
    QCOMPARE(exported.report.done, 5);
    QCOMPARE(bubbleTexts(page(QStringLiteral("A@x.org.html"))), (QStringList{"1", "2", "3", "4"}));
    QCOMPARE(bubbleTexts(page(QStringLiteral("a@x(1).html"))), QStringList{"another"});
}

void TestMessageExport::secondExportLeavesTheFirstAlone()
{
    fillWithEverything();
    QVERIFY(QDir().mkpath(path("files")));
    QFile own(path("files/style.css"));
    QVERIFY(own.open(QIODevice::WriteOnly) && own.write("mine") == 4);
    own.close();
    run(MessageFormat::Html, m_folder->path());
    QCOMPARE(readFile(own.fileName()), QByteArray("mine"));
    const QByteArray first = readFile(path("chat1.html"));
    const QStringList files = namesIn(path("files"));

    const ExportedMessages again = run(MessageFormat::Html, m_folder->path());
    QCOMPARE(again.files, QStringList{path("chat1(1).html")});
    QCOMPARE(readFile(path("chat1.html")), first);
    QStringList added = namesIn(path("files"));
    for (const QString &name : files)
        QVERIFY(added.removeOne(name));
    QCOMPARE(added.size(), 3); // the picture, its thumbnail, the text
    QVERIFY(added.contains(QStringLiteral("a b(1).png")));
    QCOMPARE(strings(page(QStringLiteral("chat1(1).html"))["missing"]), QStringList());
}

void TestMessageExport::progressAndCancel()
{
    const _MsgChat &first = m_sample.chat(QStringLiteral("one"), {}, QStringLiteral("one"));
    const _MsgChat &second = m_sample.chat(QStringLiteral("two"), {}, QStringLiteral("two"));
    m_sample.message(&first, QStringLiteral("a"));
    m_sample.message(&second, QStringLiteral("b"));
    m_sample.message(&second, QStringLiteral("c"));
    StopAfter all(1000);
    exportMessages(m_sample.refs, MessageFormat::Html, path("all"), nullptr, all);
    QCOMPARE(all.reports.first(), QStringLiteral("Extracting Messages now. Please wait...|33|Messages: 1/3"));
    QCOMPARE(all.reports.last(), QStringLiteral("Extracting Messages now. Please wait...|100|Messages: 3/3"));

    // In the middle of the second conversation.
    StopAfter some(2);
    QVERIFY_EXCEPTION_THROWN(exportMessages(m_sample.refs, MessageFormat::Html, path("some"), nullptr, some),
                             Cancelled);
    QCOMPARE(namesIn(path("some")), QStringList{"one.html"});
    StopAfter none(2);
    QVERIFY_EXCEPTION_THROWN(
        exportMessages(m_sample.refs, MessageFormat::Text, path("none.txt"), nullptr, none), Cancelled);
    QCOMPARE(namesIn(m_folder->path()), QStringList());
}

void TestMessageExport::cancelInsideAnAttachment()
{
    m_sample.attach(m_sample.message(nullptr, {}), QStringLiteral("film.mov"), QStringLiteral("video/mp4"),
                    m_source, "x");
    StopAfter progress(1);
    QVERIFY_EXCEPTION_THROWN(
        exportMessages(m_sample.refs, MessageFormat::Html, m_folder->path(), &m_source, progress), Cancelled);
    QCOMPARE(namesIn(m_folder->path()), QStringList());
    QVERIFY(!QFileInfo::exists(path("files/film.mov")));
}

void TestMessageExport::failures_data()
{
    QTest::addColumn<MessageFormat>("format");
    QTest::addColumn<QString>("target"); // "%1" is a folder, "%1/file" a file in it
    QTest::addColumn<QString>("says");
    QTest::newRow("text into a folder") << MessageFormat::Text << "%1"
                                        << "%1";
    QTest::newRow("text below a file") << MessageFormat::Text << "%1/file/x.txt"
                                       << "%1/file";
    QTest::newRow("csv on a full disk") << MessageFormat::Csv << "/dev/full"
                                        << "/dev/full";
    QTest::newRow("pages into a file") << MessageFormat::Html << "%1/file"
                                       << "%1/file";
    QTest::newRow("pages below a file") << MessageFormat::Html << "%1/file/x"
                                        << "%1/file/x";
    QTest::newRow("documents below a file") << MessageFormat::Pdf << "%1/file/x"
                                            << "%1/file/x";
    QTest::newRow("no format") << MessageFormat(7) << "%1/x"
                               << "not support export format.";
}

void TestMessageExport::failures()
{
    QFETCH(MessageFormat, format);
    QFETCH(QString, target);
    QFETCH(QString, says);
    QFile file(path("file"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("precious") == 8);
    file.close();
    m_sample.message(nullptr, QStringLiteral("x"));
    const QString failure =
        failureOf([&] { run(format, target.replace(QLatin1String("%1"), m_folder->path())); });
    QVERIFY2(failure.contains(says.replace(QLatin1String("%1"), m_folder->path())), qPrintable(failure));
    QCOMPARE(readFile(file.fileName()), QByteArray("precious"));
    QCOMPARE(namesIn(m_folder->path()), QStringList{"file"});
}

void TestMessageExport::fullDiskEndsTheExport()
{
    m_sample.attach(m_sample.message(nullptr, {}), QStringLiteral("big.mov"), QStringLiteral("video/mp4"),
                    m_source, QByteArray(100'000, 'x'));
    const SmallDisk disk(50'000);
    const QString failure = failureOf([this] { run(MessageFormat::Html, m_folder->path()); });
    QVERIFY2(failure.contains(path("files/")), qPrintable(failure));
    QCOMPARE(namesIn(m_folder->path()), QStringList());
}

void TestMessageExport::formatNames()
{
    QCOMPARE(messageFormatOf(QStringLiteral("text")), MessageFormat::Text);
    QCOMPARE(messageFormatOf(QStringLiteral("csv")), MessageFormat::Csv);
    QCOMPARE(messageFormatOf(QStringLiteral("pdf")), MessageFormat::Pdf);
    QCOMPARE(messageFormatOf(QStringLiteral("html")), MessageFormat::Html);
    QVERIFY(!messageFormatOf(QStringLiteral("vcard")));
}

QTEST_MAIN(TestMessageExport)
#include "tst_message_export.moc"

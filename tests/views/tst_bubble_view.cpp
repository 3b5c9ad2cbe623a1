#include "base/error.h"
#include "base/private_folder.h"
#include "base/texts.h"
#include "export/sample_messages.h"
#include "resources/resources.h"
#include "support/modal.h"
#include "support/scratch_source.h"
#include "support/web_test_main.h"
#include "views/bubble_view_mgr.h"
#include "views/conversation_web_page.h"
#include "views/save_attachment.h"

#include <QBuffer>
#include <QFileDialog>
#include <QImage>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTcpServer>
#include <QWebEngineProfile>
#include <QWebEngineUrlRequestJob>
#include <QWebEngineUrlSchemeHandler>
#include <QWebEngineView>

namespace {
constexpr int loadTimeoutMs = 20000;

/// What the page holds now, as the engine understood it.
QString shownHtml(QWebEnginePage &page)
{
    QString html;
    bool done = false;
    page.toHtml([&](const QString &result) {
        html = result;
        done = true;
    });
    [&] { QTRY_VERIFY_WITH_TIMEOUT(done, loadTimeoutMs); }();
    return html;
}

QUrl pageLink(const char *path)
{
    return QUrl(QStringLiteral("quillbarrow://conversation") + QLatin1String(path));
}

QByteArray onePixel()
{
    QImage image(1, 1, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray png;
    QBuffer buffer(&png);
    image.save(&buffer, "PNG");
    return png;
}

/// Gives one page for every address, whatever that page holds.
class AnyPage : public QWebEngineUrlSchemeHandler
{
public:
    QByteArray html;
    void requestStarted(QWebEngineUrlRequestJob *job) override
    {
        auto *content = new QBuffer(job);
        content->setData(html);
        job->reply("text/html", content);
    }
};

/// Counts who comes to it.
class Outside
{
public:
    Outside()
    {
        m_server.listen(QHostAddress::LocalHost);
        QObject::connect(&m_server, &QTcpServer::newConnection, [this] { ++visits; });
    }
    QByteArray address() const { return "http://127.0.0.1:" + QByteArray::number(m_server.serverPort()); }
    /// Everything that a page might use to reach it or to run.
    QByteArray hostileMarkup() const
    {
        return QByteArray("<script>document.title='ran'</script>"
                          "<img src=\"HOST/a.png\"><img src=x onerror=\"document.title='ran'\">"
                          "<iframe src=\"HOST/frame\"></iframe><object data=\"HOST/o\"></object>"
                          "<embed src=\"HOST/e\"><link rel=stylesheet href=\"HOST/s.css\">"
                          "<link rel=prefetch href=\"HOST/p\"><link rel=dns-prefetch href=\"HOST\">"
                          "<meta http-equiv=\"refresh\" content=\"0;url=HOST/refresh\">"
                          "<video src=\"HOST/v.mp4\" autoplay></video>"
                          "<form action=\"HOST/form\"><input autofocus onfocus=\"this.form.submit()\"></form>"
                          "<svg onload=\"document.title='ran'\"></svg>"
                          "<div style=\"background:url(HOST/bg.png)\">x</div>"
                          "<base href=\"HOST/\"><a href=\"javascript:document.title='ran'\">link</a>")
            .replace("HOST", address());
    }

    int visits = 0;

private:
    QTcpServer m_server;
};

/// Remembers which files were asked for.
class WatchedSource : public ScratchSource
{
public:
    QString fetchForViewing(const SourceFile &file) override
    {
        fetched << file.relativePath;
        if (!failure.isEmpty())
            throw Error(failure, ErrorKind::Damaged);
        return ScratchSource::fetchForViewing(file);
    }
    QStringList fetched;
    QString failure;
};

/// A program in front of the others in the search path that notes what it is asked to open.
class FakeDesktop
{
public:
    FakeDesktop() : m_before(qgetenv("PATH"))
    {
        QFile program(m_folder.filePath(QStringLiteral("xdg-open")));
        if (program.open(QIODevice::WriteOnly))
            program.write("#!/bin/sh\nprintf %s \"$1\" > '" +
                          m_folder.filePath(QStringLiteral("opened")).toUtf8() + ".part'\nmv '" +
                          m_folder.filePath(QStringLiteral("opened")).toUtf8() + ".part' '" +
                          m_folder.filePath(QStringLiteral("opened")).toUtf8() + "'\n");
        program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        program.close();
        qputenv("PATH", m_folder.path().toUtf8() + ":" + m_before);
    }
    ~FakeDesktop() { qputenv("PATH", m_before); }
    QString opened() const
    {
        return QString::fromUtf8(readFile(m_folder.filePath(QStringLiteral("opened"))));
    }

private:
    QByteArray m_before;
    QTemporaryDir m_folder;
};

class Shown
{
public:
    explicit Shown(SampleMessages &sample) : m_sample(sample)
    {
        m_view.resize(600, 500);
        m_view.show();
        m_spy = std::make_unique<QSignalSpy>(m_view.page(), &QWebEnginePage::loadFinished);
        manager.setMessages(m_sample.refs, std::make_shared<LoadedMessages>(LoadedMessages{files(), {}}));
    }
    bool loaded()
    {
        const bool done = !m_spy->isEmpty() || m_spy->wait(loadTimeoutMs);
        m_spy->clear();
        return done;
    }
    QString html() { return shownHtml(*m_view.page()); }
    QWebEngineView &view() { return m_view; }
    WatchedSource &source() { return *m_source; }
    MessageFiles files() { return std::shared_ptr<FileSource>(m_source); }

private:
    SampleMessages &m_sample;
    std::shared_ptr<WatchedSource> m_source = std::make_shared<WatchedSource>();
    QWebEngineView m_view;
    std::unique_ptr<QSignalSpy> m_spy;

public:
    BubbleViewMgr manager{&m_view};
};
} // namespace

class TestBubbleView : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void pages();
    void picturesAreFetchedWithTheirPage();
    void attachmentIsMissing();
    void attachmentIsOpened();
    void textCannotBeRead();
    void attachmentIsSaved();
    void attachmentCannotBeSaved();
    void followsTheColours();
    void markupOfAMessageIsText();
    void closedProfileReachesNothing();
};

void TestBubbleView::initTestCase()
{
    initResources();
    installTexts();
}

void TestBubbleView::pages()
{
    SampleMessages sample;
    const _MsgChat &chat = sample.chat(QStringLiteral("+49 1"), {});
    for (int i = 1; i <= 101; ++i)
        sample.message(&chat, QStringLiteral("number %1.").arg(i));
    Shown shown(sample);
    QVERIFY(shown.loaded());
    QCOMPARE(shown.manager.pageCount(), 3);
    QCOMPARE(shown.manager.page(), 1);
    QString html = shown.html();
    QVERIFY(html.contains(QStringLiteral("number 50.")) && !html.contains(QStringLiteral("number 51.")));
    QVERIFY(!html.contains(QStringLiteral("/pre_page")) && html.contains(QStringLiteral("/next_page")));

    shown.manager.onLinkClicked(pageLink("/pre_page"));
    QCOMPARE(shown.manager.page(), 1);
    shown.manager.onLinkClicked(pageLink("/next_page"));
    QVERIFY(shown.loaded());
    QCOMPARE(shown.view().url().fragment(), QStringLiteral("start"));
    shown.manager.lastPage();
    QVERIFY(shown.loaded());
    QCOMPARE(shown.manager.page(), 3);
    QCOMPARE(shown.view().url().fragment(), QStringLiteral("end"));
    html = shown.html();
    QCOMPARE(html.count(QStringLiteral("class=\"bb1\"")), 1);
    QVERIFY(html.contains(QStringLiteral("/pre_page")) && !html.contains(QStringLiteral("/next_page")));
    shown.manager.nextPage();
    QCOMPARE(shown.manager.page(), 3);

    QVERIFY(shown.manager.showMessage(sample.refs[60].message->rowid));
    QCOMPARE(shown.manager.page(), 2);
    QVERIFY(!shown.manager.showMessage(100000));
    shown.manager.setMessages({}, nullptr);
    QCOMPARE(shown.manager.pageCount(), 0);
    QCOMPARE(shown.manager.page(), 0);
}

void TestBubbleView::picturesAreFetchedWithTheirPage()
{
    SampleMessages sample;
    const _MsgChat &chat = sample.chat(QStringLiteral("+49 1"), {});
    for (int i = 1; i <= 60; ++i)
        sample.attach(sample.message(&chat, {}), {}, QStringLiteral("image/png")).source = {
            QStringLiteral("M"), QStringLiteral("%1.png").arg(i)};
    Shown shown(sample);
    for (const int i : {1, 51})
        shown.source().put({QStringLiteral("M"), QStringLiteral("%1.png").arg(i)}, onePixel());
    QVERIFY(shown.loaded());
    QCOMPARE(shown.source().fetched, QStringList(QStringLiteral("1.png")));
    shown.manager.nextPage();
    QVERIFY(shown.loaded());
    QCOMPARE(shown.source().fetched, QStringList({QStringLiteral("1.png"), QStringLiteral("51.png")}));
}

void TestBubbleView::attachmentIsMissing()
{
    SampleMessages sample;
    sample.attach(sample.message(nullptr, {}), QStringLiteral("~/Library/x/gone.jpg"),
                  QStringLiteral("image/jpeg"));
    Shown shown(sample);
    QVERIFY(shown.loaded());
    const AnswerBox box;
    shown.manager.onLinkClicked(pageLink("/attachment/1"));
    QTRY_VERIFY_WITH_TIMEOUT(box.wasShown(), loadTimeoutMs);
    QVERIFY(box.text().contains(QStringLiteral("can not find ~/Library/x/gone.jpg.")));
}

void TestBubbleView::textCannotBeRead()
{
    SampleMessages sample;
    _MsgAttachment &letter = sample.attach(sample.message(nullptr, {}), {}, QStringLiteral("text/plain"));
    letter.source = {QStringLiteral("M"), QStringLiteral("letter.txt")};
    Shown shown(sample);
    shown.source().put(letter.source, "Dear");
    shown.source().failure = QStringLiteral("the disk is gone");
    QVERIFY(shown.loaded());
    QVERIFY2(shown.html().contains(QStringLiteral("the disk is gone")), qPrintable(shown.html()));
}

void TestBubbleView::attachmentIsOpened()
{
    const FakeDesktop desktop;
    SampleMessages sample;
    _MsgAttachment &film = sample.attach(sample.message(nullptr, {}), {}, QStringLiteral("video/mp4"));
    film.source = {QStringLiteral("M"), QStringLiteral("a b/film.MP4")};
    Shown shown(sample);
    shown.source().put(film.source, "film");
    QVERIFY(shown.loaded());
    shown.manager.onLinkClicked(pageLink("/attachment/1"));
    QTRY_VERIFY_WITH_TIMEOUT(!desktop.opened().isEmpty(), loadTimeoutMs);
    // A copy, which the other program may spoil, in a folder of its own.
    QVERIFY(desktop.opened() != shown.source().pathOf(film.source));
    QVERIFY(desktop.opened().endsWith(QStringLiteral("/film.MP4")));
    QCOMPARE(readFile(desktop.opened()), QByteArray("film"));
    removeOpenedFiles(QStringLiteral("loose"));
    QVERIFY(!QFile::exists(desktop.opened()));
}

void TestBubbleView::attachmentIsSaved()
{
    SampleMessages sample;
    _MsgAttachment &paper = sample.attach(sample.message(nullptr, {}), {}, QStringLiteral("application/pdf"));
    paper.source = {QStringLiteral("M"), QStringLiteral("paper.pdf")};
    Shown shown(sample);
    shown.source().put(paper.source, "new");
    QVERIFY(shown.loaded());
    const QTemporaryDir folder;
    const QString target = folder.filePath(QStringLiteral("paper.pdf"));
    QFile old(target);
    QVERIFY(old.open(QIODevice::WriteOnly) && old.write("older and longer") > 0);
    old.close();
    QString title;
    QString proposed;
    std::unique_ptr<AnswerBox> done;
    const OnModal<QFileDialog> choose([&](QFileDialog &dialog) {
        title = dialog.windowTitle();
        proposed = dialog.selectedFiles().value(0);
        dialog.setOption(QFileDialog::DontConfirmOverwrite);
        dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(target);
        done = std::make_unique<AnswerBox>();
        QMetaObject::invokeMethod(&dialog, "accept");
    });
    shown.manager.onLinkClicked(pageLink("/attachment/1"));
    QTRY_VERIFY_WITH_TIMEOUT(done && done->wasShown(), loadTimeoutMs);
    QCOMPARE(title, QStringLiteral("Save Attachment"));
    QCOMPARE(proposed, QDir::home().filePath(QStringLiteral("paper.pdf")));
    QCOMPARE(done->text(), QStringLiteral("Attachment saved successfully."));
    QCOMPARE(readFile(target), QByteArray("new"));
}

void TestBubbleView::attachmentCannotBeSaved()
{
    const QTemporaryDir folder;
    std::unique_ptr<AnswerBox> told;
    const OnModal<QFileDialog> choose([&](QFileDialog &dialog) {
        const QString target = folder.filePath(QStringLiteral("target.pdf"));
        dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(target);
        told = std::make_unique<AnswerBox>();
        QMetaObject::invokeMethod(&dialog, "accept");
    });
    saveAttachment(folder.filePath(QStringLiteral("gone.pdf")), nullptr);
    QVERIFY(told && told->wasShown());
    for (const char *said : {"Failed to save attachment.", "No such file"})
        QVERIFY2(told->text().contains(QLatin1String(said)), qPrintable(told->text()));
}

void TestBubbleView::followsTheColours()
{
    SampleMessages sample;
    sample.message(nullptr, QStringLiteral("x"));
    Shown shown(sample);
    QVERIFY(shown.loaded());
    const auto corner = [&] { return shown.view().grab().toImage().pixelColor(5, 450).lightness(); };
    QTRY_VERIFY_WITH_TIMEOUT(corner() > 240, loadTimeoutMs);
    shown.manager.setDark(true);
    QVERIFY(shown.loaded());
    QTRY_VERIFY_WITH_TIMEOUT(corner() < 60, loadTimeoutMs);
}

void TestBubbleView::markupOfAMessageIsText()
{
    Outside outside;
    SampleMessages sample;
    const _MsgHandle &anna =
        sample.handle(QStringLiteral("+49 1"), QString::fromLatin1(outside.hostileMarkup()));
    const _MsgChat &chat = sample.chat(QStringLiteral("+49 1"), {&anna, &anna});
    _MsgMessage &message = sample.message(&chat, QString::fromLatin1(outside.hostileMarkup()));
    message.subject = message.text;
    sample.attach(message, message.text, QStringLiteral("image/png\"><script>"));
    sample.message(&chat, message.text).item_type = 2;
    Shown shown(sample);
    QVERIFY(shown.loaded());
    const QString html = shown.html();
    QVERIFY(html.contains(QStringLiteral("&lt;script&gt;")));
    for (const char *element :
         {"<script", "<iframe", "<form", "<svg", "<video", "<object", "<base", "<img src=\"x"})
        QVERIFY2(!html.contains(QLatin1String(element)), element);
    QCOMPARE(shown.view().title(), QStringLiteral("Bubble"));
    QCOMPARE(outside.visits, 0);
}

// Even if markup came through, the engine must neither run it nor go anywhere.
void TestBubbleView::closedProfileReachesNothing()
{
    Outside outside;
    AnyPage pages;
    pages.html =
        "<html><head><title>Bubble</title></head><body>" + outside.hostileMarkup() + "</body></html>";
    const std::unique_ptr<QWebEngineProfile> profile(makeClosedProfile(&pages));
    QVERIFY(profile->isOffTheRecord());
    ConversationWebPage page(profile.get());
    QSignalSpy spy(&page, &QWebEnginePage::loadFinished);
    page.show(pageLink("/"));
    QVERIFY(spy.wait(loadTimeoutMs));
    QVERIFY(shownHtml(page).contains(QStringLiteral("<iframe")));
    pages.html = "<html><head><title>Second</title></head><body>y</body></html>";
    page.show(pageLink("/second"));
    QVERIFY(spy.wait(loadTimeoutMs));
    QTRY_COMPARE_WITH_TIMEOUT(page.title(), QStringLiteral("Second"), loadTimeoutMs);
    QCOMPARE(page.url(), pageLink("/second"));
    QCOMPARE(outside.visits, 0);
}

QB_WEB_TEST_MAIN(TestBubbleView)
#include "tst_bubble_view.moc"

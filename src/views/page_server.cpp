#include "views/page_server.h"

#include "base/error.h"
#include "export/attachment_file.h"
#include "export/emoji_picture.h"
#include "export/message_text.h"
#include "export/thumbnails.h"
#include "messages/attachment_content.h"
#include "views/web_views.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QUrl>
#include <QWebEngineUrlRequestJob>

namespace {
constexpr int threads = 2;
const QString attachmentPath = QStringLiteral("/attachment/");
const QString picturePath = QStringLiteral("/picture/");
const QString emojiPath = QStringLiteral("/app_res/emoji/");

// The engine keeps the style sheet of an address. The colours are part of it, so that it asks for the other
// one.
QUrl addressOfPage(quint64 number, bool isDark)
{
    QUrl url;
    url.setScheme(QLatin1String(conversationScheme));
    url.setHost(isDark ? QStringLiteral("dark") : QStringLiteral("light"));
    url.setPath(QStringLiteral("/"));
    url.setQuery(QString::number(number));
    return url;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray emptyPhoto()
{
    return contentOf(QStringLiteral(":/bubble/empty_photo.jpg"));
}

/// Stops once the page is left.
class PageProgress : public Progress
{
public:
    explicit PageProgress(const ShownPage &page) : m_page(page) {}
    void report(const QString &, int, const QString &) override {}
    bool isCancelled() const override { return m_page.left; }

private:
    const ShownPage &m_page;
};

/// An attachment's file here on the computer; no path when it is not there, or cannot be had for the reason.
struct Fetched
{
    std::optional<QString> path;
    QString reason;
};

Fetched fetched(const ShownPage &page, const _MsgAttachment &attachment)
{
    Fetched file;
    try {
        PageProgress progress(page);
        page.owner->files.use(progress,
                              [&](FileSource *source) { file.path = viewableFile(attachment, source); });
    } catch (const Error &error) {
        file.reason = error.sentence();
        qWarning("An attachment is not shown: %s", error.what());
    }
    return file;
}

/// The picture that stands for an attachment; empty when there is none.
QByteArray smallPicture(const ShownPage &page, const _MsgAttachment &attachment)
{
    const std::optional<QString> file = fetched(page, attachment).path;
    if (!file)
        return {};
    const bool isCard = attachmentKind(attachment.mime_type) == AttachmentKind::VCard;
    return (isCard ? vCardPictureOf(*file) : thumbnailOf(*file)).encoded();
}

/// Links to addresses of the page's own. Pictures are promised and made when the page asks for them.
class PageLinks : public AttachmentLinks
{
public:
    explicit PageLinks(const ShownPage &page) : m_page(page) {}

    QByteArray link(const _MsgAttachment &attachment) override
    {
        // A text that is not there leaves no bubble. Anything else says so when it is clicked.
        if (attachmentKind(attachment.mime_type) == AttachmentKind::PlainText)
            if (const Fetched file = fetched(m_page, attachment); !file.path && file.reason.isEmpty())
                return "#";
        return attachmentPath.toLatin1() + QByteArray::number(attachment.rowid);
    }
    QByteArray picture(const _MsgAttachment &attachment) override
    {
        const bool isCard = attachmentKind(attachment.mime_type) == AttachmentKind::VCard;
        if (isCard && smallPicture(m_page, attachment).isEmpty())
            return {};
        return picturePath.toLatin1() + QByteArray::number(attachment.rowid);
    }
    std::optional<QString> text(const _MsgAttachment &attachment) override
    {
        const Fetched file = fetched(m_page, attachment);
        if (!file.reason.isEmpty())
            return file.reason;
        if (!file.path || QFileInfo(*file.path).size() > longestShownTextBytes)
            return std::nullopt;
        return QString::fromUtf8(contentOf(*file.path));
    }

private:
    const ShownPage &m_page;
};
} // namespace

const _MsgAttachment *ShownPage::attachment(qint64 rowid) const
{
    const auto found = attachments.find(rowid);
    return found == attachments.end() ? nullptr : found->second;
}

PageServer::PageServer(QObject *parent)
    : QWebEngineUrlSchemeHandler(parent), m_page(std::make_shared<ShownPage>())
{
    m_threads.setMaxThreadCount(threads);
}

PageServer::~PageServer()
{
    m_page->left = true;
    m_threads.clear();
    m_threads.waitForDone();
}

QUrl PageServer::show(std::shared_ptr<ShownPage> page)
{
    m_page->left = true;
    m_page = std::move(page);
    for (const MessageRef &ref : m_page->page.messages)
        for (const _MsgAttachment *attachment : ref.message->attachments)
            m_page->attachments.emplace(attachment->rowid, attachment);
    return addressOfPage(++m_shown, m_dark);
}

const _MsgAttachment *PageServer::attachmentOf(const QUrl &url) const
{
    const QString path = url.path();
    return path.startsWith(attachmentPath) ? m_page->attachment(path.mid(attachmentPath.size()).toLongLong())
                                           : nullptr;
}

// The page follows the window's colours, whatever the desktop says.
QByteArray PageServer::styleSheet() const
{
    QByteArray sheet = contentOf(QStringLiteral(":/bubble/style.css"));
    sheet.replace("@media screen and (prefers-color-scheme: dark)",
                  m_dark ? "@media screen" : "@media not all");
    sheet.replace("color-scheme: light dark", m_dark ? "color-scheme: dark" : "color-scheme: light");
    return sheet;
}

void PageServer::requestStarted(QWebEngineUrlRequestJob *job)
{
    const QString path = job->requestUrl().path();
    const std::shared_ptr<const ShownPage> page = m_page;
    if (path == QLatin1String("/")) {
        answerLater(job, [page] {
            PageLinks links(*page);
            return Answer{"text/html", conversationPage(page->page, links)};
        });
    } else if (path == QLatin1String("/bubble/style.css")) {
        answer(job, {"text/css", styleSheet()});
    } else if (path.startsWith(QLatin1String("/bubble/"))) {
        answer(job, {path.endsWith(QLatin1String(".png")) ? "image/png" : "image/jpeg",
                     contentOf(QLatin1Char(':') + path)});
    } else if (path.startsWith(emojiPath)) {
        const QString key = path.mid(emojiPath.size()).section(QLatin1Char('.'), 0, 0);
        answerLater(job, [key] { return Answer{"image/png", emojiPng(key.toUInt(nullptr, 16))}; });
    } else if (path.startsWith(picturePath)) {
        const _MsgAttachment *attachment = page->attachment(path.mid(picturePath.size()).toLongLong());
        answerLater(job, [page, attachment] {
            const QByteArray picture = attachment ? smallPicture(*page, *attachment) : QByteArray();
            // The engine tells the kind of picture by its content.
            return Answer{"image/jpeg", picture.isEmpty() ? emptyPhoto() : picture};
        });
    } else {
        job->fail(QWebEngineUrlRequestJob::UrlNotFound);
    }
}

void PageServer::answerLater(QWebEngineUrlRequestJob *job, std::function<Answer()> make)
{
    const QPointer<QWebEngineUrlRequestJob> waiting(job);
    m_threads.start([this, waiting, make = std::move(make)] {
        Answer made;
        try {
            made = make();
        } catch (const Cancelled &) {
            // Nobody waits for it.
        } catch (const std::exception &error) {
            qWarning("A part of a conversation is not shown: %s", error.what());
            made = {"text/plain", error.what()};
        }
        QMetaObject::invokeMethod(
            this,
            [waiting, made] {
                if (waiting)
                    answer(waiting, made);
            },
            Qt::QueuedConnection);
    });
}

void PageServer::answer(QWebEngineUrlRequestJob *job, const Answer &answer)
{
    if (answer.content.isEmpty()) {
        job->fail(QWebEngineUrlRequestJob::UrlNotFound);
        return;
    }
    auto *content = new QBuffer(job); // read until the job has ended
    content->setData(answer.content);
    job->reply(answer.type, content);
}

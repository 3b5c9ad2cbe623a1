#include "views/bubble_view_mgr.h"

#include "base/error.h"
#include "base/shell.h"
#include "export/free_names.h"
#include "views/conversation_web_page.h"
#include "views/page_server.h"
#include "views/save_attachment.h"
#include "views/web_views.h"
#include "work/background_job.h"
#include "work/fetch_attachment_thread.h"
#include "work/message_boxes.h"
#include "work/opened_files.h"

#include <QWebEngineProfile>
#include <QWebEngineView>

#include <algorithm>

namespace {
const QString startAnchor = QStringLiteral("start");
const QString endAnchor = QStringLiteral("end");

/// The name of an attachment's file, which is what the desktop would go by.
QString storedName(const _MsgAttachment &attachment)
{
    const QString path = attachment.source.isNull() ? attachment.local_path : attachment.source.relativePath;
    return portableFileName(path.section(QLatin1Char('/'), -1), QStringLiteral("attachment"));
}
} // namespace

BubbleViewMgr::BubbleViewMgr(QWebEngineView *view, QObject *parent)
    : QObject(parent),
      m_view(view),
      m_server(std::make_unique<PageServer>()),
      m_profile(makeClosedProfile(m_server.get())),
      m_web(std::make_unique<ConversationWebPage>(m_profile.get()))
{
    view->setPage(m_web.get());
    connect(m_web.get(), &QWebEnginePage::loadFinished, this, &BubbleViewMgr::onLoadFinish);
    connect(m_web.get(), &ConversationWebPage::linkClicked, this, &BubbleViewMgr::onLinkClicked);
}

BubbleViewMgr::~BubbleViewMgr() = default;

void BubbleViewMgr::setMessages(std::vector<MessageRef> messages, LoadedMessagesPtr owner)
{
    m_messages = std::move(messages);
    m_owner = std::move(owner);
    m_pageCount = ConversationPage::countFor(m_messages.size());
    m_page = 0;
    if (m_pageCount > 0) {
        firstPage();
        return;
    }
    m_web->show(m_server->show(std::make_shared<ShownPage>()));
    emit pageChanged();
}

void BubbleViewMgr::firstPage()
{
    render(1, startAnchor);
}

void BubbleViewMgr::prePage()
{
    render(m_page - 1, endAnchor);
}

void BubbleViewMgr::nextPage()
{
    render(m_page + 1, startAnchor);
}

void BubbleViewMgr::lastPage()
{
    render(m_pageCount, endAnchor);
}

bool BubbleViewMgr::showMessage(qint64 rowid)
{
    const auto found = std::find_if(m_messages.begin(), m_messages.end(),
                                    [rowid](const MessageRef &ref) { return ref.message->rowid == rowid; });
    if (found == m_messages.end())
        return false;
    const auto position = static_cast<std::size_t>(found - m_messages.begin());
    render(ConversationPage::countFor(position + 1), QStringLiteral("sms_%1").arg(rowid));
    return true;
}

void BubbleViewMgr::render(int page, const QString &anchor)
{
    if (page < 1 || page > m_pageCount)
        return;
    m_page = page;
    m_anchor = anchor;
    auto shown = std::make_shared<ShownPage>();
    const auto first =
        m_messages.begin() + static_cast<std::ptrdiff_t>(ConversationPage::messagesPerPage) * (page - 1);
    const auto last =
        first + std::min<std::ptrdiff_t>(ConversationPage::messagesPerPage, m_messages.end() - first);
    shown->page = {page, m_pageCount, {first, last}};
    shown->owner = m_owner;
    QUrl url = m_server->show(std::move(shown));
    // The engine keeps to the anchor while pictures come in and move it.
    url.setFragment(m_anchor);
    m_web->show(url);
    emit pageChanged();
}

void BubbleViewMgr::onLoadFinish(bool ok)
{
    if (!ok)
        qWarning("Page %d of a conversation could not be shown", m_page);
}

void BubbleViewMgr::onLinkClicked(const QUrl &url)
{
    if (url.path() == QLatin1String("/pre_page"))
        prePage();
    else if (url.path() == QLatin1String("/next_page"))
        nextPage();
    else if (const _MsgAttachment *attachment = m_server->attachmentOf(url))
        openOrSave(*attachment);
}

// Other programs get a copy, so that what they do to it is done to no one's archive.
void BubbleViewMgr::openOrSave(const _MsgAttachment &attachment)
{
    const QString name = storedName(attachment);
    if (!isOpenedByTheDesktop(name)) {
        fetch(attachment, {});
        return;
    }
    try {
        fetch(attachment, placeToOpen(m_owner->files.owner(), QString::number(attachment.rowid), name));
    } catch (const Error &error) {
        showErrorBox(error.sentence());
    }
}

// A long film takes a while to decrypt; the window stays usable meanwhile.
void BubbleViewMgr::fetch(const _MsgAttachment &attachment, const QString &copyToOpen)
{
    auto worker = std::make_unique<FetchAttachmentThread>(attachment, m_owner, copyToOpen);
    FetchAttachmentThread *fetching = worker.get();
    m_fetch = std::make_unique<BackgroundJob>(std::move(worker));
    const QString name = attachment.filename.isEmpty() ? attachment.displayName() : attachment.filename;
    connect(m_fetch.get(), &BackgroundJob::succeeded, this, [this, fetching, name, copyToOpen] {
        if (!fetching->path())
            tellMissing(name);
        else if (copyToOpen.isEmpty())
            saveAttachment(*fetching->path(), m_view);
        else
            openInShell(copyToOpen);
    });
    connect(m_fetch.get(), &BackgroundJob::failed, this, [](const QString &text) { showErrorBox(text); });
    m_fetch->start();
}

void BubbleViewMgr::setDark(bool dark)
{
    m_server->setDark(dark);
    m_web->setBackgroundColor(dark ? QColor(0x16, 0x1b, 0x1b) : QColor(Qt::white));
    render(m_page, m_anchor);
}

#include "base/texts.h"
#include "bench_table.h"
#include "messages/ios6_message_db.h"
#include "resources/resources.h"
#include "sample/sample_maker.h"
#include "views/bubble_view_mgr.h"
#include "views/web_views.h"

#include <QApplication>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QWebEngineView>

#include <climits>

namespace {
constexpr std::size_t wantedMessages = 100000;
constexpr int madeMessages = 230000; // the largest conversation of a sample has nearly half of them

qint64 largestChat(const QString &path)
{
    IOS6MessageDb db(path, nullptr, ContactNames::AsStored);
    qint64 largest = 0;
    qint64 most = 0;
    for (const auto &[chat, count] : db.countMessagesByChat())
        if (count > most) {
            largest = chat;
            most = count;
        }
    if (static_cast<std::size_t>(most) < wantedMessages)
        std::abort();
    return largest;
}

std::unique_ptr<IOS6MessageDb> load(const QString &path, qint64 chat)
{
    auto db = std::make_unique<IOS6MessageDb>(path, nullptr, ContactNames::AsStored);
    NoProgress progress;
    db->loadChats();
    db->loadMessages(chat, progress);
    return db;
}

void awaitPage(QWebEngineView &view)
{
    QEventLoop loop;
    bool shown = false;
    const auto connection = QObject::connect(view.page(), &QWebEnginePage::loadFinished, [&](bool ok) {
        shown = ok;
        loop.quit();
    });
    loop.exec();
    QObject::disconnect(connection);
    if (!shown)
        std::abort();
}
} // namespace

int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    initResources();
    prepareWebViews();
    QApplication application(argc, argv);
    installTexts();
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("sms.db"));
    makeMessageDatabase(path, 17, madeMessages, 0, 1);
    const qint64 chat = largestChat(path);

    QWebEngineView view;
    view.resize(700, 700);
    view.show();
    BubbleViewMgr bubbles(&view);
    const auto show = [&] {
        auto owner = std::make_shared<LoadedMessages>();
        owner->database = load(path, chat);
        bubbles.setMessages(owner->database->select({chat}, INT_MIN, INT_MAX), owner);
        awaitPage(view);
    };
    show(); // the engine's own start is no part of it
    bench::compare("first page of a conversation of 100,000 messages, from its database", 1.5, show,
                   [&] { load(path, chat); });
}

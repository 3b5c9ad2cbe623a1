#include "base/error.h"
#include "bench_table.h"
#include "messages/ios6_message_db.h"
#include "sample/sample_maker.h"
#include "touch_columns.h"

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <functional>
#include <memory>

namespace {
constexpr int messages = 500000;
constexpr int chats = 2000;
constexpr double bytesPerMessage = 1000;

// The five statements of a whole load.
constexpr const char *statements[] = {
    "select * from chat",
    "select chat_id, max(date) as last from ( select cm.chat_id, m.date from chat_message_join as cm inner "
    "join "
    "message as m on cm.message_id=m.rowid ) as tmp group by chat_id",
    "select j.chat_id, h.* from chat_handle_join as j inner join handle as h on j.handle_id = h.rowid",
    "select j.chat_id, m.* from chat_message_join as j inner join message as m on j.message_id = m.rowid and "
    "m.item_type <> 4",
    "select ma.message_id, ma.attachment_id, cm.chat_id, a.* from message_attachment_join as ma inner join "
    "attachment as a on ma.attachment_id=a.rowid inner join chat_message_join as cm on "
    "ma.message_id=cm.message_id",
};

// Work that shares neither heap nor page cache of SQLite with what is measured.
double inChild(const std::function<double()> &work)
{
    int ends[2];
    if (pipe(ends) != 0)
        std::abort();
    const pid_t child = fork();
    if (child == 0) {
        const double result = work();
        const bool sent = write(ends[1], &result, sizeof result) == sizeof result;
        _exit(sent ? 0 : 1);
    }
    double result = 0;
    const bool received = read(ends[0], &result, sizeof result) == sizeof result;
    int status = 0;
    waitpid(child, &status, 0);
    if (!received || status != 0)
        std::abort();
    close(ends[0]);
    close(ends[1]);
    return result;
}

std::unique_ptr<AbsMessageDb> load(const QString &path)
{
    auto db = std::make_unique<IOS6MessageDb>(path, nullptr, ContactNames::AsStored);
    NoProgress progress;
    db->loadChats();
    db->loadMessages(0, progress);
    if (db->messageCount() < messages * 9 / 10 || db->report().isFailure())
        std::abort();
    return db;
}

double residentBytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        std::abort();
    return file.readAll().split(' ').at(1).toDouble() * static_cast<double>(sysconf(_SC_PAGESIZE));
}

void benchGeneration(const QString &folder, int ios)
{
    const QString path = QStringLiteral("%1/sms%2.db").arg(folder).arg(ios);
    inChild([&] { return makeMessageDatabase(path, ios, messages, chats, 1).messageRows; });

    const QByteArray name = "load 500,000 messages, iOS " + QByteArray::number(ios);
    bench::compare(
        name.constData(), 3, [&] { load(path); }, [&] { bench::touchEveryColumn(path, statements); });

    const double allowed = inChild([&] {
        const auto db = load(path);
        double bytes = 0;
        for (const MessageRef &ref : db->select({}, INT_MIN, INT_MAX))
            bytes += static_cast<double>(ref.message->text.size()) * 2 + bytesPerMessage;
        return bytes;
    });
    const double used = inChild([&] {
        malloc_trim(0);
        const double before = residentBytes();
        const auto db = load(path);
        return residentBytes() - before;
    });
    const QByteArray memory = "memory after that load, MB, iOS " + QByteArray::number(ios);
    bench::printRow(memory.constData(), used / 1e6, allowed / 1e6, 1.2);
}
} // namespace

int main()
{
    const QTemporaryDir folder;
    for (const int ios : {9, 17})
        benchGeneration(folder.path(), ios);
}

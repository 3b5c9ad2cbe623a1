#include "bench_table.h"

#include "export/message_export.h"
#include "messages/ios6_message_db.h"
#include "resources/resources.h"
#include "sample/sample_maker.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <climits>
#include <cstdlib>
#include <memory>

namespace {
constexpr int messages = 500000;
constexpr int chats = 2000;
constexpr int ios = 17;

std::unique_ptr<AbsMessageDb> load(const QString &path)
{
    auto db = std::make_unique<IOS6MessageDb>(path, nullptr, ContactNames::AsStored);
    NoProgress progress;
    db->loadChats();
    db->loadMessages(0, progress);
    return db;
}

/// Exports everything that is loaded into a place of its own; the files are removed outside of the clock.
void benchFormat(const char *name, double limit, const QString &database, MessageFormat format)
{
    const std::unique_ptr<AbsMessageDb> db = load(database);
    std::vector<double> exports;
    std::vector<double> loads;
    for (int i = 0; i < bench::runs; ++i) {
        loads.push_back(bench::milliseconds([&] { load(database); }));
        const QTemporaryDir target;
        exports.push_back(bench::milliseconds([&] {
            NoProgress progress;
            const ExportedMessages summary =
                exportMessages(db->select({}, INT_MIN, INT_MAX), format,
                               target.filePath(QStringLiteral("out")), nullptr, progress);
            if (summary.report.done < qint64(db->messageCount()))
                std::abort();
        }));
    }
    bench::printRow(name, bench::median(exports), bench::median(loads), limit);
}
} // namespace

int main(int argc, char **argv)
{
    // Emoji pictures are drawn with the system's fonts.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication app(argc, argv);
    initResources();
    const QTemporaryDir folder;
    const QString database = folder.filePath(QStringLiteral("sms.db"));
    makeMessageDatabase(database, ios, messages, chats, 1);
    benchFormat("export 500,000 messages to text", 1, database, MessageFormat::Text);
    benchFormat("export 500,000 messages to HTML", 3, database, MessageFormat::Html);
}

#include "bench_table.h"

#include "messages/ios6_message_db.h"
#include "messages/local_message_store.h"
#include "messages/save_messages.h"
#include "resources/resources.h"
#include "sample/sample_maker.h"

#include <QFile>
#include <QTemporaryDir>

#include <sqlite3.h>

#include <climits>
#include <cstdlib>
#include <string>

namespace {
constexpr int messages = 500000;
constexpr int chats = 2000;
constexpr int ios = 17;
constexpr int rounds = 3;
constexpr int rowsAtATime = 10000;
constexpr const char *tables[] = {"handle",
                                  "chat",
                                  "chat_handle_join",
                                  "message",
                                  "attachment",
                                  "chat_message_join",
                                  "message_attachment_join"};

/// One connection of SQLite without anything of ours.
class RawDb
{
public:
    explicit RawDb(const QString &path)
    {
        if (sqlite3_open(path.toUtf8().constData(), &m_db) != SQLITE_OK)
            std::abort();
        run("pragma cache_size=-65536");
    }
    ~RawDb() { sqlite3_close(m_db); }
    RawDb(const RawDb &) = delete;
    RawDb &operator=(const RawDb &) = delete;

    void run(const char *script)
    {
        if (sqlite3_exec(m_db, script, nullptr, nullptr, nullptr) != SQLITE_OK)
            std::abort();
    }
    sqlite3_stmt *prepare(const std::string &sql)
    {
        sqlite3_stmt *statement = nullptr;
        if (sqlite3_prepare_v2(m_db, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK)
            std::abort();
        return statement;
    }

private:
    sqlite3 *m_db = nullptr;
};

/// Rows that are held in memory between being read and being written.
using Rows = std::vector<sqlite3_value *>;

bool readSome(sqlite3_stmt *statement, Rows &rows)
{
    const int columns = sqlite3_column_count(statement);
    for (int row = 0; row < rowsAtATime; ++row) {
        if (sqlite3_step(statement) != SQLITE_ROW)
            return false;
        for (int i = 0; i < columns; ++i)
            rows.push_back(sqlite3_value_dup(sqlite3_column_value(statement, i)));
    }
    return true;
}

void insert(sqlite3_stmt *statement, const Rows &rows)
{
    const auto columns = static_cast<std::size_t>(sqlite3_bind_parameter_count(statement));
    for (std::size_t first = 0; first < rows.size(); first += columns) {
        for (std::size_t i = 0; i < columns; ++i)
            sqlite3_bind_value(statement, static_cast<int>(i) + 1, rows[first + i]);
        if (sqlite3_step(statement) != SQLITE_DONE)
            std::abort();
        sqlite3_reset(statement);
    }
}

double insertTable(RawDb &from, RawDb &to, const std::string &table)
{
    sqlite3_stmt *source = from.prepare("select * from " + table);
    std::string marks = "?";
    for (int i = 1; i < sqlite3_column_count(source); ++i)
        marks += ",?";
    sqlite3_stmt *target = to.prepare("insert into " + table + " values(" + marks + ")");
    double time = 0;
    for (bool more = true; more;) {
        Rows rows;
        more = readSome(source, rows);
        time += bench::milliseconds([&] { insert(target, rows); });
        for (sqlite3_value *value : rows)
            sqlite3_value_free(value);
    }
    sqlite3_finalize(source);
    sqlite3_finalize(target);
    return time;
}

/// The time it takes to write every row of a store into an empty one with the same indexes, in one
/// transaction; reading them does not count.
double insertEverything(const QString &store, const QString &path)
{
    RawDb from(store);
    RawDb to(path);
    QFile script(QStringLiteral(":/res/localmsgdb_ddl.sql"));
    if (!script.open(QIODevice::ReadOnly))
        std::abort();
    to.run(script.readAll().constData());
    to.run("begin");
    double time = 0;
    for (const char *table : tables)
        time += insertTable(from, to, table);
    return time + bench::milliseconds([&] { to.run("commit"); });
}

double save(const std::vector<MessageRef> &refs, const QString &folder, qint64 added)
{
    return bench::milliseconds([&] {
        NoProgress progress;
        const SavedMessages summary = saveMessages(refs, nullptr, folder, QString(), progress);
        if (summary.handled() < messages * 9 / 10 || (summary.added > 0) != (added > 0))
            std::abort();
    });
}
} // namespace

int main()
{
    initResources();
    const QTemporaryDir folder;
    const QString database = folder.filePath(QStringLiteral("sms.db"));
    makeMessageDatabase(database, ios, messages, chats, 1);
    IOS6MessageDb db(database, nullptr, ContactNames::AsStored);
    NoProgress progress;
    db.loadChats();
    db.loadMessages(0, progress);
    const std::vector<MessageRef> refs = db.select({}, INT_MIN, INT_MAX);

    std::vector<double> first;
    std::vector<double> again;
    std::vector<double> raw;
    for (int i = 0; i < rounds; ++i) {
        const QTemporaryDir round;
        first.push_back(save(refs, round.path(), 1));
        again.push_back(save(refs, round.path(), 0));
        raw.push_back(insertEverything(LocalMessageStore::pathIn(round.path()),
                                       round.filePath(QStringLiteral("raw.db"))));
    }
    bench::printRow("save 500,000 messages into an empty store", bench::median(first), bench::median(raw), 4);
    bench::printRow("save them again", bench::median(again), bench::median(first), 0.5);
}

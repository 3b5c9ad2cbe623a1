#include "sqlite/foreign_guard.h"

#include "base/progress.h"

#include <QRegularExpression>
#include <QStringList>

#include <sqlite3.h>

#include <iterator>
#include <utility>

namespace {
// SQLite asks as often whether to go on: some thousand times a second.
constexpr int stepsBetweenQuestions = 10'000;

// What a statement may take before its first row. Measured: 2,000,000 messages of 60 columns, 490 MB, are
// sorted within 126,000,000 steps, 0.3 for each byte of the file; a count over joins of narrow tables takes
// up to 1.5 for each. The first number lets a small file be searched without an index, and is over within
// seconds.
constexpr qint64 stepsOfAnyFile = 50'000'000;
constexpr qint64 stepsOfAByte = 10;

/// SQLite's limits, lowered to what the databases of a phone and the statements of this program stay far
/// below.
struct Limit
{
    int what;
    int value;
};

constexpr Limit limits[] = {
    // Pictures, sounds and attachments are files; in databases lie previews and pages of a few MB at most.
    {SQLITE_LIMIT_LENGTH, 64 << 20}, {SQLITE_LIMIT_EXPR_DEPTH, 100}, {SQLITE_LIMIT_COMPOUND_SELECT, 20},
    {SQLITE_LIMIT_VDBE_OP, 25'000},  {SQLITE_LIMIT_ATTACHED, 0},     {SQLITE_LIMIT_WORKER_THREADS, 0},
};

// A longer one would be repeated for every row that was stored before its column came.
constexpr int longestDefault = 1000;

thread_local const Progress *jobOfThread = nullptr;

/// Visits the rows of a statement of our own about the schema.
template <typename Visit>
void forEachRow(sqlite3 *db, const char *sql, const QString &value, Visit visit)
{
    sqlite3_stmt *statement = nullptr;
    sqlite3_prepare_v2(db, sql, -1, &statement, nullptr);
    const QByteArray utf8 = value.toUtf8();
    if (!value.isNull())
        sqlite3_bind_text(statement, 1, utf8.constData(), static_cast<int>(utf8.size()), SQLITE_TRANSIENT);
    while (sqlite3_step(statement) == SQLITE_ROW)
        visit(statement);
    sqlite3_finalize(statement);
}

QString textOf(sqlite3_stmt *statement, int column)
{
    const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(statement, column));
    return QString::fromUtf8(text, sqlite3_column_bytes(statement, column));
}

// What stands where a statement names a table: behind "from", "join" or a comma. Texts are left out.
QStringList namesIn(const QString &sql)
{
    static const QRegularExpression pattern(
        QStringLiteral(
            "'[^']*'|(?:\\bfrom|\\bjoin|,|\\btable_x?info\\()\\s*(?:\"((?:[^\"]|\"\")+)\"|(\\w+))"),
        QRegularExpression::CaseInsensitiveOption);
    QStringList names;
    for (auto match = pattern.globalMatch(sql); match.hasNext();) {
        const QRegularExpressionMatch found = match.next();
        QString quoted = found.captured(1);
        if (const QString name = quoted.isEmpty()
                                     ? found.captured(2)
                                     : quoted.replace(QLatin1String("\"\""), QLatin1String("\""));
            !name.isEmpty())
            names.append(name);
    }
    return names;
}
} // namespace

StatementStop::StatementStop(const Progress &progress) : m_before(std::exchange(jobOfThread, &progress)) {}

StatementStop::~StatementStop()
{
    jobOfThread = m_before;
}

bool StatementStop::isAsked()
{
    return jobOfThread && jobOfThread->isCancelled();
}

ForeignGuard::ForeignGuard(sqlite3 *db) : m_db(db), m_mostSteps(stepsOf(0))
{
    for (const Limit &limit : limits)
        sqlite3_limit(db, limit.what, limit.value);
    sqlite3_progress_handler(db, stepsBetweenQuestions, onProgress, this);
}

ForeignGuard::~ForeignGuard()
{
    sqlite3_progress_handler(m_db, 0, nullptr, nullptr);
}

qint64 ForeignGuard::stepsOf(qint64 bytes)
{
    return stepsOfAnyFile + stepsOfAByte * bytes;
}

int ForeignGuard::onProgress(void *self)
{
    auto *guard = static_cast<ForeignGuard *>(self);
    guard->m_steps += stepsBetweenQuestions;
    if (StatementStop::isAsked())
        guard->m_end = End::Stopped;
    else
        guard->m_end = guard->m_steps > guard->m_mostSteps ? End::RanAway : End::None;
    if (guard->m_end == End::None)
        return 0;
    guard->m_steps = 0;
    return 1;
}

void ForeignGuard::readTableKinds()
{
    static constexpr const char *sql = "select name, case when type='view' then 'is a view' when sql like "
                                       "'create virtual%' then 'is a virtual "
                                       "table' end from sqlite_master where type in ('table','view')";
    m_tables.clear();
    forEachRow(m_db, sql, {}, [this](sqlite3_stmt *row) {
        m_tables.insert(textOf(row, 0).toLower(), {textOf(row, 1), false});
    });
}

// Looked into when it is first named: a phone's database may have hundreds of tables, of which few are read.
QString ForeignGuard::faultOf(const QString &table)
{
    const auto known = m_tables.find(table.toLower());
    if (known == m_tables.end())
        return {};
    if (known->fault.isEmpty() && !known->isLookedInto) {
        known->isLookedInto = true;
        known->fault = computedColumnOf(table);
    }
    return known->fault;
}

QString ForeignGuard::computedColumnOf(const QString &table) const
{
    QString fault;
    forEachRow(
        m_db, "select name, hidden, length(dflt_value) from pragma_table_xinfo(?)", table,
        [&fault](sqlite3_stmt *row) {
            if (sqlite3_column_int(row, 1) > 1)
                fault = QStringLiteral("has a computed column, %1").arg(textOf(row, 0));
            else if (sqlite3_column_int64(row, 2) > longestDefault)
                fault =
                    QStringLiteral("has an oversized value in place of missing ones, %1").arg(textOf(row, 0));
        });
    return fault;
}

QString ForeignGuard::badTableOf(const QString &sql)
{
    const QStringList names = namesIn(sql);
    for (const QString &name : names)
        if (!faultOf(name).isEmpty())
            return name;
    return {};
}

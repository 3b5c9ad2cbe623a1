#include "sqlite/read_rows.h"

#include "base/report.h"
#include "sqlite/foreign_guard.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <queue>

namespace {
constexpr qint64 lowest = std::numeric_limits<qint64>::min();
constexpr qint64 highest = std::numeric_limits<qint64>::max();

// How often it is tried to get past damage: some microseconds each, so that hopeless files end within
// seconds.
constexpr int mostAttempts = 200'000;
// The same without having met a row, where none may be.
constexpr int mostAttemptsInVain = 5'000;
constexpr int attemptsBetweenQuestions = 256;
// A forged tree can have one page a million times.
constexpr int mostRepeatedRows = 1'000'000;

// Row ids of one table hardly lie farther apart.
constexpr std::uint64_t widthOfTables = 1 << 22;
constexpr qint64 firstLeap = 64;
constexpr int lastLevel = 100;

/// Row ids that have not been read, both ends included.
struct Gap
{
    qint64 first;
    qint64 last;
    bool isTail = false;     // reaches to the highest id there can be
    int level = 0;           // how unlikely it is that there are rows
    qint64 leap = firstLeap; // how far to look beyond the first for rows, in a tail

    std::uint64_t width() const
    {
        return static_cast<std::uint64_t>(last) - static_cast<std::uint64_t>(first);
    }
    bool isSingle() const { return first == last; }
    bool isEndless() const { return width() > widthOfTables; }
};

// The tail first, by leaps, since most rows may lie there. Then what lies between two rows, before what the
// leaps have passed, and the wide gaps before the narrow ones, for whole good pages may lie in them.
bool comesLater(const Gap &gap, const Gap &other)
{
    if (gap.isTail != other.isTail)
        return other.isTail;
    return gap.level != other.level ? gap.level > other.level : gap.width() < other.width();
}

/// One reading of a table.
class RowReader
{
public:
    RowReader(const Sqlite3DB &db, const TableRows &what, const PrepareRows &prepare);

    RowsRead readAll();
    RowsRead readById(const std::vector<qint64> &ids);
    /// What SQLite said of the damage.
    const std::optional<Error> &error() const { return m_error; }
    const QString &reason() const { return m_reason; }
    const QStringList &missingColumns() const { return m_missing; }

private:
    struct Statement
    {
        explicit Statement(Sqlite3Cursor &&statement) : cursor(std::move(statement)) {}
        Sqlite3Cursor cursor;
        std::function<void()> take;
    };

    std::unique_ptr<Statement> prepared(const QString &columns, const QString &rest) const;
    bool step(Statement &statement, bool &failed);
    void take(Statement &statement);
    std::optional<qint64> readPlainly();
    void expectDisorder();
    void readAround(qint64 from);
    bool isWorthAnAttempt(const Gap &gap);
    bool readFrom(Gap &gap, bool forwards);
    void split(const Gap &gap);
    void giveUp(const Gap &gap);
    bool exists(qint64 rowid);
    bool askIndexes();
    bool askIndex(const QString &index, bool isCovering);

    const Sqlite3DB &m_db;
    const PrepareRows &m_prepare;
    QString m_table;
    QStringList m_columns; // that the table has of those asked for
    QString m_list;
    QStringList m_missing;
    std::optional<Error> m_error;
    QString m_reason;
    RowsRead m_read;
    int m_attempts = 0;
    int m_attemptsInVain = 0;
    bool m_isDisordered = false;
    qint64 m_tracked = highest; // from this row id on, m_found has every row
    std::unique_ptr<Statement> m_forwards;
    std::unique_ptr<Statement> m_backwards;
    std::unique_ptr<Statement> m_single;
    std::priority_queue<Gap, std::vector<Gap>, bool (*)(const Gap &, const Gap &)> m_gaps{comesLater};
    QSet<qint64> m_found;
    bool m_isCounted = true; // the rows of all gaps that were given up are
};

RowReader::RowReader(const Sqlite3DB &db, const TableRows &what, const PrepareRows &prepare)
    : m_db(db), m_prepare(prepare), m_table(quotedName(what.table))
{
    const QSet<QString> there = db.tbCols(what.table);
    QStringList names;
    for (const QString &column : what.columns + what.optional) {
        const bool isThere = there.contains(column.toLower());
        names.append(isThere ? quotedName(column) : QStringLiteral("null as ") + quotedName(column));
        if (isThere)
            m_columns.append(column.toLower());
        else if (what.columns.contains(column))
            m_missing.append(column);
    }
    m_list = names.join(u',');
    if (what.columns.isEmpty()) {
        m_list = QStringLiteral("*");
        m_columns = there.values();
    }
}

std::unique_ptr<RowReader::Statement> RowReader::prepared(const QString &columns, const QString &rest) const
{
    auto statement = std::make_unique<Statement>(
        m_db.queryThrow(QStringLiteral("select rowid,%1 from %2 %3").arg(columns, m_table, rest)));
    statement->take = m_prepare(statement->cursor);
    return statement;
}

// Damage ends the statement, as the end of the rows does.
bool RowReader::step(Statement &statement, bool &failed)
{
    try {
        return statement.cursor.moveNext();
    } catch (const Error &error) {
        if (error.kind() != ErrorKind::Damaged)
            throw;
        if (!m_error) {
            m_error = error;
            m_reason = m_db.lastMessage();
        }
        failed = true;
        return false;
    }
}

void RowReader::take(Statement &statement)
{
    if (const qint64 rowid = statement.cursor.getInt64(0); rowid >= m_tracked) {
        if (m_found.contains(rowid))
            return;
        m_found.insert(rowid);
    }
    statement.take();
    ++m_read.rows;
}

// The first row id that was not read; nothing when all were. "not indexed" keeps to the order of the ids.
std::optional<qint64> RowReader::readPlainly()
{
    const auto statement = prepared(m_list, QStringLiteral("not indexed"));
    bool failed = false;
    std::optional<qint64> last;
    int repeated = 0;
    while (repeated < mostRepeatedRows && step(*statement, failed)) {
        const qint64 rowid = statement->cursor.getInt64(0);
        if (last && rowid <= *last && !m_isDisordered)
            expectDisorder();
        last = rowid;
        repeated += m_isDisordered && m_found.contains(rowid) ? 1 : 0;
        take(*statement);
    }
    if (m_isDisordered)
        return failed ? std::optional(lowest) : std::nullopt;
    if (!failed || last == highest)
        return std::nullopt;
    return last ? *last + 1 : lowest;
}

// Pages stand in the tree where they do not belong, or twice: from here on every row has to be known again.
void RowReader::expectDisorder()
{
    m_isDisordered = true;
    m_tracked = lowest;
    m_isCounted = false;
    m_reason = QStringLiteral("its rows are out of order");
    m_error = Error(
        QStringLiteral("can not read %1. Its table %2 is damaged, %3.").arg(m_db.name(), m_table, m_reason),
        ErrorKind::Damaged, FileAccess::Reading);
    Sqlite3Cursor before = m_db.queryThrow(QStringLiteral("select rowid from %1 not indexed").arg(m_table));
    while (m_found.size() < m_read.rows && before.moveNext())
        m_found.insert(before.getInt64(0));
}

RowsRead RowReader::readAll()
{
    const std::optional<qint64> from = readPlainly();
    m_tracked = m_isDisordered ? lowest : from.value_or(highest);
    if (from)
        readAround(*from);
    if (!m_error)
        return m_read;
    // A broken tree passes over rows without an error as well; an index knows of them.
    const bool isSure = askIndexes();
    if (!isSure && !m_isCounted)
        m_read.lost = 0;
    m_read.isWhole = isSure && m_read.lost == 0;
    return m_read;
}

RowsRead RowReader::readById(const std::vector<qint64> &ids)
{
    const auto statement = prepared(m_list, QStringLiteral("where rowid=?"));
    for (const qint64 rowid : ids) {
        statement->cursor.reset();
        statement->cursor.bindInt64(1, rowid);
        bool failed = false;
        if (step(*statement, failed))
            take(*statement);
        if (failed) {
            ++m_read.lost;
            m_read.isWhole = false;
        }
    }
    return m_read;
}

void RowReader::readAround(qint64 from)
{
    m_forwards = prepared(m_list, QStringLiteral("not indexed where rowid between ? and ? order by rowid"));
    m_backwards =
        prepared(m_list, QStringLiteral("not indexed where rowid between ? and ? order by rowid desc"));
    if (from == lowest) {
        m_gaps.push({lowest, -1, false, lastLevel});
        m_gaps.push({0, highest, true});
    } else {
        m_gaps.push({from, highest, true});
    }
    for (int attempts = 1; !m_gaps.empty(); ++attempts) {
        Gap gap = m_gaps.top();
        m_gaps.pop();
        if (!isWorthAnAttempt(gap)) {
            giveUp(gap);
            continue;
        }
        if (attempts % attemptsBetweenQuestions == 0 && StatementStop::isAsked())
            throw Cancelled();
        if (readFrom(gap, true) && readFrom(gap, false))
            split(gap);
    }
}

bool RowReader::isWorthAnAttempt(const Gap &gap)
{
    const bool isUnlikely = gap.level > 0 || gap.isEndless() || m_read.rows == 0;
    return isUnlikely ? ++m_attemptsInVain <= mostAttemptsInVain : ++m_attempts <= mostAttempts;
}

// Takes the rows of a gap from one of its ends up to the first damage: the gap then begins or ends there.
// False when nothing is left of it.
bool RowReader::readFrom(Gap &gap, bool forwards)
{
    Statement &statement = forwards ? *m_forwards : *m_backwards;
    statement.cursor.reset();
    statement.cursor.bindInt64(1, gap.first);
    statement.cursor.bindInt64(2, gap.last);
    bool failed = false;
    while (step(statement, failed)) {
        const qint64 rowid = statement.cursor.getInt64(0);
        if (rowid < gap.first || rowid > gap.last)
            return true; // the tree lies
        take(statement);
        if (rowid == (forwards ? gap.last : gap.first))
            return false;
        if (forwards)
            gap.first = rowid + 1;
        else
            gap.last = rowid - 1;
        gap.leap = firstLeap;
        gap.level = 0;
        m_attemptsInVain = 0;
    }
    return failed;
}

void RowReader::split(const Gap &gap)
{
    if (gap.isSingle()) {
        giveUp(gap);
        return;
    }
    if (gap.isTail && gap.isEndless()) {
        const qint64 beyond = gap.first + std::min(gap.leap, static_cast<qint64>(gap.width() / 2));
        m_gaps.push({gap.first, beyond - 1, false, gap.level + 1});
        m_gaps.push(
            {beyond, gap.last, true, gap.level + 1, gap.leap < highest / 4 ? gap.leap * 2 : gap.leap});
        return;
    }
    const auto half = static_cast<qint64>((gap.width() + 1) / 2);
    m_gaps.push({gap.first, gap.first + half - 1, false, gap.level});
    m_gaps.push({gap.first + half, gap.last, false, gap.level});
}

void RowReader::giveUp(const Gap &gap)
{
    if (gap.isSingle() && exists(gap.first))
        ++m_read.lost;
    else
        m_isCounted = false;
}

/// True for a row whose page can be read while what it holds cannot.
bool RowReader::exists(qint64 rowid)
{
    if (!m_single)
        m_single = std::make_unique<Statement>(
            m_db.queryThrow(QStringLiteral("select rowid from %1 not indexed where rowid=?").arg(m_table)));
    m_single->cursor.reset();
    m_single->cursor.bindInt64(1, rowid);
    bool failed = false;
    return step(*m_single, failed);
}

// An index knows the row ids of what the table has lost, and the columns that it is made of. False when none
// can tell.
bool RowReader::askIndexes()
{
    QStringList covering;
    QStringList others;
    Sqlite3Cursor index = m_db.queryThrow(QStringLiteral("pragma index_list(%1)").arg(m_table));
    while (index.moveNext()) {
        const bool isPartial = index.getInt(4) != 0;
        if (isPartial)
            continue;
        QSet<QString> columns;
        Sqlite3Cursor column =
            m_db.queryThrow(QStringLiteral("pragma index_info(%1)").arg(quotedName(index.getText(1))));
        while (column.moveNext())
            columns.insert(column.getText(2).toLower());
        const bool isCovering = columns.contains(QSet<QString>(m_columns.begin(), m_columns.end()));
        (isCovering ? covering : others).append(index.getText(1));
    }
    return std::any_of(covering.begin(), covering.end(),
                       [this](const QString &name) { return askIndex(name, true); }) ||
           std::any_of(others.begin(), others.end(),
                       [this](const QString &name) { return askIndex(name, false); });
}

// False when the index is damaged itself; what it gave before stays.
bool RowReader::askIndex(const QString &index, bool isCovering)
{
    const QString rest = QStringLiteral("indexed by ") + quotedName(index);
    const auto statement = isCovering ? prepared(m_list, rest)
                                      : std::make_unique<Statement>(m_db.queryThrow(
                                            QStringLiteral("select rowid from %1 %2").arg(m_table, rest)));
    bool failed = false;
    qint64 lost = 0;
    while (step(*statement, failed)) {
        const qint64 rowid = statement->cursor.getInt64(0);
        if (rowid < m_tracked || m_found.contains(rowid))
            continue;
        if (isCovering) {
            m_found.insert(rowid);
            statement->take();
            ++m_read.rows;
        } else {
            ++lost;
        }
    }
    if (failed)
        return false;
    m_read.lost = lost;
    return true;
}

void addIssue(const Sqlite3DB &db, Report &report, const char *what, qint64 count, const QString &reason)
{
    report.add(
        {.kind = IssueKind::Damaged, .what = what, .where = db.name(), .count = count, .reason = reason});
}

/// False when there is no such table to read; says so when there should be.
bool isReadable(const Sqlite3DB &db, const TableRows &what, Report &report)
{
    const QString fault = db.tableFault(what.table);
    if (fault.isEmpty())
        return true;
    if (what.need == TableRows::Need::Essential)
        db.requireTable(what.table);
    const bool isAbsent = !db.guard() || db.guard()->faultOf(what.table).isEmpty();
    if (what.need == TableRows::Need::Expected || !isAbsent)
        addIssue(db, report, "IDS_ISSUE_TABLE_UNREADABLE", 1, fault);
    return false;
}

/// Tells what a reading has lost.
void tell(const Sqlite3DB &db, const TableRows &what, const RowReader &reader, const RowsRead &read,
          Report &report)
{
    if (!reader.missingColumns().isEmpty())
        addIssue(db, report, "IDS_ISSUE_COLUMNS_MISSING", reader.missingColumns().size(),
                 what.table + QStringLiteral(": ") + reader.missingColumns().join(QStringLiteral(", ")));
    if (read.isWhole)
        return;
    if (read.rows == 0 && what.need == TableRows::Need::Essential)
        throw *reader.error();
    const QString reason = QStringLiteral("%1: %2").arg(what.table, reader.reason());
    addIssue(db, report, read.lost > 0 ? "IDS_ISSUE_ROWS_DAMAGED" : "IDS_ISSUE_UNKNOWN_ROWS_DAMAGED",
             read.lost, reason);
}
} // namespace

RowsRead readRows(const Sqlite3DB &db, const TableRows &what, Report &report, const PrepareRows &prepare)
{
    if (!isReadable(db, what, report))
        return {.isWhole = false};
    RowReader reader(db, what, prepare);
    const RowsRead read = reader.readAll();
    tell(db, what, reader, read, report);
    return read;
}

RowsRead readRowsById(const Sqlite3DB &db, const TableRows &what, const std::vector<qint64> &ids,
                      Report &report, const PrepareRows &prepare)
{
    if (!isReadable(db, what, report))
        return {.isWhole = false};
    RowReader reader(db, what, prepare);
    const RowsRead read = reader.readById(ids);
    tell(db, what, reader, read, report);
    return read;
}

qint64 countRows(const Sqlite3DB &db, const TableRows &what, Report &report)
{
    return readRows(db, what, report, [](const Sqlite3Cursor &) { return [] {}; }).rows;
}

#include "personal/notes_db.h"

#include "backup/device_database.h"
#include "base/error.h"
#include "base/report.h"
#include "personal/plain_text.h"
#include "personal/stored_date.h"
#include "sqlite/read_rows.h"

#include <QCryptographicHash>
#include <QHash>

#include <algorithm>
#include <utility>
#include <vector>

namespace {
const SourceFile notesFile{QStringLiteral("HomeDomain"), QStringLiteral("Library/Notes/notes.sqlite")};
const SourceFile newerStoreFile{QStringLiteral("AppDomainGroup-group.com.apple.notes"),
                                QStringLiteral("NoteStore.sqlite")};

constexpr qsizetype summaryLength = 100;

const TableRows noteRows{QStringLiteral("ZNOTE"),
                         {QStringLiteral("ZINTEGERID"), QStringLiteral("ZCREATIONDATE"),
                          QStringLiteral("ZMODIFICATIONDATE"), QStringLiteral("ZTITLE"),
                          QStringLiteral("ZSUMMARY"), QStringLiteral("ZBODY")}};

QString summaryOf(const QString &content)
{
    const QString text = plainTextOfHtml(content, summaryLength);
    return text.size() > summaryLength ? firstCharacters(text, summaryLength) + QStringLiteral("...") : text;
}

/// The columns of the local table, resolved once.
struct LocalColumns
{
    explicit LocalColumns(const Sqlite3Cursor &row)
        : created(row.columnIndex(QStringLiteral("create_date"))),
          modified(row.columnIndex(QStringLiteral("modified_date"))),
          title(row.columnIndex(QStringLiteral("title"))),
          summary(row.columnIndex(QStringLiteral("summary"))),
          content(row.columnIndex(QStringLiteral("content"))),
          device(row.columnIndex(QStringLiteral("dev_id"))),
          source(row.columnIndex(QStringLiteral("src_id"))),
          hash(row.columnIndex(QStringLiteral("hash")))
    {
    }

    NoteEntry read(const Sqlite3Cursor &row, const QString &where, Report &report) const
    {
        return {storedDate(row, created, Epoch::Unix, where, report),
                storedDate(row, modified, Epoch::Unix, where, report),
                row.getText(title),
                row.getText(summary),
                row.getText(content),
                row.getText(device),
                row.getText(source),
                row.getText(hash)};
    }

    int created, modified, title, summary, content, device, source, hash;
};
} // namespace

/// What the notes say, by row of their table. False when some of it cannot be read.
bool IOSNotesDb::readBodies(QHash<qint64, QString> &bodies, Report &report) const
{
    return readRows(m_db,
                    {.table = QStringLiteral("ZNOTEBODY"),
                     .columns = {QStringLiteral("Z_PK"), QStringLiteral("ZCONTENT")},
                     .need = TableRows::Need::Expected},
                    report,
                    [&bodies](const Sqlite3Cursor &row) {
                        return [&bodies, &row] { bodies.insert(row.getInt64(1), row.getText(2)); };
                    })
        .isWhole;
}

IOSNotesDb::IOSNotesDb(FileSource &source, const QString &deviceId) : m_source(source), m_deviceId(deviceId)
{
}

bool IOSNotesDb::open(Report &report)
{
    return openDeviceDatabase(m_db, m_source, notesFile, report);
}

bool IOSNotesDb::hasNewerStore() const
{
    return m_source.lists(newerStoreFile);
}

std::optional<qint64> IOSNotesDb::countInNewerStore()
{
    if (!hasNewerStore())
        return 0;
    try {
        Sqlite3DB db;
        openDeviceDatabase(db, m_source, newerStoreFile);
        Sqlite3Cursor row = db.queryThrow(QStringLiteral(
            "select count(*) from ZICCLOUDSYNCINGOBJECT as o inner join Z_PRIMARYKEY as k on o.Z_ENT=k.Z_ENT "
            "where k.Z_NAME='ICNote' and ifnull(o.ZMARKEDFORDELETION,0)=0"));
        return row.moveNext() ? row.getInt64(0) : 0;
    } catch (const Error &error) {
        qWarning("the notes of the newer store are not counted: %s", error.what());
        return std::nullopt;
    }
}

QList<NoteEntry> IOSNotesDb::readAll(Scope scope, Report &report)
{
    const std::optional<qint64> elsewhere = countInNewerStore();
    if (elsewhere != 0)
        report.add({.kind = IssueKind::Refused,
                    .what = elsewhere ? "IDS_ISSUE_NOTES_IN_NEWER_STORE" : "IDS_ISSUE_NEWER_NOTES_UNTOLD",
                    .where = newerStoreFile.display(),
                    .count = elsewhere.value_or(0)});
    if (!open(report)) {
        if (elsewhere != 0)
            return {};
        throw Error(QStringLiteral("Cannot find notes.sqlite."), ErrorKind::NotFound);
    }
    QHash<qint64, QString> bodies;
    const bool hasAllBodies = readBodies(bodies, report);
    qint64 withoutBody = 0;
    QList<NoteEntry> notes;
    readRows(m_db, noteRows, report, [&](const Sqlite3Cursor &row) {
        return [&] {
            const auto body = bodies.constFind(row.getInt64(6));
            // One whose body is damaged has a title yet.
            if (body == bodies.constEnd() && hasAllBodies && scope == Scope::Usual) {
                ++withoutBody;
                return;
            }
            NoteEntry note;
            note.src_id = QString::number(row.getInt64(1));
            note.dev_id = m_deviceId;
            note.create_date = storedDate(row, 2, Epoch::Apple, m_db.name(), report);
            note.modified_date = storedDate(row, 3, Epoch::Apple, m_db.name(), report);
            note.title = row.getText(4);
            note.summary = plainTextOfHtml(row.getText(5));
            note.content = body == bodies.constEnd() ? QString() : *body;
            if (note.summary.isEmpty())
                note.summary = summaryOf(note.content);
            notes.append(std::move(note));
        };
    });
    if (withoutBody > 0)
        report.add({.kind = IssueKind::Hidden, .what = "IDS_ISSUE_NOTES_WITHOUT_BODY", .count = withoutBody});
    return notes;
}

LocalNotesDb::LocalNotesDb(const QString &folder)
    : AbsLocalDb(folder, QStringLiteral("notes.db"), QStringLiteral(":/res/local_notes_db.sql"))
{
}

qint64 LocalNotesDb::count()
{
    Sqlite3Cursor row = m_db.queryThrow(QStringLiteral("select count(*) from notes not indexed"));
    return row.moveNext() ? row.getInt64(0) : 0;
}

QList<NoteEntry> LocalNotesDb::readAll(Report &report)
{
    static const TableRows rows{QStringLiteral("notes"),
                                {QStringLiteral("create_date"), QStringLiteral("modified_date"),
                                 QStringLiteral("title"), QStringLiteral("summary"),
                                 QStringLiteral("content"), QStringLiteral("dev_id"),
                                 QStringLiteral("src_id"), QStringLiteral("hash")}};
    std::vector<std::pair<qint64, NoteEntry>> found;
    readRows(m_db, rows, report, [&](const Sqlite3Cursor &row) {
        return [&, columns = LocalColumns(row)] {
            found.emplace_back(row.getInt64(0), columns.read(row, m_db.name(), report));
        };
    });
    std::sort(found.begin(), found.end(), [](const auto &a, const auto &b) {
        const QDateTime &one = a.second.modified_date;
        const QDateTime &other = b.second.modified_date;
        return one != other ? one > other : a.first > b.first;
    });
    QList<NoteEntry> notes;
    notes.reserve(static_cast<qsizetype>(found.size()));
    for (auto &entry : found)
        notes.append(std::move(entry.second));
    return notes;
}

std::optional<NoteEntry> LocalNotesDb::read(const QString &hash)
{
    Sqlite3Cursor row = m_db.queryThrow(
        Sqlite3Sql(QStringLiteral("select * from notes where hash=? limit 1")).addTextParam(hash));
    if (!row.moveNext())
        return std::nullopt;
    Report untold; // the list of the notes tells it
    return LocalColumns(row).read(row, m_db.name(), untold);
}

QString LocalNotesDb::hashOf(const NoteEntry &note)
{
    QCryptographicHash hash(QCryptographicHash::Md5);
    hash.addData(note.title.toUtf8());
    hash.addData(note.content.toUtf8());
    return QString::fromLatin1(hash.result().toHex());
}

LocalNotesDb::Saved LocalNotesDb::save(const NoteEntry &note)
{
    const QString hash = hashOf(note);
    const auto bound = [&note](const char *statement) {
        Sqlite3Sql sql{QLatin1String(statement)};
        return addDate(addDate(sql, note.create_date), note.modified_date)
            .addTextParam(note.title)
            .addTextParam(note.summary)
            .addTextParam(note.content)
            .addTextParam(note.dev_id)
            .addTextParam(note.src_id);
    };
    qint64 id = 0;
    bool isSame = false;
    bool hasSameDates = true;
    {
        Sqlite3Cursor &there = m_db.cachedThrow(
            bound("select _id,(create_date,modified_date,title,summary,content,dev_id,src_id) "
                  "is (?1,?2,?3,?4,?5,?6,?7),(create_date,modified_date) is (?1,?2) from notes where hash=?8")
                .addTextParam(hash));
        if (there.moveNext()) {
            id = there.getInt64(0);
            isSame = there.getInt(1) != 0;
            hasSameDates = there.getInt(2) != 0;
        }
        there.reset();
    }
    if (id == 0)
        m_db.executeCachedThrow(bound("insert into notes(create_date,modified_date,title,summary,content,"
                                      "dev_id,src_id,hash) values(?,?,?,?,?,?,?,?)")
                                    .addTextParam(hash));
    else if (!isSame)
        m_db.executeCachedThrow(bound("update notes set create_date=?,modified_date=?,title=?,summary=?,"
                                      "content=?,dev_id=?,src_id=? where _id=?")
                                    .addInt64Param(id));
    return {id != 0, !hasSameDates};
}

bool LocalNotesDb::remove(const QString &hash)
{
    m_db.executeCachedThrow(Sqlite3Sql(QStringLiteral("delete from notes where hash=?")).addTextParam(hash));
    return m_db.changes() > 0;
}

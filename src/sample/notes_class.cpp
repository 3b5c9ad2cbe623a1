#include "base/apple_time.h"
#include "sample/core_data.h"
#include "sample/data_classes.h"
#include "sample/table_schema.h"

namespace sample {

namespace {

constexpr Column noteColumns[] = {
    {"Z_PK", "INTEGER PRIMARY KEY"},
    {"Z_ENT", "INTEGER"},
    {"Z_OPT", "INTEGER"},
    {"ZCONTAINSCJK", "INTEGER"},
    {"ZCONTENTTYPE", "INTEGER"},
    {"ZDELETEDFLAG", "INTEGER"},
    {"ZEXTERNALFLAGS", "INTEGER"},
    {"ZEXTERNALSEQUENCENUMBER", "INTEGER", 7},
    {"ZEXTERNALSERVERINTID", "INTEGER"},
    {"ZINTEGERID", "INTEGER"},
    {"ZISBOOKKEEPINGENTRY", "INTEGER"},
    {"ZBODY", "INTEGER"},
    {"ZSTORE", "INTEGER"},
    {"ZCREATIONDATE", "TIMESTAMP"},
    {"ZMODIFICATIONDATE", "TIMESTAMP"},
    {"ZAUTHOR", "VARCHAR"},
    {"ZGUID", "VARCHAR"},
    {"ZSERVERID", "VARCHAR"},
    {"ZSUMMARY", "VARCHAR"},
    {"ZTITLE", "VARCHAR"},
};

constexpr const char *otherTables =
    "CREATE TABLE ZNOTEBODY (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZOWNER INTEGER, "
    "ZCONTENT VARCHAR, "
    "ZEXTERNALCONTENTREF VARCHAR, ZEXTERNALREPRESENTATION BLOB);"
    "CREATE TABLE ZSTORE (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZTYPE INTEGER, ZACCOUNT "
    "INTEGER, "
    "ZEXTERNALIDENTIFIER VARCHAR, ZNAME VARCHAR, ZSYNCANCHOR VARCHAR);"
    "CREATE TABLE ZACCOUNT (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZTYPE INTEGER, "
    "ZACCOUNTIDENTIFIER VARCHAR, ZNAME VARCHAR);"
    "INSERT INTO ZACCOUNT VALUES(1,1,1,0,'local://local/account','LOCAL_NOTES_ACCOUNT');"
    "INSERT INTO ZSTORE VALUES(1,4,1,0,1,'local://local/store','LOCAL_NOTES_STORE',NULL)";

struct Note
{
    const char *title;
    const char *summary; // null: the reader makes one from the content
    QByteArray content;  // HTML; null: a note without a body row
};

std::vector<Note> notes()
{
    return {
        {"Shopping", "Milk, bread", "Shopping<div>Milk</div><div>Bread &amp; butter</div><div><br></div>"},
        {"Entities", "a &lt; b",
         "<div>a &lt; b &amp;&amp; c &gt; d &quot;quoted&quot; caf&eacute; &#x1F600;</div>"},
        {"No summary, 100 characters", nullptr, "<div>" + QByteArray(100, 'x') + "</div>"},
        {"No summary, 101 characters", nullptr, "<div>" + QByteArray(101, 'y') + "</div>"},
        {"Rich", "bold",
         "<b>bold</b> <i>italic</i> <u>under</u><ul><li>one</li><li>two</li></ul>"
         "<a href=\"https://www.example.org/\">link</a>"},
        {"Script", "alert",
         "<div>before<script>alert('no')</script><img src=\"x\" onerror=\"alert(1)\">after</div>"},
        {"日本語のメモ", "概要", "<div>日本語のメモ</div><div>二行目</div>"},
        {"עברית", "", "<div dir=\"rtl\">שלום עולם</div>"},
        {"Twice", "the same", "<div>the same words</div>"},
        {"Twice", "the same", "<div>the same words</div>"},
        {"con", "a name that no file may bear", "<div>con</div>"},
        {"Long", "very", "<div>" + QByteArray("All work and no play. ").repeated(2000) + "</div>"},
        {"", "", "<div></div>"},
        {"Without a body", "lost", QByteArray()},
    };
}

} // namespace

void addNotes(Making &making)
{
    const QString path = making.inScratch("notes.sqlite");
    SqliteFile file(path);
    file.execute(createTable("ZNOTE", noteColumns, making.generation.ios) + otherTables);
    SeededGenerator chance = making.chance.fork("notes");
    qint64 number = 0;
    for (const Note &note : notes()) {
        ++number;
        const qint64 created = appleFromUnix(making.generation.backupDate) - 5000000 + number * 90000;
        const bool body = !note.content.isNull();
        Statement insert(
            file, "insert into ZNOTE(Z_ENT, Z_OPT, ZDELETEDFLAG, ZINTEGERID, ZBODY, ZSTORE, ZCREATIONDATE, "
                  "ZMODIFICATIONDATE, ZAUTHOR, ZGUID, ZTITLE, ZSUMMARY) values(3,1,0,?,?,1,?,?,NULL,?,?,?)");
        insert.run(number, body ? number : 0, static_cast<double>(created) + 0.5,
                   static_cast<double>(created) + 4000.25, Utf8{chance.uuid()}, Utf8{note.title},
                   QString::fromUtf8(note.summary));
        if (body)
            Statement(file, "insert into ZNOTEBODY(Z_PK, Z_ENT, Z_OPT, ZOWNER, ZCONTENT) values(?,5,1,?,?)")
                .run(number, number, Utf8{note.content});
    }
    addCoreDataTables(file,
                      {{1, "Account", 1}, {3, "Note", number}, {4, "Store", 1}, {5, "NoteBody", number}});
    making.summary.counts.notes = static_cast<int>(
        file.integer("select count(*) from ZNOTE, ZNOTEBODY where ZNOTEBODY.Z_PK=ZNOTE.ZBODY"));
    file.close(making.generation.ios >= 9 ? SqliteFile::Journal::Wal : SqliteFile::Journal::Rollback);
    making.container.putFile(making.place("HomeDomain", QStringLiteral("Library/Notes/notes.sqlite")), path);
}

} // namespace sample

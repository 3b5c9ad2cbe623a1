#include "base/apple_time.h"
#include "sample/cast.h"
#include "sample/core_data.h"
#include "sample/data_classes.h"
#include "sample/media_content.h"
#include "sample/plist_value.h"
#include "sample/table_schema.h"

#include <QDateTime>

namespace sample {

namespace {

constexpr Column voicemailColumns[] = {
    {"ROWID", "INTEGER PRIMARY KEY AUTOINCREMENT"},
    {"remote_uid", "INTEGER"},
    {"date", "INTEGER"},
    {"token", "TEXT"},
    {"sender", "TEXT"},
    {"callback_num", "TEXT"},
    {"duration", "INTEGER"},
    {"expiration", "INTEGER"},
    {"trashed_date", "INTEGER"},
    {"flags", "INTEGER"},
    {"receiver", "VARCHAR", 16},
    {"label", "VARCHAR", 16},
};

constexpr Column recordingColumns[] = {
    {"Z_PK", "INTEGER PRIMARY KEY"},
    {"Z_ENT", "INTEGER"},
    {"Z_OPT", "INTEGER"},
    {"ZITUNESPERSISTENTID", "INTEGER"},
    {"ZLABELPRESET", "INTEGER"},
    {"ZPENDINGRESTORE", "INTEGER"},
    {"ZRECORDINGID", "INTEGER", 9},
    {"ZSYNCED", "INTEGER"},
    {"ZDATE", "TIMESTAMP"},
    {"ZDURATION", "FLOAT"},
    {"ZCUSTOMLABEL", "VARCHAR"},
    {"ZPATH", "VARCHAR"},
    {"ZUNIQUEID", "BLOB", 10},
};

constexpr int voicemails = 12;
constexpr int silentVoicemail = 5; // its sound is not in the backup
constexpr int trashedVoicemail = 7;
constexpr int recordings = 12;
constexpr int lostRecording = 4;

QString voicemailSender(int number)
{
    if (number == 3)
        return QString(); // the caller hid the number
    return number % 2 ? strangerPhone(number)
                      : QLatin1String(cast()[static_cast<std::size_t>(number) / 2].phone);
}

void putVoicemailFiles(Making &making, int number)
{
    const QString stem = QStringLiteral("Library/Voicemail/%1").arg(number);
    if (number != silentVoicemail)
        making.container.put(making.place("HomeDomain", stem + QStringLiteral(".amr"), number),
                             amrAudio(number));
    if (making.generation.ios >= 10 && number % 3 == 0)
        making.container.put(making.place("HomeDomain", stem + QStringLiteral(".transcript"), number),
                             binaryPlist(PlistValue::Dictionary{{QStringLiteral("transcriptionString"),
                                                                 QStringLiteral("please call me back")}}));
}

void addVoicemailRows(Making &making, SqliteFile &file)
{
    Statement insert(
        file, "insert into voicemail(remote_uid, date, token, sender, callback_num, duration, expiration, "
              "trashed_date, flags) values(?,?,'Complete',?,?,?,?,?,?)");
    for (int number = 1; number <= voicemails; ++number) {
        const qint64 date = making.generation.backupDate - number * 86400LL;
        const QString sender = voicemailSender(number);
        const qint64 trashed = number == trashedVoicemail ? appleFromUnix(date) + 300 : 0;
        insert.run(number * 10, date, sender, sender, number, date + 30 * 86400LL, trashed, trashed ? 11 : 3);
        putVoicemailFiles(making, number);
    }
}

void addRecordingRows(Making &making, SqliteFile &file)
{
    SeededGenerator chance = making.chance.fork("recordings");
    Statement insert(
        file,
        "insert into ZRECORDING(Z_ENT, Z_OPT, ZLABELPRESET, ZPENDINGRESTORE, ZSYNCED, ZDATE, ZDURATION, "
        "ZCUSTOMLABEL, ZPATH) values(1,1,0,0,1,?,?,?,?)");
    for (int number = 1; number <= recordings; ++number) {
        const qint64 date = making.generation.backupDate - number * 200000LL;
        const QString name =
            QDateTime::fromSecsSinceEpoch(date, Qt::UTC).toString(QStringLiteral("yyyyMMdd HHmmss")) +
            QStringLiteral(".m4a");
        const QString folder = number % 4 == 0 ? QStringLiteral("/private/var/mobile/Elsewhere/")
                                               : QStringLiteral("/var/mobile/Media/Recordings/");
        insert.run(static_cast<double>(appleFromUnix(date)) + 0.375, number * 1.75,
                   QStringLiteral("Recording %1").arg(number), folder + name);
        if (number != lostRecording)
            making.container.put(
                {QStringLiteral("MediaDomain"), QStringLiteral("Media/Recordings/") + name, date},
                mpegAudio(chance));
    }
}

} // namespace

void addVoicemail(Making &making)
{
    const QString path = making.inScratch("voicemail.db");
    SqliteFile file(path);
    file.execute(createTable("voicemail", voicemailColumns, making.generation.ios) +
                 "CREATE TABLE _SqliteDatabaseProperties (key TEXT, value TEXT, UNIQUE(key))");
    if (making.generation.ios >= 16)
        file.execute("CREATE TABLE deleted (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, remote_uid INTEGER);"
                     "CREATE TABLE map (account TEXT, label TEXT)");
    addVoicemailRows(making, file);
    making.summary.counts.voicemails = voicemails;
    file.close(SqliteFile::Journal::Rollback);
    making.container.putFile(making.place("HomeDomain", QStringLiteral("Library/Voicemail/voicemail.db")),
                             path);
}

void addRecordings(Making &making)
{
    const QString path = making.inScratch("Recordings.db");
    SqliteFile file(path);
    file.execute(createTable("ZRECORDING", recordingColumns, making.generation.ios));
    addRecordingRows(making, file);
    addCoreDataTables(file, {{1, "Recording", recordings}});
    making.summary.counts.recordings = recordings;
    file.close(making.generation.ios >= 9 ? SqliteFile::Journal::Wal : SqliteFile::Journal::Rollback);
    making.container.putFile(making.place("MediaDomain", QStringLiteral("Media/Recordings/Recordings.db")),
                             path);
}

} // namespace sample

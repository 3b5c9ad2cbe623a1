#include "personal/media_items.h"

#include "backup/backup_manifest.h"
#include "backup/device_database.h"
#include "base/error.h"
#include "base/report.h"
#include "personal/stored_date.h"
#include "sqlite/read_rows.h"

#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <optional>

namespace {
const SourceFile voicemailFile{QStringLiteral("HomeDomain"),
                               QStringLiteral("Library/Voicemail/voicemail.db")};

/// One of the places where systems have kept their recordings.
struct RecordingsPlace
{
    SourceFile database;
    QString table;
    QString audioFolder; // in the database's domain, where the audio is not found by its name alone
};

const QList<RecordingsPlace> &recordingsPlaces()
{
    static const QString media = QStringLiteral("MediaDomain");
    static const QString shared = QStringLiteral("AppDomainGroup-group.com.apple.VoiceMemos.shared");
    static const QList<RecordingsPlace> places{
        {{media, QStringLiteral("Media/Recordings/Recordings.db")},
         QStringLiteral("ZRECORDING"),
         QStringLiteral("Media/Recordings/")},
        {{media, QStringLiteral("Media/Recordings/CloudRecordings.db")},
         QStringLiteral("ZCLOUDRECORDING"),
         QStringLiteral("Media/Recordings/")},
        {{shared, QStringLiteral("Recordings/CloudRecordings.db")},
         QStringLiteral("ZCLOUDRECORDING"),
         QStringLiteral("Recordings/")},
    };
    return places;
}

FileCatalogue::Index findFile(const BackupManifest &backup, const SourceFile &file)
{
    return backup.catalogue().find(file.domain.toUtf8(), file.relativePath.toUtf8());
}

bool isListed(const BackupManifest &backup, const SourceFile &file)
{
    return findFile(backup, file) != FileCatalogue::none;
}

FileCatalogue::Index audioOf(const BackupManifest &backup, const RecordingsPlace &place,
                             const QString &storedPath)
{
    // The folders of a stored path are those of the device, not of the backup.
    const QString name = storedPath.section(QLatin1Char('/'), -1);
    if (name.isEmpty())
        return FileCatalogue::none;
    const auto &byName = backup.wellKnownGroup(WellKnownGroup::RecordingAudio);
    const FileCatalogue::Index beside = findFile(backup, {place.database.domain, place.audioFolder + name});
    return beside != FileCatalogue::none ? beside : byName.value(name.toUtf8(), FileCatalogue::none);
}

QList<RecordingItem> readPlace(BackupManifest &backup, const RecordingsPlace &place, const Sqlite3DB &db,
                               Report &report)
{
    const TableRows rows{place.table,
                         {QStringLiteral("ZDATE"), QStringLiteral("ZDURATION"), QStringLiteral("ZPATH")}};
    QList<RecordingItem> items;
    readRows(db, rows, report, [&](const Sqlite3Cursor &row) {
        return [&] {
            RecordingItem item;
            item.date = storedDate(row, 1, Epoch::Apple, db.name(), report);
            item.duration = row.getInt(2);
            item.file = audioOf(backup, place, row.getText(3));
            items.append(item);
        };
    });
    return items;
}

// A recording that a newer system has taken over stands in the older database as well.
QString identityOf(const RecordingItem &item)
{
    return QStringLiteral("%1 %2").arg(unixSeconds(item.date)).arg(item.file);
}

/// Adds what is not among the items yet, and counts what is.
void addOnce(QList<RecordingItem> &items, QList<RecordingItem> found, Report &report)
{
    QSet<QString> known;
    for (const RecordingItem &item : std::as_const(items))
        known.insert(identityOf(item));
    for (RecordingItem &item : found) {
        if (known.contains(identityOf(item)))
            report.add({.kind = IssueKind::LeftOut, .what = "IDS_ISSUE_RECORDINGS_IN_BOTH"});
        else
            items.append(std::move(item));
    }
}

/// Tells of items without sound: the catalogue lists none, or its content is missing.
template <typename Items>
void reportMissingSound(const BackupManifest &backup, const Items &items, Report &report)
{
    QList<FileCatalogue::Index> files;
    for (const auto &item : items) {
        if (item.file == FileCatalogue::none)
            report.add({.kind = IssueKind::Absent, .what = "IDS_ISSUE_SOUND_ABSENT"});
        else
            files.append(item.file);
    }
    reportMissingContent(backup, files, report);
}

/// Tells of sounds that are of none of the items.
template <typename Items>
void reportUnlistedSound(const BackupManifest &backup, QList<FileCatalogue::Index> sounds, const Items &items,
                         Report &report)
{
    QSet<FileCatalogue::Index> listed;
    for (const auto &item : items)
        listed.insert(item.file);
    std::sort(sounds.begin(), sounds.end());
    const FileCatalogue &catalogue = backup.catalogue();
    for (const FileCatalogue::Index sound : std::as_const(sounds)) {
        if (listed.contains(sound))
            continue;
        const SourceFile file{QString::fromUtf8(catalogue.domain(sound)),
                              QString::fromUtf8(catalogue.relativePath(sound))};
        report.add(
            {.kind = IssueKind::LeftOut, .what = "IDS_ISSUE_SOUNDS_IN_NO_LIST", .where = file.display()});
    }
}

/// The sounds of all places, without the fragments in folders below them.
QList<FileCatalogue::Index> recordedSounds(const BackupManifest &backup)
{
    const FileCatalogue &catalogue = backup.catalogue();
    QList<FileCatalogue::Index> sounds;
    for (FileCatalogue::Index file = 0; file < catalogue.size(); ++file) {
        const QByteArrayView path = catalogue.relativePath(file);
        if (!path.endsWith(".m4a") || catalogue.isDirectory(file))
            continue;
        const QByteArray folder = path.first(path.lastIndexOf('/') + 1).toByteArray();
        const auto &places = recordingsPlaces();
        const bool isPlace = std::any_of(places.begin(), places.end(), [&](const RecordingsPlace &place) {
            return place.audioFolder.toUtf8() == folder &&
                   place.database.domain.toUtf8() == catalogue.domain(file);
        });
        if (isPlace)
            sounds.append(file);
    }
    return sounds;
}
} // namespace

bool hasVoicemail(const BackupManifest &backup)
{
    return isListed(backup, voicemailFile);
}

QList<VoicemailItem> readVoicemail(BackupManifest &backup, Report &report)
{
    Sqlite3DB db;
    if (!openDeviceDatabase(db, backup, voicemailFile, report))
        throw Error(QStringLiteral("Cannot find voicemail.db."), ErrorKind::NotFound);
    const auto &audio = backup.wellKnownGroup(WellKnownGroup::VoicemailAudio);
    const TableRows rows{QStringLiteral("voicemail"),
                         {QStringLiteral("date"), QStringLiteral("sender"), QStringLiteral("duration")}};
    QList<VoicemailItem> items;
    readRows(db, rows, report, [&](const Sqlite3Cursor &row) {
        return [&] {
            VoicemailItem item;
            item.rowid = row.getInt(0);
            item.date = storedDate(row, 1, Epoch::Unix, db.name(), report);
            item.sender = row.getText(2);
            item.duration = row.getInt(3);
            item.file = audio.value(QByteArray::number(item.rowid), FileCatalogue::none);
            items.append(item);
        };
    });
    reportMissingSound(backup, items, report);
    reportUnlistedSound(backup, audio.values(), items, report);
    return items;
}

bool hasRecordings(const BackupManifest &backup)
{
    const auto &places = recordingsPlaces();
    return std::any_of(places.begin(), places.end(),
                       [&](const RecordingsPlace &place) { return isListed(backup, place.database); });
}

QList<RecordingItem> readRecordings(BackupManifest &backup, Report &report)
{
    QList<RecordingItem> items;
    std::optional<Error> failure;
    int read = 0;
    for (const RecordingsPlace &place : recordingsPlaces()) {
        try {
            Sqlite3DB db;
            if (openDeviceDatabase(db, backup, place.database, report)) {
                addOnce(items, readPlace(backup, place, db, report), report);
                ++read;
            }
        } catch (const Error &error) {
            failure = error;
            report.add("IDS_ISSUE_DATABASE_DAMAGED", error);
        }
    }
    if (read == 0 && failure)
        throw *failure;
    if (read == 0)
        throw Error(QStringLiteral("Cannot find Recordings.db."), ErrorKind::NotFound);
    std::stable_sort(items.begin(), items.end(),
                     [](const RecordingItem &a, const RecordingItem &b) { return a.date > b.date; });
    reportMissingSound(backup, items, report);
    reportUnlistedSound(backup, recordedSounds(backup), items, report);
    return items;
}

qint64 countMedia(BackupManifest &backup, DataClass dataClass, Report &report)
{
    switch (dataClass) {
    case DataClass::Voicemail:
        return hasVoicemail(backup) ? readVoicemail(backup, report).size() : 0;
    case DataClass::Recordings:
        return hasRecordings(backup) ? readRecordings(backup, report).size() : 0;
    case DataClass::Videos:
        return readCameraRoll(backup, CameraRollKind::Video, report).size();
    default:
        return readCameraRoll(backup, CameraRollKind::Photo, report).size();
    }
}

void reportMissingContent(const BackupManifest &backup, const QList<FileCatalogue::Index> &files,
                          Report &report)
{
    const FileCatalogue &catalogue = backup.catalogue();
    for (const FileCatalogue::Index file : files) {
        const QFileInfo stored(backup.filePath(file));
        // What is stored encrypted is padded, and never shorter.
        const std::uint64_t whole = catalogue.sizeBytes(file);
        if (stored.exists() && static_cast<std::uint64_t>(stored.size()) >= whole)
            continue;
        const SourceFile damaged{QString::fromUtf8(catalogue.domain(file)),
                                 QString::fromUtf8(catalogue.relativePath(file))};
        if (stored.exists())
            report.add({.what = "IDS_ISSUE_FILES_CUT_OFF",
                        .where = damaged.display(),
                        .reason = QStringLiteral("%1 of %2 bytes").arg(stored.size()).arg(whole)});
        else
            report.add({.what = "IDS_ISSUE_CONTENT_MISSING", .where = damaged.display()});
    }
}

bool isCameraVideo(QByteArrayView path)
{
    static constexpr QByteArrayView endings[] = {".mov", ".mp4", ".m4v", ".3gp"};
    const QByteArray lower = path.last(std::min<qsizetype>(path.size(), 4)).toByteArray().toLower();
    return std::any_of(std::begin(endings), std::end(endings),
                       [&](QByteArrayView ending) { return lower == ending; });
}

QList<FileCatalogue::Index> readCameraRoll(const BackupManifest &backup, CameraRollKind kind, Report &report)
{
    const QList<FileCatalogue::Index> items = cameraRollItems(backup, kind);
    reportMissingContent(backup, items, report);
    return items;
}

QList<FileCatalogue::Index> cameraRollItems(const BackupManifest &backup, CameraRollKind kind)
{
    const FileCatalogue &catalogue = backup.catalogue();
    QList<FileCatalogue::Index> items;
    for (const FileCatalogue::Index index : backup.wellKnownGroup(WellKnownGroup::CameraRoll))
        if (isCameraVideo(catalogue.relativePath(index)) == (kind == CameraRollKind::Video))
            items.append(index);
    std::sort(items.begin(), items.end(), [&](auto a, auto b) {
        const int compared = catalogue.relativePath(a).compare(catalogue.relativePath(b));
        return compared != 0 ? compared < 0 : a < b;
    });
    return items;
}

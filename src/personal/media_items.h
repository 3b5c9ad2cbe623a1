#pragma once

#include "backup/file_catalogue.h"
#include "personal/data_class.h"

#include <QDateTime>
#include <QList>
#include <QString>

class BackupManifest;
class Report;

/// A message left on the device's voicemail.
struct VoicemailItem
{
    QDateTime date; // UTC
    QString sender;
    int duration = 0; // seconds
    int rowid = 0;
    FileCatalogue::Index file = FileCatalogue::none; // its audio
};

/// A voice recording.
struct RecordingItem
{
    QDateTime date;   // UTC
    int duration = 0; // seconds
    FileCatalogue::Index file = FileCatalogue::none;
};

enum class CameraRollKind { Photo, Video };

/// In the database's order. Sound that is missing, and sound that is in no list, is told in the report. Throws Error("Cannot find voicemail.db.")
/// when the backup has none. All of these need the index of the backup.
QList<VoicemailItem> readVoicemail(BackupManifest &backup, Report &report);
bool hasVoicemail(const BackupManifest &backup);

/// Newest first. Systems have kept them in three places: those of all are listed, each once. A database that
/// cannot be read is told in the report when another has recordings. Throws Error("Cannot find Recordings.db.")
/// when the backup has none of them.
QList<RecordingItem> readRecordings(BackupManifest &backup, Report &report);
bool hasRecordings(const BackupManifest &backup);

/// Number of photos, videos, voicemail or recordings; 0 when the backup lacks the class. Throws Error.
qint64 countMedia(BackupManifest &backup, DataClass dataClass, Report &report);

/// Tells of files that the catalogue lists and whose content is not in the backup's folder, or not all of it.
void reportMissingContent(const BackupManifest &backup, const QList<FileCatalogue::Index> &files, Report &report);

/// True for an item of the camera roll that is a film, told by the ending of its name.
bool isCameraVideo(QByteArrayView path);

/// The pictures or the videos of the camera roll, by path.
QList<FileCatalogue::Index> cameraRollItems(const BackupManifest &backup, CameraRollKind kind);
/// The same, and tells of those whose content is missing, for which it looks at every file.
QList<FileCatalogue::Index> readCameraRoll(const BackupManifest &backup, CameraRollKind kind, Report &report);

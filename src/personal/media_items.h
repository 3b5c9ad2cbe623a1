#pragma once

#include "backup/file_catalogue.h"
#include "personal/data_class.h"

#include <QDateTime>
#include <QList>
#include <QString>

class BackupManifest;

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

/// In the database's order. Throws Error("Cannot find voicemail.db.") when the backup has none. All of these
/// need the index of the backup.
QList<VoicemailItem> readVoicemail(BackupManifest &backup);
bool hasVoicemail(const BackupManifest &backup);

/// Newest first. Newer systems keep them in another database, whose recordings are read where the older has
/// none. Throws Error("Cannot find Recordings.db.") when the backup has neither.
QList<RecordingItem> readRecordings(BackupManifest &backup);
bool hasRecordings(const BackupManifest &backup);

/// Number of photos, videos, voicemail or recordings; 0 when the backup lacks the class. Throws Error.
qint64 countMedia(BackupManifest &backup, DataClass dataClass);

/// True for an item of the camera roll that is a film, told by the ending of its name.
bool isCameraVideo(QByteArrayView path);

/// The pictures or the videos of the camera roll, by path.
QList<FileCatalogue::Index> cameraRollItems(const BackupManifest &backup, CameraRollKind kind);

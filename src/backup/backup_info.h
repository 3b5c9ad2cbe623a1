#pragma once

#include "base/report.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

enum class BackupLayout { Modern, Mbdb };

/// What is known of a backup without opening its files. A missing key is an empty text, an invalid date,
/// false or no bytes.
struct BackupInfo
{
    QString deviceId;
    QString deviceName;
    QDateTime backupDate;
    QString productType;
    QString productVersion;
    QString serialNumber;
    bool encrypted = false;
    QByteArray keybag;
    QByteArray manifestKey;
    QString displayName;
    QString folder; // absolute path
    BackupLayout layout = BackupLayout::Modern;
    /// What of Manifest.plist, Status.plist and Info.plist is damaged: it shows as missing keys.
    Report report;
    bool isManifestDamaged = false; // then nothing tells whether the backup is encrypted
};

/// True when the folder holds Manifest.plist and one of Manifest.mbdb and Manifest.db.
bool isBackupFolder(const QString &folder);
/// True when Manifest.mbdb is absent and Manifest.db is there.
bool isModernLayout(const QString &folder);

/// Reads the descriptive fields of the backup in `folder`. Throws Error when there is no Manifest.plist or it
/// may not be read. One that is no property list gives missing keys, unless the catalogue is encrypted too.
BackupInfo readBackupInfo(const QString &folder);

/// The folders that are searched for backups, in order. They need not exist.
QStringList backupRoots();

/// The backups among the direct sub-folders of each root, in root order, then oldest change first. Those that cannot
/// be read are left out; `report` says why, with their folders as the places.
QList<BackupInfo> listBackups(const QStringList &roots, Report &report);

/// Lower-case hexadecimal MD5 of the folder's absolute path: the same for the same backup.
QString backupUid(const QString &folder);

#pragma once

#include <QString>
#include <QStringList>

// The folders below the application's data folder that keep plain copies of backup files, one for each
// backup, and how they are cleared. What a backup that is open now has made for itself alone is left, in this
// run or another.

/// Where the folder of one backup is or would be.
QString cacheFolderPath(const QString &backupUid);
/// The same, made when missing. Nobody but the owner may look into it.
QString cacheFolderOf(const QString &backupUid);
/// Those that are there.
QStringList cacheFolders();

/// How many bytes clearing would free.
qint64 cacheSize();
qint64 cacheSizeOf(const QString &backupUid);
/// Removes what is kept of all backups, or of one. What cannot be removed stays.
void clearCaches();
void clearCacheOf(const QString &backupUid);

/// True when a run that lives, this one or another, has something there for itself.
bool isCacheInUse(const QString &backupUid);

/// Removes the folder of a backup when it holds nothing.
void leaveCacheFolderOf(const QString &backupUid);

#pragma once

#include <QString>

#include <cstdint>

/// True, too, when the free space of the folder's disk cannot be told.
bool hasRoom(const QString &folder, std::uint64_t bytes);

/// Makes the folder when it is missing. Throws Error when it lies inside the backup, cannot be made, or takes
/// no file.
void requireTarget(const QString &target, const QString &backupFolder);

/// Best effort: not every file system keeps the time of a folder.
void setFolderTime(const QString &folder, std::uint32_t unixSeconds);

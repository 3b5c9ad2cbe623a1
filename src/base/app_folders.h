#pragma once

#include <QDir>

/// The product's fixed identifier: last part of the application data folder's path, and the update check's
/// `pid`.
inline constexpr char productIdentifier[] = "A3F1C9D27B4E8806D5E2B7C4190F6A3D";

/// The user's home folder: where HOME says, else where the system's list of users says. Throws Error when there
/// is none.
QDir homeFolder();

/// "AppData/Roaming" below the home folder if that exists, else "Application Data" below it.
QDir roamingFolder();

/// The application data folder, computed and created on first use and kept for the life of the process.
/// A redirect file in the roaming folder may move its parent elsewhere. It is its owner's alone, with all that
/// an earlier version left open to others in it. Throws Error when there is no home folder.
QDir appDataFolder();

/// Below the application data folder; each sub-folder is one local database. Created when missing.
QDir localDatabasesFolder();

/// True when a local database may be called so: one component of a path that every system takes, and no hidden
/// one.
bool isLocalDatabaseName(const QString &name);

/// Forgets the kept application data folder, so that a test can move the home folder.
void forgetAppDataFolder();

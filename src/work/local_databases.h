#pragma once

#include <QString>

/// True when a folder is one of the local databases: it lies directly in the folder of them, under a name that
/// one may have, is no link, and holds nothing or at least one store.
bool isLocalDatabase(const QString &folder);

/// Takes a local database away: into the desktop's trash where there is one, else for good. False when some
/// of it is still there. Throws Error, and touches nothing, for a folder that is none.
bool removeLocalDatabase(const QString &folder);

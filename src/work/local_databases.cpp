#include "work/local_databases.h"

#include "base/app_folders.h"
#include "base/error.h"
#include "base/file_names.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>
#include <iterator>

namespace {
// Today's stores, what was deleted from them, and those of an older layout.
constexpr const char *storeNames[] = {"messages.db",  "recycle.db",   "contacts.db", "calls.db",   "notes.db",
                                      "calendars.db", "bookmarks.db", "mms.db",      "calendar.db"};

bool holdsAStore(const QDir &folder)
{
    return std::any_of(std::begin(storeNames), std::end(storeNames), [&folder](const char *name) {
        return QFileInfo(folder.filePath(QLatin1String(name))).isFile();
    });
}

/// Makes the folder that the desktop's trash lies in. Qt, where it finds none, puts what is deleted into the
/// current folder.
bool hasTrash()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return QDir().mkpath(folder) && QFileInfo(folder).isWritable();
}
} // namespace

bool isLocalDatabase(const QString &folder)
{
    const QFileInfo info(folder);
    const QString parent = QFileInfo(localDatabasesFolder().path()).canonicalFilePath();
    return isLocalDatabaseName(info.fileName()) && info.isDir() && !info.isSymLink() &&
           QFileInfo(info.path()).canonicalFilePath() == parent &&
           (QDir(folder).isEmpty() || holdsAStore(QDir(folder)));
}

bool removeLocalDatabase(const QString &folder)
{
    if (!isLocalDatabase(folder))
        throw Error(QStringLiteral("can not delete %1. It is no local database.").arg(folder));
    if (!hasTrash() || !QFile::moveToTrash(folder))
        removeFolderTree(folder);
    return !QFileInfo::exists(folder);
}

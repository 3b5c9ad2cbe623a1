#include "backup/leftovers.h"

#include "backup/backup_list.h"
#include "backup/cache_folder.h"
#include "backup/decrypted_catalogue.h"
#include "base/private_folder.h"

#include <QDir>
#include <QFileInfo>

namespace {
/// Nobody would clear what was fetched for a backup that never came to be listed.
void sweepUnlisted(const QStringList &folders)
{
    const std::optional<QList<ListedBackup>> listed = BackupList().backupsIfUsable();
    if (!listed)
        return;
    for (const QString &folder : folders) {
        const QString uid = QFileInfo(folder).fileName();
        const auto isThis = [&uid](const ListedBackup &backup) { return backup.uid == uid; };
        if (std::none_of(listed->begin(), listed->end(), isThis) && !isCacheInUse(uid))
            clearCacheOf(uid);
    }
}
} // namespace

void sweepLeftovers()
{
    PrivateFolder::sweep(QDir::tempPath());
    for (const QString &folder : cacheFolders()) {
        PrivateFolder::sweep(folder);
        DecryptedCatalogue::sweep(folder);
    }
    if (const QStringList folders = cacheFolders(); !folders.isEmpty())
        sweepUnlisted(folders);
}

#include "app/load_backup.h"

#include "base/error.h"
#include "base/texts.h"
#include "views/passcode_dlg.h"
#include "work/message_boxes.h"
#include "work/run_job.h"

OpenBackupPtr describedBackup(const QString &folder)
{
    auto backup = std::make_shared<OpenBackup>(folder);
    backup->manifest().loadInfo();
    backup->manifest().attachCache();
    return backup;
}

std::optional<BackupCounts> loadForUser(const OpenBackupPtr &backup, QWidget *parent)
{
    if (!backup->manifest().isUnlocked()) {
        PasscodeDlg passcode(backup, parent);
        if (passcode.exec() != QDialog::Accepted)
            return std::nullopt;
    }
    auto worker = std::make_unique<LoadBkThread>(backup);
    if (!runJob(textFor("IDS_LOADING_BACKUP"), worker, parent))
        return std::nullopt;
    return worker->counts();
}

std::optional<LoadedBackup> openBackupForUser(const QString &folder, QWidget *parent)
{
    OpenBackupPtr backup;
    try {
        backup = describedBackup(folder);
    } catch (const Error &error) {
        showErrorBox(error.sentence());
        return std::nullopt;
    }
    if (const auto counts = loadForUser(backup, parent))
        return LoadedBackup{backup, *counts};
    backup->manifest().retireCache();
    return std::nullopt;
}

#include "app/load_backup.h"

#include "base/error.h"
#include "base/texts.h"
#include "views/passcode_dlg.h"
#include "work/message_boxes.h"
#include "work/run_job.h"

namespace {
OpenBackupPtr describedBackup(const QString &folder)
{
    try {
        auto backup = std::make_shared<OpenBackup>(folder);
        backup->manifest().loadInfo();
        return backup;
    } catch (const Error &error) {
        showErrorBox(error.sentence());
        return nullptr;
    }
}
} // namespace

std::optional<LoadedBackup> openBackupForUser(const QString &folder, QWidget *parent)
{
    const OpenBackupPtr backup = describedBackup(folder);
    if (!backup)
        return std::nullopt;
    if (backup->info().encrypted) {
        PasscodeDlg passcode(backup, parent);
        if (passcode.exec() != QDialog::Accepted)
            return std::nullopt;
    }
    auto worker = std::make_unique<LoadBkThread>(backup);
    if (!runJob(textFor("IDS_LOADING_BACKUP"), worker, parent))
        return std::nullopt;
    return LoadedBackup{backup, worker->counts()};
}

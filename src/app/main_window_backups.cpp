// What the window does with backups: loading, listing again at the next start, unlisting, and their caches.

#include "app/item_model_bk.h"
#include "app/load_backup.h"
#include "app/main_window.h"
#include "app/my_tree_view.h"
#include "app/view_stack.h"
#include "backup/cache_folder.h"
#include "base/error.h"
#include "base/private_folder.h"
#include "base/texts.h"
#include "work/clear_cache_thread.h"
#include "work/itunes_cache_sms_thread.h"
#include "work/message_boxes.h"
#include "work/run_job.h"

#include <QDir>
#include <QLocale>

namespace {
OpenBackupPtr backupOf(const TreeNode &node)
{
    return static_cast<const BkNode &>(node).backup();
}
} // namespace

// Only what tells one from the other is read now; the rest is loaded when somebody looks at it.
void MainWindow::listLoadedBackups()
{
    for (const ListedBackup &listed : m_list.backups())
        listBackup(listed.path);
}

// One that cannot be read stays on the list, with its cache: its disk may not be plugged in, and a backup that is
// being made just now is whole another day.
BkNode *MainWindow::listBackup(const QString &folder)
{
    try {
        const OpenBackupPtr backup = describedBackup(folder);
        const QHash<QString, qint64> counts = m_list.counts(backupUid(folder));
        return m_model->addBackup(backup, counts.isEmpty() ? std::nullopt : std::optional(countsOfNames(counts)));
    } catch (const Error &error) {
        const bool isThere = QDir(folder).exists();
        return m_model->addMissingBackup(
            folder, textFor(isThere ? "IDS_BACKUP_NOT_READABLE" : "IDS_BACKUP_FOLDER_MISSING"), error.sentence());
    }
}

/// Its disk may have come back.
void MainWindow::lookForMissing(BkNode *missing)
{
    const QString folder = missing->folder();
    m_model->removeNode(missing);
    BkNode *listed = listBackup(folder);
    m_tree->expand(m_model->indexOf(listed));
    m_tree->setCurrentIndex(m_model->indexOf(listed));
}

bool MainWindow::needsLoading(BkNode *node) const
{
    const BkNode *backup = m_model->sourceOf(node).backup;
    return backup && backup != node && !backup->isLoaded();
}

bool MainWindow::isLocked(BkNode *node) const
{
    return needsLoading(node) && !m_model->sourceOf(node).backup->backup()->manifest().isUnlocked();
}

bool MainWindow::loadBackup(const QString &folder)
{
    const QString uid = backupUid(folder);
    if (m_model->backupUids().contains(uid)) {
        showWarningBox(textFor("IDS_BACKUP_ALREADY_LISTED"));
        return false;
    }
    const std::optional<LoadedBackup> loaded = openBackupForUser(folder, this);
    BkNode *missing = m_model->findMissingBackup(folder);
    if (!loaded && !missing)
        clearCacheOf(uid);
    if (!loaded)
        return false;
    if (missing)
        m_model->removeNode(missing);
    BkNode *node = m_model->addBackup(loaded->backup, loaded->counts);
    m_list.addBackup(uid, loaded->backup->info().folder);
    showCounts(node, loaded->counts);
    m_tree->expandAll();
    m_tree->setCurrentIndex(m_model->indexOf(node));
    m_tree->setFocus();
    return true;
}

void MainWindow::showCounts(BkNode *backup, const BackupCounts &counts)
{
    m_model->setLoaded(backup, counts);
    m_list.setCounts(backupUid(backup->backup()->info().folder), countsByName(counts));
}

bool MainWindow::ensureLoaded(BkNode *backup)
{
    if (backup->isLoaded())
        return true;
    const std::optional<BackupCounts> counts = loadForUser(backup->backup(), this);
    if (counts)
        showCounts(backup, *counts);
    return counts.has_value();
}

void MainWindow::loadSelected()
{
    BkNode *node = currentNode();
    if (BkNode *missing = m_model->sourceOf(node).missingBackup)
        return lookForMissing(missing);
    if (m_loadingSelected || !needsLoading(node))
        return;
    m_loadingSelected = true;
    BkNode *backup = m_model->sourceOf(node).backup;
    if (!ensureLoaded(backup))
        m_tree->setCurrentIndex(m_model->indexOf(backup));
    m_loadingSelected = false;
    showCurrent();
}

void MainWindow::miUnmountBackup()
{
    const DataSource source = m_model->sourceOf(currentNode());
    if (source.messageFile) {
        forgetViews(source.messageFile);
        m_model->removeNode(source.messageFile);
        showCurrent();
        return;
    }
    BkNode *node = source.backup ? source.backup : source.missingBackup;
    if (!node)
        return;
    const OpenBackupPtr backup = node->backup(); // null for one that is missing
    const QString uid = backupUid(backup ? backup->info().folder : node->folder());
    forgetViews(node);
    m_model->removeNode(node);
    m_list.removeBackup(uid);
    if (backup)
        backup->manifest().retireCache();
    showCurrent();
    auto worker = std::make_unique<ClearCacheThread>(uid, std::vector<OpenBackupPtr>(), QString());
    removeOpenedFiles(uid);
    if (cacheSizeOf(uid) > 0)
        runJob(textFor("IDS_CLEARING_CACHES"), worker, this);
}

void MainWindow::miCacheMessages()
{
    BkNode *node = m_model->sourceOf(currentNode()).backup;
    if (!node || !ensureLoaded(node))
        return;
    auto worker = std::make_unique<ITunesCacheSMSThread>(node->backup());
    runJob(textFor("IDS_LOADING_BACKUP"), worker, this);
}

bool MainWindow::confirmClearing(const QString &question, qint64 bytes)
{
    return bytes == 0 || askQuestion(question.arg(QLocale().formattedDataSize(bytes)));
}

void MainWindow::miClearCaches()
{
    if (!confirmClearing(textFor("IDS_CONFIRM_CLEAR_CACHES_%1"), cacheSize()))
        return;
    std::vector<OpenBackupPtr> open;
    for (const auto &child : m_model->backupsRoot()->children())
        if (OpenBackupPtr backup = backupOf(*child)) // a message database by itself is none
            open.push_back(std::move(backup));
    auto worker =
        std::make_unique<ClearCacheThread>(QString(), std::move(open), textFor("IDS_CLEAR_CACHES_SUC"));
    runJob(textFor("IDS_CLEARING_CACHES"), worker, this);
}

void MainWindow::miClearCacheOfBackup()
{
    const BkNode *node = m_model->sourceOf(currentNode()).backup;
    if (!node)
        return;
    const QString uid = backupUid(node->backup()->info().folder);
    if (!confirmClearing(textFor("IDS_CONFIRM_CLEAR_CACHE_OF_BACKUP_%1"), cacheSizeOf(uid)))
        return;
    auto worker = std::make_unique<ClearCacheThread>(uid, std::vector<OpenBackupPtr>{node->backup()},
                                                     textFor("IDS_CLEAR_CACHES_SUC"));
    runJob(textFor("IDS_CLEARING_CACHES"), worker, this);
}

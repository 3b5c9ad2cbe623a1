#include "work/load_messages_thread.h"

LoadMessagesThread::LoadMessagesThread(OpenBackupPtr backup) : m_backup(std::move(backup)) {}

QString LoadMessagesThread::work(Progress &progress)
{
    const BackupUse use(*m_backup, progress);
    BackupManifest &manifest = m_backup->manifest();
    if (manifest.wellKnown(WellKnown::MessageDatabase) == FileCatalogue::none)
        return {};
    auto messages = openMessageDb(manifest);
    progress.check();
    messages->loadChats();
    messages->loadMessages(0, progress);
    m_messages = std::move(messages);
    return {};
}

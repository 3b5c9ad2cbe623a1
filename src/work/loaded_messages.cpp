#include "work/loaded_messages.h"

#include "messages/message_source.h"

namespace {
void loadAll(AbsMessageDb &database, Scope scope, Progress &progress)
{
    progress.check();
    database.setScope(scope);
    database.loadChats();
    database.loadMessages(0, progress);
}

LoadedMessagesPtr loadFromBackup(const OpenBackupPtr &backup, Scope scope, Progress &progress)
{
    const BackupUse use(*backup, progress);
    BackupManifest &manifest = backup->manifest();
    if (manifest.wellKnown(WellKnown::MessageDatabase) == FileCatalogue::none)
        return nullptr;
    auto database = openMessageDb(manifest);
    loadAll(*database, scope, progress);
    return std::make_shared<const LoadedMessages>(LoadedMessages{backup, std::move(database)});
}
} // namespace

LoadedMessagesPtr loadMessages(const MessageOrigin &origin, Progress &progress, Scope scope)
{
    if (origin.backup)
        return loadFromBackup(origin.backup, scope, progress);
    if (origin.file.isEmpty() && !hasLocalMessages(origin.localDatabase))
        return nullptr;
    MessageSource source =
        origin.file.isEmpty() ? openLocalMessages(origin.localDatabase) : openMessageFile(origin.file);
    loadAll(*source.database, scope, progress);
    return std::make_shared<const LoadedMessages>(
        LoadedMessages{std::shared_ptr<FileSource>(std::move(source.files)), std::move(source.database)});
}

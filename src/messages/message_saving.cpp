#include "messages/message_saving.h"

#include <QDir>
#include <QFileInfo>

MessageSaving::AsBefore::AsBefore(const QString &folder)
    : m_folder(folder),
      m_folderWasThere(QFile::exists(folder)),
      m_storeWasThere(QFile::exists(LocalMessageStore::pathIn(folder)))
{
}

MessageSaving::AsBefore::~AsBefore()
{
    if (m_dismissed)
        return;
    const QString store = LocalMessageStore::pathIn(m_folder);
    if (!m_storeWasThere && (m_storeIsOurs || QFileInfo(store).size() == 0))
        QFile::remove(store);
    if (!m_folderWasThere)
        QDir().rmdir(m_folder); // stays unless it is empty
}

// Another process may have made the store, and filled it, between the look at the folder and now.
void MessageSaving::AsBefore::lockedStore(Sqlite3DB &store)
{
    m_storeIsOurs = !store.queryThrow(QStringLiteral("select 1 from message limit 1")).moveNext();
}

MessageSaving::MessageSaving(const QString &folder, FileSource *source,
                             const std::vector<MessageRef> &messages, ChangedMessages changed)
    : m_asBefore(folder), m_store(folder)
{
    m_store.open();
    Sqlite3DB &db = m_store.database();
    m_transaction.emplace(db);
    m_asBefore.lockedStore(db);
    m_files.emplace(folder, source);
    m_import.emplace(db, *m_files, messages, MessageImport::Options{changed, source ? source->takenAt() : 0});
}

SavedMessages MessageSaving::finish()
{
    const SavedMessages saved = m_import->finish();
    m_transaction->commit();
    m_files->keep();
    m_asBefore.dismiss();
    return saved;
}

#include "messages/message_source.h"

#include "base/error.h"
#include "messages/ios6_message_db.h"
#include "messages/local_message_store.h"
#include "messages/mac_messaging_db.h"
#include "messages/stored_attachments.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>

namespace {
const QString chatDb = QStringLiteral("chat.db");
const QString deviceFolder = QStringLiteral("var/mobile/Library/SMS");

// A local database that nothing was saved into, or deleted from.
class NoMessages : public AbsMessageDb
{
public:
    int kind() const override { return 6; }
    qint64 countMessages() override { return 0; }
    std::unordered_map<qint64, qint64> countMessagesByChat() override { return {}; }
    void loadChats() override {}
    void loadMessages(qint64, Progress &) override {}
};

// Lets the store take back what a killed process left half done, and bring itself up to date. A store that
// cannot be written, or that another process is writing, may still be readable.
void prepareStore(MessageStoreFile &store)
{
    try {
        store.open();
    } catch (const Error &error) {
        qWarning().noquote() << error.sentence();
    }
}

MessageSource openStore(const QString &folder, MessageStoreFile &&store)
{
    MessageSource opened;
    opened.files = std::make_unique<StoredAttachments>(folder);
    if (!QFileInfo::exists(store.path())) {
        opened.database = std::make_unique<NoMessages>();
        return opened;
    }
    AbsLocalDb::requireContent(store.path());
    prepareStore(store);
    opened.database =
        std::make_unique<IOS6MessageDb>(store.path(), opened.files.get(), ContactNames::AsStored);
    return opened;
}

bool hasColumn(const Sqlite3DB &db, const char *table, const char *column)
{
    return db.tbCols(QLatin1String(table)).contains(QLatin1String(column));
}

bool isFromMac(const Sqlite3DB &db)
{
    return hasColumn(db, "attachment", "filename") &&
           db.queryThrow(QStringLiteral("select 1 from attachment where filename like '~/Library/Messages/%' "
                                        "limit 1"))
               .moveNext();
}

enum class Kind { Store, Mac, Device };

Kind kindOf(const DatabaseFile &file)
{
    Sqlite3DB db;
    db.openForeign(file);
    if (hasColumn(db, "chat", "_last"))
        return Kind::Store;
    return isFromMac(db) ? Kind::Mac : Kind::Device;
}

MessageSource openMac(const QString &folder, const QString &path)
{
    auto files = std::make_unique<MacMessageFiles>(folder, QDir::homePath());
    const DatabaseFile copy(files->copyOf(path), path);
    auto database = std::make_unique<MacMessagingDb>(copy, *files);
    useCountries(*database);
    return {std::move(files), std::move(database)};
}
} // namespace

bool hasLocalMessages(const QString &folder)
{
    return QFileInfo(LocalMessageStore::pathIn(folder)).isFile();
}

MessageSource openLocalMessages(const QString &folder)
{
    return openStore(folder, LocalMessageStore(folder));
}

qint64 countLocalMessages(const QString &folder, Report &report)
{
    if (!hasLocalMessages(folder))
        return 0;
    const MessageSource messages = openLocalMessages(folder);
    const qint64 count = messages.database->countMessages();
    report.merge(messages.database->report());
    return count;
}

MessageSource openRecycledMessages(const QString &folder)
{
    return openStore(folder, MessageRecycleDb(folder));
}

bool isMessageFile(const QString &path)
{
    const QFileInfo info(path);
    return info.isFile() || (info.isDir() && QFileInfo(QDir(path).filePath(chatDb)).isFile());
}

MessageSource openMessageFile(const QString &path)
{
    const QString file = QFileInfo(path).isDir() ? QDir(path).filePath(chatDb) : path;
    const QString folder = QFileInfo(file).absolutePath();
    if (!QFileInfo(file).isFile())
        throw Error(QStringLiteral("can not open %1. There is no such file.").arg(file));
    if (QFileInfo(file).fileName() == chatDb)
        return openMac(folder, file);
    auto files = std::make_unique<LooseDatabaseSource>(folder, deviceFolder);
    const DatabaseFile copy(files->copyOf(file), file);
    std::unique_ptr<AbsMessageDb> database;
    switch (kindOf(copy)) {
    case Kind::Store:
        database = std::make_unique<IOS6MessageDb>(copy, files.get(), ContactNames::AsStored);
        return {std::move(files), std::move(database)};
    case Kind::Mac:
        return openMac(folder, file);
    case Kind::Device:
        break;
    }
    database = openMessageDbFile(copy, files.get());
    return {std::move(files), std::move(database)};
}

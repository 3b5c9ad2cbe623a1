#include "sample/data_classes.h"
#include "base/error.h"
#include "sample/message_content.h"
#include "sample/old_message_content.h"

namespace sample {

namespace {

constexpr int messagesInWal = 12;

AttachmentSink sinkOf(Making &making)
{
    return [&making](const AttachmentFile &file) {
        const FilePlace place{file.domain, file.relativePath, file.modified};
        making.container.put(place, file.content);
    };
}

FilePlace databasePlace(const Making &making)
{
    FilePlace place = making.place("HomeDomain", QStringLiteral("Library/SMS/sms.db"));
    place.sizeDifference = -8192; // the catalogue's size is older than the file
    return place;
}

void addOldMessages(Making &making)
{
    if (making.options.walCompanion)
        throw Error(QStringLiteral("Databases of iOS 5 have no write-ahead log."));
    const QString path = making.inScratch("sms.db");
    OldMessageDatabase database(path, making.generation);
    OldMessageContent content(database, making.generation, making.chance.fork("messages"), sinkOf(making));
    content.addShowcase();
    content.addBulk(making.options.messages, making.options.chats);
    making.summary.chats = content.chats();
    making.summary.counts = content.counts();
    database.finish();
    making.container.putFile(databasePlace(making), path);
}

} // namespace

void addMessages(Making &making)
{
    if (making.generation.ios < 6)
        return addOldMessages(making);
    const QString path = making.inScratch("sms.db");
    MessageDatabase database(path, making.generation, making.options.seed);
    MessageContent content(database, making.chance.fork("messages"), sinkOf(making));
    content.addShowcase();
    content.addBulk(making.options.messages, making.options.chats);
    if (making.options.walCompanion) {
        database.beginWal();
        content.addBulk(content.counts().messageRows + messagesInWal, 0);
    }
    making.summary.chats = content.chats();
    making.summary.counts = content.counts();
    database.finish();
    making.container.putFile(databasePlace(making), path);
    if (making.options.walCompanion) {
        making.summary.counts.messagesInWal = messagesInWal;
        making.container.putFile(making.place("HomeDomain", QStringLiteral("Library/SMS/sms.db-wal")),
                                 path + QStringLiteral("-wal"));
    }
}

} // namespace sample

#include "sample/data_classes.h"
#include "sample/message_content.h"

namespace sample {

namespace {

constexpr int messagesInWal = 12;

} // namespace

void addMessages(Making &making)
{
    const QString path = making.inScratch("sms.db");
    MessageDatabase database(path, making.generation, making.options.seed);
    const AttachmentSink sink = [&](const AttachmentFile &file) {
        const FilePlace place{file.domain, file.relativePath, file.modified};
        if (file.stored)
            making.container.put(place, file.content);
        else
            making.container.putRowAlone(place, file.content.size());
    };
    MessageContent content(database, making.chance.fork("messages"), sink);
    content.addShowcase();
    content.addBulk(making.options.messages, making.options.chats);
    if (making.options.walCompanion) {
        database.beginWal();
        content.addBulk(content.counts().messageRows + messagesInWal, 0);
    }
    making.summary.chats = content.chats();
    making.summary.counts = content.counts();
    database.finish();
    FilePlace place = making.place("HomeDomain", QStringLiteral("Library/SMS/sms.db"));
    place.sizeDifference = -8192; // the catalogue's size is older than the file
    making.container.putFile(place, path);
    if (making.options.walCompanion) {
        making.summary.counts.messagesInWal = messagesInWal;
        place = making.place("HomeDomain", QStringLiteral("Library/SMS/sms.db-wal"));
        making.container.putFile(place, path + QStringLiteral("-wal"));
    }
}

} // namespace sample

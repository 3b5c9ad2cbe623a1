#include "sample/data_classes.h"
#include "sample/message_content.h"

namespace sample {

void addMessages(Making &making)
{
    const QString path = making.inScratch("sms.db");
    MessageDatabase database(path, making.generation, making.options.seed);
    MessageContent content(database, making.chance.fork("messages"));
    content.addShowcase();
    content.addBulk(making.options.messages, making.options.chats);
    making.summary.chats = content.chats();
    making.summary.counts = content.counts();
    database.finish();
    FilePlace place = making.place("HomeDomain", QStringLiteral("Library/SMS/sms.db"));
    place.sizeDifference = -8192; // the catalogue's size is older than the file
    making.container.putFile(place, path);
}

} // namespace sample

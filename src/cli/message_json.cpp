#include "cli/message_json.h"

#include "base/apple_time.h"
#include "cli/json_writer.h"
#include "export/message_text.h"
#include "messages/attachment_content.h"

namespace {
void appleInstant(JsonWriter &json, const char *name, int appleSeconds)
{
    json.key(name);
    json.instant(appleSeconds == 0 ? std::nullopt : std::optional(unixFromApple(appleSeconds)));
}

void textOrNull(JsonWriter &json, const char *name, const QString &value)
{
    json.key(name);
    if (value.isEmpty())
        json.null();
    else
        json.text(value);
}

void writeHandles(JsonWriter &json, const _MsgChat &chat)
{
    json.key("handles");
    json.beginArray();
    for (const _MsgHandle *handle : chat.handles) {
        json.beginObject();
        json.field("rowid", handle->rowid);
        json.field("id", handle->id);
        json.field("country", handle->country);
        json.field("service", handle->service);
        textOrNull(json, "name", handle->_ct_name);
        json.endObject();
    }
    json.endArray();
}

void writeAttachments(JsonWriter &json, const _MsgMessage &message, const FileSource &source)
{
    json.key("attachments");
    json.beginArray();
    for (const _MsgAttachment *attachment : message.attachments) {
        json.beginObject();
        json.field("rowid", attachment->rowid);
        json.field("guid", attachment->guid);
        json.field("filename", attachment->filename);
        json.field("transfer_name", attachment->transfer_name);
        json.field("mime_type", attachment->mime_type);
        json.field("total_bytes", attachment->total_bytes);
        json.key("present");
        json.boolean(hasContent(*attachment, &source));
        json.endObject();
    }
    json.endArray();
}
} // namespace

void appendChatLine(QByteArray &to, const _MsgChat &chat, qint64 messageCount)
{
    JsonWriter json(to);
    json.beginObject();
    json.field("rowid", chat.rowid);
    json.field("guid", chat.guid);
    json.field("chat_identifier", chat.chat_identifier);
    json.field("name", chatName(chat, Addresses::With));
    json.field("display_name", chat.display_name);
    json.field("service_name", chat.service_name);
    json.field("style", chat.style);
    appleInstant(json, "last", chat._last);
    writeHandles(json, chat);
    json.field("message_count", messageCount);
    json.endObject();
    to.append('\n');
}

void appendMessageLine(QByteArray &to, const MessageRef &ref, const FileSource &source)
{
    const _MsgMessage &message = *ref.message;
    JsonWriter json(to);
    json.beginObject();
    json.field("rowid", message.rowid);
    json.field("guid", message.guid);
    json.key("chat");
    if (ref.chat)
        json.number(ref.chat->rowid);
    else
        json.null();
    json.field("chat_name", ref.chat ? chatName(*ref.chat, Addresses::With) : QString());
    json.field("title", conversationTitle(ref));
    textOrNull(json, "sender", message.handle != nullptr ? message.handle->id : QString());
    json.field("text", message.item_type == 0 ? message.text : systemText(message));
    json.field("subject", message.subject);
    json.field("service", message.service);
    json.field("is_from_me", message.is_from_me);
    appleInstant(json, "date", message.date);
    appleInstant(json, "date_read", message.date_read);
    appleInstant(json, "date_delivered", message.date_delivered);
    json.field("item_type", message.item_type);
    writeAttachments(json, message, source);
    json.endObject();
    to.append('\n');
}

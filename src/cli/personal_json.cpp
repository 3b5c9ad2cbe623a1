#include "cli/personal_json.h"

#include "cli/json_writer.h"

namespace {
void instant(JsonWriter &json, const char *name, const QDateTime &date)
{
    json.key(name);
    json.instant(date.isValid() ? std::optional(date.toSecsSinceEpoch()) : std::nullopt);
}

void bytes(JsonWriter &json, const char *name, const QByteArray &value)
{
    json.field(name, QString::fromLatin1(value.toBase64()));
}

void contactRow(JsonWriter &json, ContactDataKind kind, const ContactDataRow &row)
{
    json.beginObject();
    json.field("kind", static_cast<int>(kind));
    for (int column = 1; column <= 14; ++column)
        if (!row.data(column).isEmpty())
            json.field(qPrintable(QStringLiteral("data%1").arg(column)), row.data(column));
    if (!row.data15.isEmpty())
        bytes(json, "data15", row.data15);
    json.endObject();
}

void bookmarkNode(JsonWriter &json, const BookmarkNode &node)
{
    json.beginObject();
    json.field("id", node.id);
    json.field("type", node.type);
    json.field("title", node.title);
    json.field("url", node.url);
    json.field("order_index", node.order_index);
    json.field("src_id", node.src_id);
    json.key("children");
    json.beginArray();
    for (const auto &child : node.children)
        bookmarkNode(json, *child);
    json.endArray();
    json.endObject();
}
} // namespace

void appendContactLine(QByteArray &to, const ContactRecord &contact, RecordIdentity identity)
{
    const auto names = contact.rows.value(ContactDataKind::Name);
    JsonWriter json(to);
    json.beginObject();
    if (identity == RecordIdentity::OfLocalDatabase)
        json.field("_id", contact.id);
    json.field("src_id", contact.src_id);
    json.field("display_name", names.isEmpty() ? QString() : names.first().data(1));
    json.key("rows");
    json.beginArray();
    for (auto kind = contact.rows.constBegin(); kind != contact.rows.constEnd(); ++kind)
        for (const ContactDataRow &row : kind.value())
            contactRow(json, kind.key(), row);
    json.endArray();
    json.endObject();
    to.append('\n');
}

void appendCallLine(QByteArray &to, const CallEntry &call, RecordIdentity identity)
{
    JsonWriter json(to);
    json.beginObject();
    if (identity == RecordIdentity::OfLocalDatabase)
        json.field("_id", call.id);
    json.field("address", call.address);
    instant(json, "date", call.date);
    json.field("duration", call.duration);
    json.field("type", call.type);
    json.field("name", call.name);
    json.field("country_code", call.country_code);
    json.field("network_code", call.network_code);
    json.field("read", call.read);
    json.field("assisted", call.assisted);
    bytes(json, "face_time_data", call.face_time_data);
    json.field("originalAddress", call.originalAddress);
    json.field("answered", call.answered);
    json.field("call_type", call.call_type);
    json.field("availability", call.availability);
    json.field("device_id", call.device_id);
    json.field("cn", call.cn);
    json.field("unique_id", call.unique_id);
    json.field("person", call.person);
    json.endObject();
    to.append('\n');
}

void appendNoteLine(QByteArray &to, const NoteEntry &note, RecordIdentity identity)
{
    JsonWriter json(to);
    json.beginObject();
    if (identity == RecordIdentity::OfLocalDatabase)
        json.field("hash", note.hash);
    instant(json, "create_date", note.create_date);
    instant(json, "modified_date", note.modified_date);
    json.field("title", note.title);
    json.field("summary", note.summary);
    json.field("content", note.content);
    json.field("dev_id", note.dev_id);
    json.field("src_id", note.src_id);
    json.endObject();
    to.append('\n');
}

void appendEventLine(QByteArray &to, const CalendarEvent &event)
{
    JsonWriter json(to);
    json.beginObject();
    json.field("id", event.id);
    json.field("calendar", event.calendar);
    json.field("tz", event.tz);
    instant(json, "start_date", event.start_date);
    instant(json, "end_date", event.end_date);
    json.field("summary", event.summary);
    json.field("description", event.description);
    json.field("url", event.url);
    json.field("rrule", event.rrule);
    json.field("all_day", event.all_day);
    json.field("src_id", event.src_id);
    json.key("reminders");
    json.beginArray();
    for (const CalendarReminder &reminder : event.reminders) {
        json.beginObject();
        json.field("minutes", reminder.minutes);
        json.field("method", reminder.method);
        json.field("src_id", reminder.src_id);
        json.endObject();
    }
    json.endArray();
    json.endObject();
    to.append('\n');
}

void appendBookmarkLine(QByteArray &to, const BookmarkNode &node)
{
    JsonWriter json(to);
    bookmarkNode(json, node);
    to.append('\n');
}

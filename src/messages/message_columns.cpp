#include "messages/message_columns.h"

// Reading and writing share these lists: `columns` is what resolves them in the one direction or the other.
namespace {
template <typename Columns>
Columns describeChat(Columns columns)
{
    using Chat = _MsgChat;
    columns.bigNumbers({{"rowid", &Chat::rowid}});
    columns.requiredTexts({{"guid", &Chat::guid}});
    columns.texts({{"chat_identifier", &Chat::chat_identifier},
                   {"room_name", &Chat::room_name},
                   {"display_name", &Chat::display_name},
                   {"group_id", &Chat::group_id}});
    columns.repeatedTexts({{"account_id", &Chat::account_id},
                           {"service_name", &Chat::service_name},
                           {"account_login", &Chat::account_login},
                           {"last_addressed_handle", &Chat::last_addressed_handle}});
    columns.bytes({{"properties", &Chat::properties}});
    columns.numbers({{"style", &Chat::style}, {"state", &Chat::state}, {"is_archived", &Chat::is_archived}});
    columns.dates({{"_last", &Chat::_last}}, DateUnit::Seconds);
    return columns;
}

template <typename Columns>
Columns describeHandle(Columns columns)
{
    using Handle = _MsgHandle;
    columns.bigNumbers({{"rowid", &Handle::rowid}});
    columns.requiredTexts({{"id", &Handle::id}, {"service", &Handle::service}});
    columns.texts({{"uncanonicalized_id", &Handle::uncanonicalized_id}, {"_ct_name", &Handle::_ct_name}});
    columns.repeatedTexts({{"country", &Handle::country}});
    columns.bytes({{"_photo", &Handle::_photo}});
    return columns;
}

template <typename Columns>
Columns describeMessage(Columns columns, DateUnit unit)
{
    using Message = _MsgMessage;
    columns.bigNumbers({{"rowid", &Message::rowid}, {"handle_id", &Message::handle_id}});
    columns.requiredTexts({{"guid", &Message::guid}});
    columns.texts({{"text", &Message::text}});
    columns.repeatedTexts({{"service_center", &Message::service_center},
                           {"subject", &Message::subject},
                           {"country", &Message::country},
                           {"service", &Message::service},
                           {"account", &Message::account},
                           {"account_guid", &Message::account_guid},
                           {"cache_roomnames", &Message::cache_roomnames},
                           {"group_title", &Message::group_title}});
    columns.bytes({{"attributedBody", &Message::attributedBody}});
    columns.dates({{"date", &Message::date},
                   {"date_read", &Message::date_read},
                   {"date_delivered", &Message::date_delivered}},
                  unit);
    columns.dates({{"date_played", &Message::date_played}}, DateUnit::AsStored);
    columns.numbers({{"replace", &Message::replace},
                     {"version", &Message::version},
                     {"type", &Message::type},
                     {"error", &Message::error},
                     {"is_delivered", &Message::is_delivered},
                     {"is_finished", &Message::is_finished},
                     {"is_emote", &Message::is_emote},
                     {"is_from_me", &Message::is_from_me},
                     {"is_empty", &Message::is_empty},
                     {"is_delayed", &Message::is_delayed},
                     {"is_auto_reply", &Message::is_auto_reply},
                     {"is_prepared", &Message::is_prepared},
                     {"is_read", &Message::is_read},
                     {"is_system_message", &Message::is_system_message},
                     {"is_sent", &Message::is_sent},
                     {"has_dd_results", &Message::has_dd_results},
                     {"is_service_message", &Message::is_service_message},
                     {"is_forward", &Message::is_forward},
                     {"was_downgraded", &Message::was_downgraded},
                     {"is_archive", &Message::is_archive},
                     {"cache_has_attachments", &Message::cache_has_attachments},
                     {"was_data_detected", &Message::was_data_detected},
                     {"was_deduplicated", &Message::was_deduplicated},
                     {"is_audio_message", &Message::is_audio_message},
                     {"is_played", &Message::is_played},
                     {"item_type", &Message::item_type},
                     {"other_handle", &Message::other_handle_id},
                     {"group_action_type", &Message::group_action_type},
                     {"share_status", &Message::share_status},
                     {"share_direction", &Message::share_direction},
                     {"is_expirable", &Message::is_expirable},
                     {"expire_state", &Message::expire_state},
                     {"message_action_type", &Message::message_action_type}});
    return columns;
}

template <typename Columns>
Columns describeAttachment(Columns columns)
{
    using Attachment = _MsgAttachment;
    columns.bigNumbers({{"attachment_id", &Attachment::rowid}, {"total_bytes", &Attachment::total_bytes}});
    columns.requiredTexts({{"guid", &Attachment::guid}});
    columns.texts({{"filename", &Attachment::filename}, {"transfer_name", &Attachment::transfer_name}});
    columns.repeatedTexts({{"uti", &Attachment::uti}, {"mime_type", &Attachment::mime_type}});
    columns.bytes({{"user_info", &Attachment::user_info}});
    columns.dates({{"created_date", &Attachment::created_date}, {"start_date", &Attachment::start_date}},
                  DateUnit::Seconds);
    columns.numbers(
        {{"transfer_state", &Attachment::transfer_state}, {"is_outgoing", &Attachment::is_outgoing}});
    return columns;
}
} // namespace

RecordColumns<_MsgChat> chatColumns(const Sqlite3Cursor &cursor)
{
    return describeChat(RecordColumns<_MsgChat>(cursor));
}

RecordColumns<_MsgHandle> handleColumns(const Sqlite3Cursor &cursor)
{
    return describeHandle(RecordColumns<_MsgHandle>(cursor));
}

RecordColumns<_MsgMessage> messageColumns(const Sqlite3Cursor &cursor, DateUnit unit)
{
    return describeMessage(RecordColumns<_MsgMessage>(cursor), unit);
}

RecordColumns<_MsgAttachment> attachmentColumns(const Sqlite3Cursor &cursor)
{
    return describeAttachment(RecordColumns<_MsgAttachment>(cursor));
}

RecordInsert<_MsgChat> chatInsert(Sqlite3DB &db)
{
    return describeChat(RecordInsert<_MsgChat>(db, "chat"));
}

RecordInsert<_MsgHandle> handleInsert(Sqlite3DB &db)
{
    return describeHandle(RecordInsert<_MsgHandle>(db, "handle"));
}

RecordInsert<_MsgMessage> messageInsert(Sqlite3DB &db, DateUnit unit)
{
    return describeMessage(RecordInsert<_MsgMessage>(db, "message"), unit);
}

RecordInsert<_MsgAttachment> attachmentInsert(Sqlite3DB &db)
{
    return describeAttachment(RecordInsert<_MsgAttachment>(db, "attachment"));
}

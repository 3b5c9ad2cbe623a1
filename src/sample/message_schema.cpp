#include "sample/message_schema.h"

namespace sample {

namespace {

constexpr const char *flag = "INTEGER DEFAULT 0";

constexpr Column message[] = {
    {"ROWID", "INTEGER PRIMARY KEY AUTOINCREMENT"},
    {"guid", "TEXT UNIQUE NOT NULL"},
    {"text", "TEXT"},
    {"replace", flag},
    {"service_center", "TEXT"},
    {"handle_id", flag},
    {"subject", "TEXT"},
    {"country", "TEXT"},
    {"attributedBody", "BLOB"},
    {"version", flag},
    {"type", flag},
    {"service", "TEXT"},
    {"account", "TEXT"},
    {"account_guid", "TEXT"},
    {"error", flag},
    {"date", "INTEGER"},
    {"date_read", "INTEGER"},
    {"date_delivered", "INTEGER"},
    {"is_delivered", flag},
    {"is_finished", flag},
    {"is_emote", flag},
    {"is_from_me", flag},
    {"is_empty", flag},
    {"is_delayed", flag},
    {"is_auto_reply", flag},
    {"is_prepared", flag},
    {"is_read", flag},
    {"is_system_message", flag},
    {"is_sent", flag},
    {"has_dd_results", flag},
    {"is_service_message", flag},
    {"is_forward", flag},
    {"was_downgraded", flag},
    {"is_archive", flag},
    {"cache_has_attachments", flag},
    {"cache_roomnames", "TEXT"},
    {"was_data_detected", flag},
    {"was_deduplicated", flag},
    {"is_audio_message", flag, 9},
    {"is_played", flag, 9},
    {"date_played", "INTEGER", 9},
    {"item_type", flag, 9},
    {"other_handle", "INTEGER DEFAULT -1", 9},
    {"group_title", "TEXT", 9},
    {"group_action_type", flag, 9},
    {"share_status", "INTEGER", 9},
    {"share_direction", "INTEGER", 9},
    {"is_expirable", flag, 9},
    {"expire_state", flag, 9},
    {"message_action_type", flag, 9},
    {"message_source", flag, 9},
    {"associated_message_guid", "STRING DEFAULT NULL", 10},
    {"balloon_bundle_id", "STRING DEFAULT NULL", 10},
    {"payload_data", "BLOB", 10},
    {"associated_message_type", flag, 10},
    {"expressive_send_style_id", "STRING DEFAULT NULL", 10},
    {"associated_message_range_location", flag, 10},
    {"associated_message_range_length", flag, 10},
    {"time_expressive_send_played", "INTEGER DEFAULT 0", 10},
    {"message_summary_info", "BLOB", 10},
    {"ck_sync_state", flag, 11},
    {"ck_record_id", "TEXT DEFAULT NULL", 11},
    {"ck_record_change_tag", "TEXT DEFAULT NULL", 11},
    {"destination_caller_id", "TEXT DEFAULT NULL", 11},
    {"sr_ck_sync_state", flag, 12},
    {"sr_ck_record_id", "TEXT DEFAULT NULL", 12},
    {"sr_ck_record_change_tag", "TEXT DEFAULT NULL", 12},
    {"is_corrupt", flag, 12},
    {"reply_to_guid", "TEXT DEFAULT NULL", 14},
    {"sort_id", flag, 14},
    {"is_spam", flag, 14},
    {"has_unseen_mention", flag, 14},
    {"thread_originator_guid", "TEXT DEFAULT NULL", 14},
    {"thread_originator_part", "TEXT DEFAULT NULL", 14},
    {"syndication_ranges", "TEXT DEFAULT NULL", 15},
    {"was_delivered_quietly", flag, 15},
    {"did_notify_recipient", flag, 15},
    {"synced_syndication_ranges", "TEXT DEFAULT NULL", 15},
    {"date_retracted", flag, 16},
    {"date_edited", flag, 16},
    {"was_detonated", flag, 16},
    {"part_count", "INTEGER", 16},
    {"is_stewie", flag, 16},
    {"is_kt_verified", flag, 16},
    {"is_sos", flag, 16},
    {"is_critical", flag, 16},
    {"bia_reference_id", "TEXT DEFAULT NULL", 17},
    {"fallback_hash", "TEXT DEFAULT NULL", 17},
};

constexpr Column chat[] = {
    {"ROWID", "INTEGER PRIMARY KEY AUTOINCREMENT"},
    {"guid", "TEXT UNIQUE NOT NULL"},
    {"style", "INTEGER"},
    {"state", "INTEGER"},
    {"account_id", "TEXT"},
    {"properties", "BLOB"},
    {"chat_identifier", "TEXT"},
    {"service_name", "TEXT"},
    {"room_name", "TEXT"},
    {"account_login", "TEXT"},
    {"is_archived", flag},
    {"last_addressed_handle", "TEXT"},
    {"display_name", "TEXT", 7},
    {"group_id", "TEXT", 9},
    {"is_filtered", flag, 9},
    {"successful_query", "INTEGER DEFAULT 1", 9},
    {"engram_id", "TEXT", 11},
    {"server_change_token", "TEXT", 11},
    {"ck_sync_state", flag, 11},
    {"last_read_message_timestamp", flag, 11},
    {"ck_record_system_property_blob", "BLOB", 11, 11},
    {"original_group_id", "TEXT DEFAULT NULL", 11},
    {"sr_server_change_token", "TEXT", 12},
    {"sr_ck_sync_state", flag, 12},
    {"cloudkit_record_id", "TEXT DEFAULT NULL", 12},
    {"sr_cloudkit_record_id", "TEXT DEFAULT NULL", 12},
    {"last_addressed_sim_id", "TEXT DEFAULT NULL", 12},
    {"is_blackholed", flag, 14},
    {"syndication_date", flag, 15},
    {"syndication_type", flag, 15},
    {"is_recovered", flag, 16},
};

constexpr Column attachment[] = {
    {"ROWID", "INTEGER PRIMARY KEY AUTOINCREMENT"},
    {"guid", "TEXT UNIQUE NOT NULL"},
    {"created_date", flag},
    {"start_date", flag},
    {"filename", "TEXT"},
    {"uti", "TEXT"},
    {"mime_type", "TEXT"},
    {"transfer_state", flag},
    {"is_outgoing", flag},
    {"user_info", "BLOB", 7},
    {"transfer_name", "TEXT", 7},
    {"total_bytes", flag, 7},
    {"is_sticker", flag, 10},
    {"sticker_user_info", "BLOB", 10},
    {"attribution_info", "BLOB", 10},
    {"hide_attachment", flag, 10},
    {"ck_sync_state", flag, 11},
    {"ck_server_change_token_blob", "BLOB DEFAULT NULL", 11},
    {"ck_record_id", "TEXT DEFAULT NULL", 11},
    {"original_guid", "TEXT", 11},
    {"sr_ck_sync_state", flag, 12},
    {"sr_ck_server_change_token_blob", "BLOB DEFAULT NULL", 12},
    {"sr_ck_record_id", "TEXT DEFAULT NULL", 12},
    {"is_commsafety_sensitive", flag, 15},
};

constexpr Column handle[] = {
    {"ROWID", "INTEGER PRIMARY KEY AUTOINCREMENT UNIQUE"},
    {"id", "TEXT NOT NULL"},
    {"country", "TEXT"},
    {"service", "TEXT NOT NULL"},
    {"uncanonicalized_id", "TEXT"},
    {"person_centric_id", "TEXT DEFAULT NULL", 12},
};

constexpr Column chatMessageJoin[] = {
    {"chat_id", "INTEGER REFERENCES chat (ROWID) ON DELETE CASCADE"},
    {"message_id", "INTEGER REFERENCES message (ROWID) ON DELETE CASCADE"},
    {"message_date", flag, 11},
};

constexpr const char *joinTables =
    "CREATE TABLE _SqliteDatabaseProperties (key TEXT, value TEXT, UNIQUE(key));\n"
    "CREATE TABLE chat_handle_join (chat_id INTEGER REFERENCES chat (ROWID) ON DELETE CASCADE, "
    "handle_id INTEGER REFERENCES handle (ROWID) ON DELETE CASCADE, UNIQUE(chat_id, handle_id));\n"
    "CREATE TABLE message_attachment_join (message_id INTEGER REFERENCES message (ROWID) ON DELETE CASCADE, "
    "attachment_id INTEGER REFERENCES attachment (ROWID) ON DELETE CASCADE, UNIQUE(message_id, "
    "attachment_id));\n";

constexpr const char *deletedTables =
    "CREATE TABLE deleted_messages (ROWID INTEGER PRIMARY KEY AUTOINCREMENT UNIQUE, guid TEXT NOT NULL);\n";

constexpr const char *syncDeletedTables =
    "CREATE TABLE sync_deleted_messages (ROWID INTEGER PRIMARY KEY AUTOINCREMENT UNIQUE, guid TEXT NOT NULL, "
    "recordID TEXT);\n"
    "CREATE TABLE sync_deleted_chats (ROWID INTEGER PRIMARY KEY AUTOINCREMENT UNIQUE, guid TEXT NOT NULL, "
    "recordID TEXT, timestamp INTEGER);\n"
    "CREATE TABLE sync_deleted_attachments (ROWID INTEGER PRIMARY KEY AUTOINCREMENT UNIQUE, guid TEXT NOT "
    "NULL, "
    "recordID TEXT);\n";

constexpr const char *recoverableTables =
    "CREATE TABLE chat_recoverable_message_join (chat_id INTEGER REFERENCES chat (ROWID) ON DELETE CASCADE, "
    "message_id INTEGER REFERENCES message (ROWID) ON DELETE CASCADE, delete_date INTEGER, "
    "ck_sync_state INTEGER DEFAULT 0, PRIMARY KEY (chat_id, message_id));\n"
    "CREATE TABLE recoverable_message_part (chat_id INTEGER REFERENCES chat (ROWID) ON DELETE CASCADE, "
    "message_id INTEGER REFERENCES message (ROWID) ON DELETE CASCADE, part_index INTEGER, delete_date "
    "INTEGER, "
    "part_text BLOB NOT NULL, ck_sync_state INTEGER DEFAULT 0, PRIMARY KEY (chat_id, message_id, "
    "part_index));\n"
    "CREATE TABLE unsynced_removed_recoverable_messages (ROWID INTEGER PRIMARY KEY AUTOINCREMENT UNIQUE, "
    "chat_guid TEXT NOT NULL, message_guid TEXT NOT NULL, part_index INTEGER);\n";

constexpr const char *triggers =
    "CREATE TRIGGER clean_orphaned_handles2 AFTER DELETE ON message BEGIN "
    "DELETE FROM handle WHERE handle.ROWID = OLD.handle_id "
    "AND (SELECT 1 FROM chat_handle_join WHERE handle_id = OLD.handle_id LIMIT 1) IS NULL "
    "AND (SELECT 1 FROM message WHERE handle_id = OLD.handle_id LIMIT 1) IS NULL; END;\n"
    "CREATE TRIGGER clean_orphaned_handles AFTER DELETE ON chat_handle_join BEGIN "
    "DELETE FROM handle WHERE handle.ROWID = OLD.handle_id "
    "AND (SELECT 1 FROM chat_handle_join WHERE handle_id = OLD.handle_id LIMIT 1) IS NULL "
    "AND (SELECT 1 FROM message WHERE handle_id = OLD.handle_id LIMIT 1) IS NULL; END;\n"
    "CREATE TRIGGER clean_orphaned_messages AFTER DELETE ON chat_message_join BEGIN "
    "DELETE FROM message WHERE message.ROWID = OLD.message_id "
    "AND (SELECT 1 FROM chat_message_join WHERE message_id = OLD.message_id LIMIT 1) IS NULL; END;\n"
    "CREATE TRIGGER clean_orphaned_attachments AFTER DELETE ON message_attachment_join BEGIN "
    "DELETE FROM attachment WHERE attachment.ROWID = OLD.attachment_id "
    "AND (SELECT 1 FROM message_attachment_join WHERE attachment_id = OLD.attachment_id LIMIT 1) IS NULL; "
    "END;\n"
    "CREATE TRIGGER set_message_has_attachments AFTER INSERT ON message_attachment_join BEGIN "
    "UPDATE message SET cache_has_attachments = 1 WHERE message.ROWID = NEW.message_id; END;\n"
    "CREATE TRIGGER clear_message_has_attachments AFTER DELETE ON message_attachment_join BEGIN "
    "UPDATE message SET cache_has_attachments = 0 WHERE message.ROWID = OLD.message_id "
    "AND (SELECT 1 FROM message_attachment_join WHERE message_id = OLD.message_id LIMIT 1) IS NULL; END;\n"
    "CREATE TRIGGER before_delete_on_attachment BEFORE DELETE ON attachment BEGIN "
    "SELECT before_delete_attachment_path(OLD.ROWID, OLD.guid); END;\n"
    "CREATE TRIGGER delete_attachment_files AFTER DELETE ON attachment BEGIN "
    "SELECT delete_attachment_path(OLD.filename); END;\n";

} // namespace

std::span<const Column> messageColumns()
{
    return message;
}

std::span<const Column> chatColumns()
{
    return chat;
}

std::span<const Column> attachmentColumns()
{
    return attachment;
}

std::span<const Column> handleColumns()
{
    return handle;
}

QByteArray messageTables(const Generation &generation)
{
    const int ios = generation.ios;
    QByteArray sql =
        createTable("message", message, ios) + createTable("chat", chat, ios) +
        createTable("attachment", attachment, ios) +
        createTable("handle", handle, ios, "UNIQUE (id, service)") +
        createTable("chat_message_join", chatMessageJoin, ios, "PRIMARY KEY (chat_id, message_id)") +
        joinTables;
    if (ios >= 9)
        sql += deletedTables;
    if (ios >= 11)
        sql += syncDeletedTables;
    if (ios >= 16)
        sql += recoverableTables;
    sql += "INSERT INTO _SqliteDatabaseProperties VALUES('_ClientVersion', '" +
           QByteArray::number(generation.messageClientVersion) + "')";
    return sql;
}

QByteArray messageIndexes(const Generation &generation)
{
    QByteArray sql =
        "CREATE INDEX message_idx_is_read ON message(is_read, is_from_me, is_finished);\n"
        "CREATE INDEX message_idx_failed ON message(is_finished, is_from_me, error);\n"
        "CREATE INDEX message_idx_handle ON message(handle_id, date);\n"
        "CREATE INDEX message_idx_was_downgraded ON message(was_downgraded);\n"
        "CREATE INDEX chat_idx_chat_identifier ON chat(chat_identifier);\n"
        "CREATE INDEX chat_idx_chat_identifier_service_name ON chat(chat_identifier, service_name);\n"
        "CREATE INDEX chat_handle_join_idx_handle_id ON chat_handle_join(handle_id);\n"
        "CREATE INDEX chat_message_join_idx_message_id ON chat_message_join(message_id, chat_id);\n"
        "CREATE INDEX message_attachment_join_idx_attachment_id ON message_attachment_join(attachment_id);\n";
    if (generation.ios >= 11)
        sql += "CREATE INDEX chat_message_join_idx_message_date_id_chat_id ON "
               "chat_message_join(chat_id, message_date, message_id);\n";
    return sql + triggers;
}

} // namespace sample

#include "sample/calendar_schema.h"

#include "sample/table_schema.h"

namespace sample {

namespace {

constexpr Column item[] = {
    {"ROWID", "INTEGER PRIMARY KEY AUTOINCREMENT"},
    {"summary", "TEXT"},
    {"location_id", "INTEGER"},
    {"description", "TEXT"},
    {"start_date", "REAL"},
    {"start_tz", "TEXT"},
    {"end_date", "REAL"},
    {"all_day", "INTEGER"},
    {"calendar_id", "INTEGER"},
    {"orig_item_id", "INTEGER"},
    {"orig_date", "REAL"},
    {"organizer_id", "INTEGER"},
    {"self_attendee_id", "INTEGER"},
    {"status", "INTEGER"},
    {"invitation_status", "INTEGER"},
    {"availability", "INTEGER"},
    {"privacy_level", "INTEGER"},
    {"url", "TEXT"},
    {"last_modified", "REAL"},
    {"sequence_num", "INTEGER"},
    {"birthday_id", "INTEGER"},
    {"modified_properties", "INTEGER"},
    {"external_tracking_status", "INTEGER"},
    {"external_id", "TEXT"},
    {"external_mod_tag", "TEXT"},
    {"unique_identifier", "TEXT"},
    {"external_schedule_id", "TEXT"},
    {"external_rep", "BLOB"},
    {"response_comment", "TEXT"},
    {"hidden", "INTEGER"},
    {"has_recurrences", "INTEGER"},
    {"has_attendees", "INTEGER"},
    {"UUID", "TEXT"},
    {"entity_type", "INTEGER"},
    {"priority", "INTEGER"},
    {"due_date", "REAL"},
    {"due_tz", "TEXT"},
    {"due_all_day", "INTEGER"},
    {"completion_date", "REAL"},
    {"creation_date", "REAL"},
    {"conference", "TEXT", 0, 14},
    {"display_order", "INTEGER"},
    {"created_by_id", "INTEGER"},
    {"modified_by_id", "INTEGER"},
    {"shared_item_created_date", "REAL"},
    {"shared_item_created_tz", "TEXT"},
    {"shared_item_modified_date", "REAL"},
    {"shared_item_modified_tz", "TEXT"},
    {"invitation_changed_properties", "INTEGER"},
    {"default_alarm_removed", "INTEGER"},
    {"phantom_master", "INTEGER"},
    {"participation_status_modified_date", "REAL", 7},
    {"client_location_id", "INTEGER", 9},
    {"end_tz", "TEXT", 9},
    {"last_synced_response_comment", "TEXT", 9},
    {"app_link", "TEXT", 9},
    {"calendar_scale", "TEXT", 9},
    {"travel_time", "REAL", 9},
    {"travel_advisory_behavior", "INTEGER", 9},
    {"start_location_id", "INTEGER", 9},
    {"suggested_event_info_id", "INTEGER", 9},
    {"first_alert_date", "REAL", 9},
    {"conference_url", "TEXT", 15},
    {"conference_url_detected", "TEXT", 15},
    {"recurrence_set", "INTEGER", 15},
    {"flags", "INTEGER", 15},
    {"special_day", "TEXT", 15},
};

constexpr Column calendar[] = {
    {"ROWID", "INTEGER PRIMARY KEY AUTOINCREMENT"},
    {"store_id", "INTEGER"},
    {"title", "TEXT"},
    {"flags", "INTEGER"},
    {"color", "TEXT"},
    {"symbolic_color_name", "TEXT", 7},
    {"color_is_display", "INTEGER"},
    {"type", "TEXT"},
    {"supported_entity_types", "INTEGER"},
    {"external_id", "TEXT"},
    {"external_mod_tag", "TEXT"},
    {"external_id_tag", "TEXT"},
    {"external_rep", "BLOB"},
    {"display_order", "INTEGER"},
    {"UUID", "TEXT"},
    {"shared_owner_name", "TEXT"},
    {"sharing_status", "INTEGER"},
};

constexpr Column alarm[] = {
    {"ROWID", "INTEGER PRIMARY KEY AUTOINCREMENT"},
    {"trigger_date", "REAL"},
    {"trigger_interval", "INTEGER"},
    {"type", "INTEGER"},
    {"owner_id", "INTEGER", 0, 12},
    {"calendaritem_owner_id", "INTEGER", 14},
    {"external_id", "TEXT"},
    {"UUID", "TEXT"},
    {"proximity", "INTEGER"},
    {"disabled", "INTEGER"},
};

constexpr Column location[] = {
    {"ROWID", "INTEGER PRIMARY KEY AUTOINCREMENT"},
    {"title", "TEXT"},
    {"address", "TEXT", 9},
    {"latitude", "DOUBLE"},
    {"longitude", "DOUBLE"},
    {"address_book_id", "TEXT"},
    {"radius", "DOUBLE"},
    {"item_owner_id", "INTEGER"},
    {"alarm_owner_id", "INTEGER"},
};

constexpr const char *otherTables =
    "CREATE TABLE Store (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT, default_alarm_offset INTEGER, "
    "type INTEGER, "
    "constraint_path TEXT, disabled INTEGER, external_id TEXT, persistent_id TEXT, flags INTEGER);\n"
    "CREATE TABLE Recurrence (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, frequency INTEGER, interval INTEGER, "
    "week_start INTEGER, count INTEGER, cached_end_date REAL, cached_end_date_tz TEXT, end_date REAL, "
    "specifier TEXT, "
    "by_month_months INTEGER, owner_id INTEGER, external_id TEXT, external_mod_tag TEXT, external_id_tag "
    "TEXT, "
    "external_rep BLOB, UUID TEXT);\n"
    "CREATE TABLE ExceptionDate (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, owner_id INTEGER, date REAL, "
    "sync_order INTEGER);\n"
    "CREATE TABLE Participant (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, entity_type INTEGER, type INTEGER, "
    "status INTEGER, owner_id INTEGER, email TEXT, is_self INTEGER, UUID TEXT);\n"
    "CREATE TABLE _SqliteDatabaseProperties (key TEXT, value TEXT, UNIQUE(key));\n"
    "INSERT INTO Store(name, type) VALUES('Default', 0);\n";

} // namespace

QByteArray calendarTables(const Generation &generation)
{
    const int ios = generation.ios;
    return createTable("Calendar", calendar, ios) + createTable("CalendarItem", item, ios) +
           createTable("Alarm", alarm, ios) + createTable("Location", location, ios) + otherTables +
           "INSERT INTO _SqliteDatabaseProperties VALUES('_ClientVersion', '" +
           QByteArray::number(generation.calendarClientVersion) + "')";
}

} // namespace sample

#include "sample/address_book_schema.h"

#include "sample/table_schema.h"

namespace sample {

namespace {

constexpr Column person[] = {
    {"ROWID", "INTEGER PRIMARY KEY AUTOINCREMENT"},
    {"First", "TEXT"},
    {"Last", "TEXT"},
    {"Middle", "TEXT"},
    {"FirstPhonetic", "TEXT"},
    {"MiddlePhonetic", "TEXT"},
    {"LastPhonetic", "TEXT"},
    {"Organization", "TEXT"},
    {"Department", "TEXT"},
    {"Note", "TEXT"},
    {"Kind", "INTEGER"},
    {"Birthday", "TEXT"},
    {"JobTitle", "TEXT"},
    {"Nickname", "TEXT"},
    {"Prefix", "TEXT"},
    {"Suffix", "TEXT"},
    {"FirstSort", "TEXT"},
    {"LastSort", "TEXT"},
    {"CreationDate", "INTEGER"},
    {"ModificationDate", "INTEGER"},
    {"CompositeNameFallback", "TEXT"},
    {"ExternalIdentifier", "TEXT"},
    {"ExternalModificationTag", "TEXT"},
    {"ExternalUUID", "TEXT"},
    {"StoreID", "INTEGER"},
    {"DisplayName", "TEXT"},
    {"ExternalRepresentation", "BLOB"},
    {"FirstSortSection", "TEXT"},
    {"LastSortSection", "TEXT"},
    {"FirstSortLanguageIndex", "INTEGER DEFAULT 2147483647"},
    {"LastSortLanguageIndex", "INTEGER DEFAULT 2147483647"},
    {"PersonLink", "INTEGER DEFAULT -1"},
    {"ImageURI", "TEXT"},
    {"IsPreferredName", "INTEGER DEFAULT 1"},
    {"guid", "TEXT", 7, 14},
    {"guid", "TEXT NOT NULL DEFAULT (ab_generate_guid())", 15},
    {"PhonemeData", "TEXT", 7},
    {"AlternateBirthday", "TEXT", 9},
    {"MapsData", "TEXT", 9},
    {"FirstPronunciation", "TEXT", 9},
    {"MiddlePronunciation", "TEXT", 9},
    {"LastPronunciation", "TEXT", 9},
    {"OrganizationPhonetic", "TEXT", 9},
    {"OrganizationPronunciation", "TEXT", 9},
    {"PreviousFamilyName", "TEXT", 9},
    {"PreferredLikenessSource", "TEXT", 15},
    {"PreferredPersonaIdentifier", "TEXT", 15},
    {"PreferredChannel", "TEXT", 15},
    {"DowntimeWhitelist", "TEXT", 15},
    {"ImageType", "TEXT", 15},
    {"ImageHash", "BLOB", 15},
    {"MemojiMetadata", "BLOB", 15},
};

constexpr Column multiValue[] = {
    {"UID", "INTEGER PRIMARY KEY"},
    {"record_id", "INTEGER"},
    {"property", "INTEGER"},
    {"identifier", "INTEGER"},
    {"label", "INTEGER"},
    {"value", "TEXT"},
    {"guid", "TEXT", 7},
};

constexpr const char *otherTables =
    "CREATE TABLE ABMultiValueLabel (value TEXT, UNIQUE(value));\n"
    "CREATE TABLE ABMultiValueEntry (parent_id INTEGER, key INTEGER, value TEXT, UNIQUE(parent_id, key));\n"
    "CREATE TABLE ABMultiValueEntryKey (value TEXT, UNIQUE(value));\n"
    "CREATE TABLE ABPersonLink (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, StoreID INTEGER, ExternalIdentifier "
    "TEXT);\n"
    "CREATE TABLE ABGroup (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, Name TEXT, ExternalIdentifier TEXT, "
    "StoreID INTEGER, ExternalModificationTag TEXT, ExternalRepresentation BLOB, ExternalUUID TEXT);\n"
    "CREATE TABLE ABGroupMembers (UID INTEGER PRIMARY KEY, group_id INTEGER, member_type INTEGER, "
    "member_id INTEGER, UNIQUE(group_id, member_type, member_id));\n"
    "CREATE TABLE ABStore (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, Name TEXT, ExternalIdentifier TEXT, "
    "Type INTEGER, ConstraintsPath TEXT, ExternalModificationTag TEXT, ExternalSyncTag TEXT, AccountID "
    "INTEGER, "
    "Enabled INTEGER DEFAULT 1, SyncData BLOB, MeIdentifier INTEGER DEFAULT -1, Capabilities INTEGER DEFAULT "
    "0);\n"
    "CREATE TABLE FirstSortSectionCount (StoreID INTEGER, LanguageIndex INTEGER, Section TEXT, number "
    "INTEGER);\n"
    "CREATE TABLE _SqliteDatabaseProperties (key TEXT, value TEXT, UNIQUE(key));\n"
    "CREATE INDEX ABFirstSortIndex ON ABPerson(FirstSort);\n"
    "CREATE INDEX ABMultiValueRecordIDIndex ON ABMultiValue(record_id);\n"
    "INSERT INTO ABStore(Name, Type) VALUES(NULL, 0);\n";

// The tokenizer is the device's own, so that plain SQLite can list the table and not touch it. For the same
// reason it can not be created in the ordinary way.
constexpr const char *fullTextTable =
    "CREATE TABLE ABPersonFullTextSearch_content (docid INTEGER PRIMARY KEY, c0First, c1Last);\n"
    "PRAGMA writable_schema=ON;\n"
    "INSERT INTO sqlite_master(type, name, tbl_name, rootpage, sql) VALUES('table', "
    "'ABPersonFullTextSearch', "
    "'ABPersonFullTextSearch', 0, 'CREATE VIRTUAL TABLE ABPersonFullTextSearch USING fts4(First, Last, "
    "tokenize=ab_cf_tokenizer)');\n"
    "PRAGMA writable_schema=OFF;\n";

QByteArray clientVersion(const Generation &generation)
{
    return "INSERT INTO _SqliteDatabaseProperties VALUES('_ClientVersion', '" +
           QByteArray::number(generation.addressBookClientVersion) + "');\n";
}

} // namespace

QByteArray addressBookTables(const Generation &generation)
{
    const int ios = generation.ios;
    return createTable("ABPerson", person, ios) + createTable("ABMultiValue", multiValue, ios) + otherTables +
           clientVersion(generation) + (ios >= 15 ? fullTextTable : "");
}

QByteArray addressBookImageTables(const Generation &generation)
{
    return "CREATE TABLE ABThumbnailImage (record_id INTEGER, format INTEGER, derived_from_format INTEGER, "
           "data BLOB, "
           "PRIMARY KEY(record_id, format));\n"
           "CREATE TABLE ABFullSizeImage (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, record_id INTEGER, "
           "crop_x INTEGER, crop_y INTEGER, crop_width INTEGER, data BLOB, UNIQUE(record_id));\n"
           "CREATE TABLE _SqliteDatabaseProperties (key TEXT, value TEXT, UNIQUE(key));\n" +
           clientVersion(generation);
}

} // namespace sample

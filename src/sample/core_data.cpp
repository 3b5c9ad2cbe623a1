#include "sample/core_data.h"

#include "sample/plist_value.h"

namespace sample {

void addCoreDataTables(SqliteFile &file, std::initializer_list<CoreDataEntity> entities)
{
    file.execute(
        "CREATE TABLE Z_PRIMARYKEY (Z_ENT INTEGER PRIMARY KEY, Z_NAME VARCHAR, Z_SUPER INTEGER, "
        "Z_MAX INTEGER);"
        "CREATE TABLE Z_METADATA (Z_VERSION INTEGER PRIMARY KEY, Z_UUID VARCHAR(255), Z_PLIST BLOB)");
    for (const CoreDataEntity &entity : entities)
        Statement(file, "insert into Z_PRIMARYKEY values(?,?,0,?)")
            .run(entity.number, Utf8{entity.name}, entity.maximum);
    const QByteArray properties =
        binaryPlist(PlistValue::Dictionary{{QStringLiteral("NSStoreType"), QStringLiteral("SQLite")}});
    Statement(file, "insert into Z_METADATA values(1, ?, ?)")
        .run(Utf8{"5F3C9A7E-0000-4000-8000-000000000001"}, properties);
}

} // namespace sample

#pragma once

#include "sample/sqlite_file.h"

#include <initializer_list>

namespace sample {

/// An entity of a Core Data store: its number, name and highest primary key.
struct CoreDataEntity
{
    int number;
    const char *name;
    qint64 maximum;
};

/// Adds the two tables that every Core Data store has.
void addCoreDataTables(SqliteFile &file, std::initializer_list<CoreDataEntity> entities);

} // namespace sample

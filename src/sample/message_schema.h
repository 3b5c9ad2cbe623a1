#pragma once

#include "sample/generation.h"
#include "sample/table_schema.h"

namespace sample {

/// The columns of `message`, `chat` and `attachment` in all generations, in their order.
std::span<const Column> messageColumns();
std::span<const Column> chatColumns();
std::span<const Column> attachmentColumns();
std::span<const Column> handleColumns();

/// Everything that stands in an empty sms.db but its secondary indexes and triggers.
QByteArray messageTables(const Generation &generation);

/// Indexes and triggers, made when all rows are in. The triggers call functions that only the device has.
QByteArray messageIndexes(const Generation &generation);

} // namespace sample

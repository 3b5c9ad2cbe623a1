#pragma once

#include "messages/msg_records.h"
#include "messages/record_columns.h"

// The columns of the iOS 6+ tables, by the fields that they fill. The row id is among them.

RecordColumns<_MsgChat> chatColumns(const Sqlite3Cursor &cursor);
RecordColumns<_MsgHandle> handleColumns(const Sqlite3Cursor &cursor);
RecordColumns<_MsgMessage> messageColumns(const Sqlite3Cursor &cursor, DateUnit unit);
RecordColumns<_MsgAttachment> attachmentColumns(const Sqlite3Cursor &cursor);

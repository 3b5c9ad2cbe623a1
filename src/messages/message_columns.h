#pragma once

#include "messages/msg_records.h"
#include "messages/record_columns.h"
#include "messages/record_insert.h"

// The columns of the iOS 6+ tables, by the fields that they fill. The row id is among them.

RecordColumns<_MsgChat> chatColumns(const Sqlite3Cursor &cursor);
RecordColumns<_MsgHandle> handleColumns(const Sqlite3Cursor &cursor);
RecordColumns<_MsgMessage> messageColumns(const Sqlite3Cursor &cursor, DateUnit unit);
RecordColumns<_MsgAttachment> attachmentColumns(const Sqlite3Cursor &cursor);

// The other direction: what inserts a record into a table of this kind, as far as the table has the columns.

RecordInsert<_MsgChat> chatInsert(Sqlite3DB &db);
RecordInsert<_MsgHandle> handleInsert(Sqlite3DB &db);
RecordInsert<_MsgMessage> messageInsert(Sqlite3DB &db, DateUnit unit);
RecordInsert<_MsgAttachment> attachmentInsert(Sqlite3DB &db);

#pragma once

#include "personal/bookmark_node.h"
#include "personal/calendar_event.h"
#include "personal/call_entry.h"
#include "personal/contact_record.h"
#include "personal/note_entry.h"

#include <QByteArray>

/// Whether the identity that a local database gives a record is printed with it.
enum class RecordIdentity { None, OfLocalDatabase };

// Each appends one record as JSON on a line of its own.

void appendContactLine(QByteArray &to, const ContactRecord &contact, RecordIdentity identity);
void appendCallLine(QByteArray &to, const CallEntry &call, RecordIdentity identity);
void appendNoteLine(QByteArray &to, const NoteEntry &note, RecordIdentity identity);
void appendEventLine(QByteArray &to, const CalendarEvent &event);
/// A top-level node with everything below it.
void appendBookmarkLine(QByteArray &to, const BookmarkNode &node);

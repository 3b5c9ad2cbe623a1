#pragma once

#include "messages/msg_records.h"

/// What tells whether two messages are the same one, whatever their row ids and GUIDs: 32 lower-case
/// hexadecimal digits over sender, date, direction, text and the names of the attached files; of a system
/// item over its GUID.
QString logicHash(const _MsgMessage &message);

#pragma once

#include "messages/msg_records.h"

/// True when the content of an attachment can be had: it lies on this computer already, or `source`, which
/// may be null, has it.
bool hasContent(const _MsgAttachment &attachment, const FileSource *source);

/// True when what fetchContent() gives is unreadable: it is of a class that the password does not unlock.
bool isLocked(const _MsgAttachment &attachment, const FileSource *source);

/// Writes the content to `destination` (complete or absent). Throws Error; content that cannot be had is one.
void fetchContent(const _MsgAttachment &attachment, FileSource *source, const QString &destination);

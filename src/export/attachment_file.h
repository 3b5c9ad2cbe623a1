#pragma once

#include "backup/file_source.h"
#include "messages/msg_records.h"

/// A text file longer than this is not shown as a message.
inline constexpr qint64 longestShownTextBytes = 1024 * 1024;

/// Why the file of an attachment cannot be had; empty when there is hope. `source` may be null.
QString whyMissing(const _MsgAttachment &attachment, const FileSource *source);

/// What the summary of an export says of an attachment that could not be had.
QString missingAttachmentText(const _MsgAttachment &attachment, const QString &reason);

/// A name for the file that is legal everywhere; the device's may hold anything.
QString attachmentFileName(const _MsgAttachment &attachment);

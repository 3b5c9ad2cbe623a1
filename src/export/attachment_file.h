#pragma once

#include "base/report.h"
#include "messages/msg_records.h"

/// A text file longer than this is not shown as a message.
inline constexpr qint64 longestShownTextBytes = 1024 * 1024;

/// What is told of a picture that came with a message and cannot be shown: it is damaged, or larger than any camera
/// takes.
Issue badPicture(const _MsgAttachment &attachment);

/// A name for the file that is legal everywhere; the device's may hold anything.
QString attachmentFileName(const _MsgAttachment &attachment);

#pragma once

#include "messages/msg_records.h"

/// A text file longer than this is not shown as a message.
inline constexpr qint64 longestShownTextBytes = 1024 * 1024;

/// A name for the file that is legal everywhere; the device's may hold anything.
QString attachmentFileName(const _MsgAttachment &attachment);

#pragma once

#include "messages/msg_records.h"

#include <optional>

/// A file of this computer with the content of an attachment: where it lies, or a copy that `source`, which
/// may be null, keeps for looking at. Nothing when it is in neither place. Throws Error when it is there and
/// cannot be fetched.
std::optional<QString> viewableFile(const _MsgAttachment &attachment, FileSource *source);

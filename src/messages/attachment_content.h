#pragma once

#include "backup/file_cipher.h"
#include "base/report.h"
#include "messages/msg_records.h"

#include <optional>

/// True when the content of an attachment lies on this computer as it is, at its `local_path`.
bool isLocal(const _MsgAttachment &attachment);

/// True when the content of an attachment can be had: it is local, or `source`, which may be null, has it.
bool hasContent(const _MsgAttachment &attachment, const FileSource *source);

/// True when what fetchContent() gives is unreadable: it is of a class that the password does not unlock.
bool isLocked(const _MsgAttachment &attachment, const FileSource *source);

/// The file of the backup that holds the content, or the name that the device gave it.
QString placeOf(const _MsgAttachment &attachment);

/// Why the content cannot be had, where that is known before anything is read: the backup does not list it,
/// has lost it, or keeps it locked. Nothing when there is hope.
std::optional<Issue> lossOf(const _MsgAttachment &attachment, const FileSource *source);

/// Notes an attachment whose content `source` lists and has lost.
void noteLostContent(Report &report, const _MsgAttachment &attachment, const FileSource *source);
/// The same for those of messages, each once.
void noteLostContent(Report &report, const std::vector<MessageRef> &messages, const FileSource *source);

/// Notes that the content could not be read, or could not be written where it was to go.
void addFailure(Report &report, const _MsgAttachment &attachment, const Error &error);

/// Writes the content, with its time, to `destination` (complete or absent). Throws Error; content that
/// cannot be had is one. What `progress` throws ends it.
void fetchContent(const _MsgAttachment &attachment, FileSource *source, const QString &destination,
                  const CopyProgress &progress = {});

/// Notes when a copy that fetchContent() made is shorter than `source` says that the content is.
void noteShortfall(Report &report, const _MsgAttachment &attachment, const FileSource *source,
                   const QString &copy);

/// A file of this computer with the content: where it lies, or a copy that `source` keeps for looking at.
/// Nothing when it is in neither place. Throws Error when it is there and cannot be fetched.
std::optional<QString> viewableFile(const _MsgAttachment &attachment, FileSource *source);

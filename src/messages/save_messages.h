#pragma once

#include "messages/message_import.h"

class FileSource;

// Each is one job on the message store in a local database's folder, in one transaction: a failure, a stop
// and a killed process leave the store as it was before. They throw Error and Cancelled.

/// Adds messages, with their attachments out of `source`, which may be null; makes the store when there is
/// none. `status` is the running text.
SavedMessages saveMessages(const std::vector<MessageRef> &messages, FileSource *source, const QString &folder,
                           const QString &status, Progress &progress,
                           ChangedMessages changed = ChangedMessages::Keep);

/// Moves messages into the recycle store and gives their number. A row id that is given twice counts once;
/// when one is unknown nothing is removed.
qint64 removeMessages(const QString &folder, const std::vector<qint64> &rowids, Progress &progress);

/// Puts messages of the recycle store back, by their row ids there.
qint64 undeleteMessages(const QString &folder, const std::vector<qint64> &rowids, Progress &progress);

/// Deletes what the recycle store holds for good, with the files that nothing else needs.
void emptyRecycleStore(const QString &folder, Progress &progress);

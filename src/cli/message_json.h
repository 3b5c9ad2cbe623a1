#pragma once

#include "messages/msg_records.h"

#include <QByteArray>

class FileSource;

/// Appends one conversation as a JSON object on a line of its own.
void appendChatLine(QByteArray &to, const _MsgChat &chat, qint64 messageCount);

/// Appends one message as a JSON object on a line of its own. `source` says which attachments are there.
void appendMessageLine(QByteArray &to, const MessageRef &ref, const FileSource &source);

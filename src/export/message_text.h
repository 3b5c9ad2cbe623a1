#pragma once

#include "messages/msg_records.h"

/// How an attachment is shown.
enum class AttachmentKind { Image, Video, Audio, VCard, PlainText, Other };
AttachmentKind attachmentKind(const QString &mimeType);

/// The sentence of a system item: who did what, and on a line of its own when.
QString systemText(const _MsgMessage &message);

/// Who speaks: the sender's name, for what comes in in a group; otherwise empty.
QString senderLabel(const MessageRef &ref);

/// What a bubble says: the subject as a line of its own, and the text without the place holders of
/// attachments, trimmed.
QString messageBody(const _MsgMessage &message);

/// The message as one cell of text: the system text, or the text and a word for each attachment. Emoji stay
/// the characters that they are.
QString summaryText(const _MsgMessage &message);

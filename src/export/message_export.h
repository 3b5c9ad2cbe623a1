#pragma once

#include "base/progress.h"
#include "base/report.h"
#include "messages/msg_records.h"

#include <QStringList>

#include <optional>

class FileSource;

enum class MessageFormat { Text = 0, Csv = 1, Pdf = 2, Html = 3, Database = 4 };

/// What an export of messages did.
struct ExportedMessages
{
    QStringList files; // those for people, absolute paths: conversations, or the one text file
    qint64 attachmentsCopied = 0;
    Report report; // has done the messages that were written
};

/// Writes messages to `target`: a file for text and CSV, a folder for the others. Messages of one
/// conversation must stand together, in the order of the exports, as AbsMessageDb::select gives them; the
/// formats that are one file sort the whole list anew. Attachments are fetched from `source`, which may be
/// null. Each file for people is complete or absent. Throws Error, and Cancelled through `progress`.
ExportedMessages exportMessages(const std::vector<MessageRef> &messages, MessageFormat format,
                                const QString &target, FileSource *source, Progress &progress);

/// Nothing for an unknown name; "text", "csv", "pdf", "html", "db". PDF needs a QGuiApplication.
std::optional<MessageFormat> messageFormatOf(const QString &name);

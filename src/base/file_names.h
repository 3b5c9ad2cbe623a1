#pragma once

#include <QString>

/// `text` made usable as one path component: device names are wrapped as "$$CON$$.txt", the characters
/// \ / : * ? " < > | and line breaks and tabs are removed, the ends trimmed. May be empty: callers bring
/// their own fallback.
QString safeFileName(const QString &text);

/// `path` itself when nothing is there, else the first of "base(1).suffix", "base(2).suffix", ... in the same
/// folder that is free. The base ends at the first dot, the suffix begins after the last.
QString freeFileName(const QString &path);

/// Deletes a folder and everything below it, links as links. Failures are ignored.
void removeFolderTree(const QString &path);

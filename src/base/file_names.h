#pragma once

#include <QString>

/// `text` made usable as one path component: device names are wrapped as "$$CON$$.txt", the characters
/// \ / : * ? " < > | and line breaks and tabs are removed, the ends trimmed. May be empty: callers bring
/// their own fallback.
QString safeFileName(const QString &text);

/// `path` itself when nothing is there, else the first of "base(1).suffix", "base(2).suffix", ... in the same
/// folder that is free. The base ends at the first dot, the suffix begins after the last.
QString freeFileName(const QString &path);

struct NameEnds
{
    QString stem;
    QString end; // the extension with its dot; empty when there is none
};

/// Splits at the last dot. What is longer than any extension is none.
NameEnds splitAtLastDot(const QString &name);

/// `stem` and `end` as one name of at most 255 bytes, the most that file systems take: the stem is cut, in whole
/// characters, as far as it has to be.
QString fittingFileName(const QString &stem, const QString &end);

/// Deletes a folder and everything below it, links as links. Failures are ignored.
void removeFolderTree(const QString &path);

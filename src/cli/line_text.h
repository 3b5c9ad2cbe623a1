#pragma once

#include <QString>
#include <QStringList>

/// True for what must not reach a terminal, nor anybody who shows a line as it stands: control characters of ASCII
/// and of Latin-1, the separators of lines and paragraphs, and characters that turn the direction of what follows.
bool isUnprintable(char16_t letter);

/// `text` for one line of a terminal: names out of a backup may hold line ends and escape sequences.
QString oneLine(const QString &text);

/// Rows under their headings (none when empty), columns padded to the widest entry, without blanks at the
/// line ends. All rows are of one length.
QString plainTable(const QStringList &headings, const QList<QStringList> &rows);

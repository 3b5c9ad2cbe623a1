#pragma once

#include <QString>
#include <QStringList>

/// `text` for one line of a terminal: names out of a backup may hold line ends and escape sequences.
QString oneLine(const QString &text);

/// Rows under their headings (none when empty), columns padded to the widest entry, without blanks at the
/// line ends. All rows are of one length.
QString plainTable(const QStringList &headings, const QList<QStringList> &rows);

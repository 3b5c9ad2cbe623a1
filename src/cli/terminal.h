#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringList>

#include <optional>

// What the command line needs of the system that Qt does not give. One implementation a system.

/// The arguments after the program's name. Nothing when one of them is no text: a file that it names would be another.
std::optional<QStringList> commandLineArguments(int argc, char **argv);

/// Makes the three standard streams exist and keeps line ends on standard output as they are written.
void prepareStandardStreams();

/// Has `handler` called for Ctrl-C and requests to end. A blocked read or write then returns.
void onStopSignals(void (*handler)(int));

bool errorStreamIsTerminal();

/// Writes to standard output what it takes at once, and gives how many bytes that were; -1, with errno set,
/// when it takes none. A stop lets go of a writer that waits for room.
qint64 writeSome(QByteArrayView bytes);

/// Asks on the terminal without showing what is typed. Nothing when there is no terminal to ask on, or the
/// input ends. Throws Cancelled on a stop.
std::optional<QString> askHidden(const QString &prompt);

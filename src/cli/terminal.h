#pragma once

#include <QString>
#include <QStringList>

#include <optional>

// What the command line needs of the system that Qt does not give. One implementation a system.

/// The arguments after the program's name.
QStringList commandLineArguments(int argc, char **argv);

/// Makes the three standard streams exist and keeps line ends on standard output as they are written.
void prepareStandardStreams();

/// Has `handler` called for Ctrl-C and requests to end. A blocked read or write then returns.
void onStopSignals(void (*handler)(int));

bool errorStreamIsTerminal();

/// Asks on the terminal without showing what is typed. Nothing when there is no terminal to ask on, or the
/// input ends. Throws Cancelled on a stop.
std::optional<QString> askHidden(const QString &prompt);

#pragma once

#include <QtGlobal>

class QString;

enum class DebugEcho { ToStandardOutput, None };

/// Sets the log folder, deletes all but the `keep` newest of its files by name, and installs logMessage as
/// the process-wide message handler. A program whose standard output is a promise passes DebugEcho::None.
void initLog(const QString &folder, int keep, DebugEcho echo = DebugEcho::ToStandardOutput);

/// Appends one line, "(W 12:00:00) text", to the day's file in the log folder. Called from any thread, takes
/// no lock; failures lose the line. A fatal message ends the process.
void logMessage(QtMsgType type, const QMessageLogContext &context, const QString &text);

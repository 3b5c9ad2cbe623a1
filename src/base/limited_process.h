#pragma once

#include "base/progress.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

/// A program that is given bytes of unknown origin, and what it may use.
struct LimitedProcess
{
    QString program; // a path
    QStringList arguments = {};
    QByteArray input = {};
    qint64 mostOutputBytes = 0;
    quint64 mostMemoryBytes = 0; // of address space; held where the system can (not on Windows)
    int longestMs = 0;
};

/// What the program wrote to its standard output. Nothing when it is not there, fails, or needed more than it
/// may use, after which it is gone. Throws Cancelled. May be called from any thread.
std::optional<QByteArray> outputOf(const LimitedProcess &limited, const Progress *progress = nullptr);

#pragma once

#include <QByteArray>
#include <QByteArrayView>

/// Standard output, buffered: what a command is for, and nothing else. A reader that goes away and a full
/// disk are errors like any other. Used by one thread.
class Output
{
public:
    Output();

    /// Throws Error, and Cancelled when a stop broke off a blocked write.
    void write(QByteArrayView bytes);
    /// Writes what is still held back; a command is not done before this has returned. Throws as write does.
    void finish();

private:
    QByteArray m_pending;
};

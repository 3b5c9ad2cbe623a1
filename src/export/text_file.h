#pragma once

#include "base/error.h"
#include "export/output_file.h"

#include <QString>

/// A text file in the making: UTF-8, complete or absent. Throws Error with the file's name and reason.
class TextFile
{
public:
    /// Makes the folder when it is missing.
    explicit TextFile(const QString &path);

    void write(const QString &text) { writeBytes(text.toUtf8()); }
    void writeLine(const QString &text) { write(text + QLatin1Char('\n')); }
    void writeBytes(const QByteArray &bytes);

    /// Runs the part that writes and commits. A cancelled export keeps what it has written, so the file moves
    /// to its place then too; any other end leaves none.
    template <typename Body>
    void keepWhenCancelled(Body body)
    {
        try {
            body();
        } catch (const Cancelled &) {
            commit();
            throw;
        }
        commit();
    }

    void commit() { m_file.commit(); }

private:
    OutputFile m_file;
};

#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <memory>

class TargetFile;

/// A file for people: complete or absent, written in large blocks. An existing regular file (or the one that
/// a link points to) is replaced by commit(); a device or a pipe is written to directly.
class OutputFile
{
public:
    explicit OutputFile(const QString &path);
    ~OutputFile();
    OutputFile(const OutputFile &) = delete;
    OutputFile &operator=(const OutputFile &) = delete;

    /// Throws Error with the file's error text.
    void open();
    /// Where bytes are appended; call flushIfFull() after each record. Nothing else may be done to it.
    QByteArray &buffer() { return m_buffer; }
    void flushIfFull();
    void commit();

private:
    QString m_path;
    QByteArray m_buffer;
    std::unique_ptr<TargetFile> m_target;
    QFile m_device;

    void flush();
};

/// Writes a whole small file, complete or absent. Throws Error.
void writeWholeFile(const QString &path, const QByteArray &bytes);

#pragma once

#include <QIODevice>

#include <exception>

class OutputFile;

/// Lets what writes to a QIODevice write to an OutputFile. Such writers do not look at errors: the first one
/// is kept and everything after it is ignored, until rethrow() is asked.
class OutputDevice : public QIODevice
{
public:
    /// `file` must outlive this and be open when something is written.
    explicit OutputDevice(OutputFile &file);

    bool isSequential() const override { return true; }
    /// Throws what the file threw.
    void rethrow() const;

protected:
    /// What is written instead of a piece; of the same length.
    virtual QByteArray changed(const QByteArray &piece) { return piece; }

    qint64 readData(char *bytes, qint64 size) override;
    qint64 writeData(const char *bytes, qint64 size) override;

private:
    OutputFile &m_file;
    std::exception_ptr m_failure;
};

#include "export/output_device.h"

#include "export/output_file.h"

OutputDevice::OutputDevice(OutputFile &file) : m_file(file)
{
    open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

void OutputDevice::rethrow() const
{
    if (m_failure)
        std::rethrow_exception(m_failure);
}

qint64 OutputDevice::readData(char *, qint64)
{
    return -1;
}

qint64 OutputDevice::writeData(const char *bytes, qint64 size)
{
    if (m_failure)
        return -1;
    try {
        m_file.buffer().append(changed(QByteArray::fromRawData(bytes, static_cast<qsizetype>(size))));
        m_file.flushIfFull();
    } catch (...) {
        m_failure = std::current_exception();
        return -1;
    }
    return size;
}

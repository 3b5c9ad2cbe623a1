#include "export/text_file.h"

#include "base/source_guard.h"

#include <QDir>
#include <QFileInfo>

TextFile::TextFile(const QString &path) : m_file(path)
{
    SourceGuard::requireOutside(path);
    QDir().mkpath(QFileInfo(path).path());
    m_file.open();
}

void TextFile::writeBytes(const QByteArray &bytes)
{
    m_file.buffer().append(bytes);
    m_file.flushIfFull();
}

#include "backup/sqlite_header.h"

#include <QByteArrayView>
#include <QFile>
#include <QFileInfo>

bool hasSqliteHeader(const QString &path)
{
    constexpr QByteArrayView magic("SQLite format 3", 16);
    QFile file(path);
    return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) && file.read(magic.size()) == magic;
}

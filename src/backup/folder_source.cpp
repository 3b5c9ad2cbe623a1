#include "backup/folder_source.h"

#include "backup/file_cipher.h"
#include "base/contained_path.h"
#include "base/error.h"

#include <QDir>
#include <QFileInfo>

QString FolderSource::pathBelow(const QString &folder, const SourceFile &file)
{
    const std::optional<QString> contained = containedPath(folder, file.relativePath);
    if (!contained)
        return {};
    // A file that somebody else put there may have a name that this program would not give it.
    for (const QString &path : {*contained, QDir(folder).filePath(file.relativePath)})
        if (QFileInfo(path).isFile() && staysBelow(folder, path))
            return path;
    return {};
}

QString FolderSource::existing(const SourceFile &file) const
{
    const QString path = localPath(file);
    if (path.isEmpty())
        throw Error(QStringLiteral("%1 has no file %2.").arg(m_folder, file.relativePath));
    return path;
}

void FolderSource::fetchTo(const SourceFile &file, const QString &destination, const CopyProgress &progress)
{
    copyFile(existing(file), destination, progress);
}

std::uint64_t FolderSource::listedBytes(const SourceFile &file) const
{
    return static_cast<std::uint64_t>(QFileInfo(localPath(file)).size());
}

QString FolderSource::fetchForViewing(const SourceFile &file)
{
    return existing(file);
}

#include "backup/backup_file_cache.h"

#include "backup/cache_folder.h"
#include "base/contained_path.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <filesystem>

namespace {
using Node = FileTree::Node;

QString registerPath(const QString &backupUid, const char *name)
{
    return QStringLiteral("%1/%2").arg(cacheFolderPath(backupUid), QLatin1String(name));
}

std::filesystem::path nativePath(const QString &path)
{
    return std::filesystem::path(path.toStdU16String());
}

QByteArray treePath(const FileCatalogue &catalogue, FileCatalogue::Index index)
{
    return FileTree::virtualPath(catalogue.domain(index), catalogue.relativePath(index));
}

/// The program's own names at the top of a cache folder.
bool isReserved(const QString &virtualPath)
{
    const QString top = virtualPath.section(QLatin1Char('/'), 0, 0);
    return top.startsWith(QLatin1String("manifest"), Qt::CaseInsensitive) ||
           top.startsWith(QLatin1String("quillbarrow-"), Qt::CaseInsensitive);
}

/// The name of a database's log; its row tells the date of the log that a copy contains, 0 for none.
QByteArray logId(const FileCatalogue &catalogue, FileCatalogue::Index database)
{
    return fileId(catalogue.domain(database), catalogue.relativePath(database).toByteArray() + "-wal");
}
} // namespace

BackupFileCache::BackupFileCache(const QString &backupUid, const FileCatalogue &catalogue,
                                 const FileTree &tree)
    : m_catalogue(catalogue),
      m_tree(tree),
      m_uid(backupUid),
      m_general(registerPath(backupUid, "manifest.db")),
      m_media(registerPath(backupUid, "manifest2.db"))
{
}

CopyRegister &BackupFileCache::registerOf(Index index)
{
    return treePath(m_catalogue, index).startsWith("Media/") ? m_media : m_general;
}

/// True when a name on the way to the node differs from that of a sibling in nothing but case.
bool BackupFileCache::sharesItsName(Node node)
{
    for (; node != FileTree::root; node = m_tree.parent(node)) {
        const Node folder = m_tree.parent(node);
        auto alike = m_alike.constFind(folder);
        if (alike == m_alike.constEnd()) {
            QSet<Node> found;
            QHash<QString, Node> names;
            for (const Node child : m_tree.children(folder)) {
                const QString name = m_tree.name(child).toCaseFolded();
                if (names.contains(name))
                    found << child << names.value(name);
                names.insert(name, child);
            }
            alike = m_alike.insert(folder, found);
        }
        if (alike->contains(node))
            return true;
    }
    return false;
}

QString BackupFileCache::place(Index index)
{
    const QByteArray path = treePath(m_catalogue, index);
    const QString virtualPath = QString::fromUtf8(path);
    const Node node = m_tree.findUtf8(path);
    const QString folder = cacheFolderPath(m_uid);
    const bool isNamedPlainly = virtualPath.toUtf8() == path && !isReserved(virtualPath) &&
                                containedPath(folder, virtualPath) == folder + QLatin1Char('/') + virtualPath;
    if (m_catalogue.lastModified(index) == 0 || !isNamedPlainly || node == FileTree::none ||
        m_tree.record(node) != index || sharesItsName(node))
        return {};
    return folder + QLatin1Char('/') + virtualPath;
}

qint64 BackupFileCache::dateOf(Index record) const
{
    return record == FileCatalogue::none ? 0 : m_catalogue.lastModified(record);
}

bool BackupFileCache::datesFit(Index index, Index log)
{
    CopyRegister &copies = registerOf(index);
    return copies.cachedDate(m_catalogue.fileId(index)) == m_catalogue.lastModified(index) &&
           copies.cachedDate(logId(m_catalogue, index)).value_or(0) == dateOf(log);
}

// The time of the file is that of its record, unless somebody has changed it since.
QString BackupFileCache::current(Index index, Index log)
{
    const QString path = place(index);
    const QFileInfo copy(path);
    const bool isThere = !path.isEmpty() && copy.isFile() && !copy.isSymLink() &&
                         copy.lastModified().toSecsSinceEpoch() == m_catalogue.lastModified(index);
    return isThere && datesFit(index, log) ? path : QString();
}

QString BackupFileCache::keep(Index index, const QString &copy, Index log)
{
    const QString path = place(index);
    if (path.isEmpty() || m_retired)
        return copy;
    cacheFolderOf(m_uid);
    std::error_code error;
    if (QDir().mkpath(QFileInfo(path).path()))
        std::filesystem::rename(nativePath(copy), nativePath(path), error);
    else
        error = std::make_error_code(std::errc::not_a_directory);
    if (error) {
        qWarning("%s is not kept: %s", qUtf8Printable(path), error.message().c_str());
        return copy;
    }
    // The row of the database comes last: until it is there, the copy does not count.
    CopyRegister &copies = registerOf(index);
    const QByteArray logRow = logId(m_catalogue, index);
    const qint64 logDate = dateOf(log);
    if (copies.cachedDate(logRow).value_or(0) != logDate)
        copies.setCachedDate(logRow, logDate);
    copies.setCachedDate(m_catalogue.fileId(index), m_catalogue.lastModified(index));
    return path;
}

#pragma once

#include "work/open_backup.h"

enum class FileColumn { Name, Size, Modified, Folder };

/// How a list of the backup's files is sorted. Folders stand first whatever the order, as in any file
/// manager.
struct FileOrder
{
    FileColumn column = FileColumn::Name;
    Qt::SortOrder direction = Qt::AscendingOrder;

    bool operator==(const FileOrder &) const = default;
};

void sortFiles(std::vector<FileTree::Node> &nodes, const BackupManifest &backup, const FileOrder &order);

/// In bytes; -1 of a folder.
qint64 sizeOfFile(const BackupManifest &backup, FileTree::Node node);
/// Unix seconds; 0 when it is not known.
qint64 modifiedOfFile(const BackupManifest &backup, FileTree::Node node);

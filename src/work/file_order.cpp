#include "work/file_order.h"

#include <QCollator>

#include <algorithm>

qint64 sizeOfFile(const BackupManifest &backup, FileTree::Node node)
{
    const FileCatalogue::Index record = backup.tree().record(node);
    return record == FileCatalogue::none || backup.tree().isFolder(node)
               ? -1
               : static_cast<qint64>(backup.catalogue().sizeBytes(record));
}

qint64 modifiedOfFile(const BackupManifest &backup, FileTree::Node node)
{
    const FileCatalogue::Index record = backup.tree().record(node);
    return record == FileCatalogue::none ? 0 : backup.catalogue().lastModified(record);
}

void sortFiles(std::vector<FileTree::Node> &nodes, const BackupManifest &backup, const FileOrder &order)
{
    struct Keyed
    {
        FileTree::Node node;
        bool folder;
        qint64 number;
        QCollatorSortKey name;
    };
    const FileTree &tree = backup.tree();
    QCollator collator;
    collator.setNumericMode(true);
    std::vector<Keyed> keyed;
    keyed.reserve(nodes.size());
    for (const FileTree::Node node : nodes) {
        const qint64 number = order.column == FileColumn::Size       ? sizeOfFile(backup, node)
                              : order.column == FileColumn::Modified ? modifiedOfFile(backup, node)
                                                                     : 0;
        const QString name =
            order.column == FileColumn::Folder ? tree.path(tree.parent(node)) : tree.name(node);
        keyed.push_back({node, tree.isFolder(node), number, collator.sortKey(name.toCaseFolded())});
    }
    const bool ascending = order.direction == Qt::AscendingOrder;
    std::stable_sort(keyed.begin(), keyed.end(), [ascending](const Keyed &a, const Keyed &b) {
        if (a.folder != b.folder)
            return a.folder;
        const Keyed &first = ascending ? a : b;
        const Keyed &second = ascending ? b : a;
        return first.number != second.number ? first.number < second.number
                                             : first.name.compare(second.name) < 0;
    });
    std::transform(keyed.begin(), keyed.end(), nodes.begin(), [](const Keyed &key) { return key.node; });
}

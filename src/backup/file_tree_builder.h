#pragma once

#include "backup/file_catalogue.h"
#include "backup/slot_table.h"
#include "backup/virtual_path.h"

#include <string>
#include <vector>

/// Finds the folder of every record and makes up those that no record stands for. Node 0 is the root, node
/// n + 1 belongs to record n, and the made-up folders follow. A folder is found by its whole path through a
/// hash table, so that each record costs one or two look-ups however deep it lies.
class FileTreeBuilder
{
public:
    using Node = std::uint32_t;
    using Index = FileCatalogue::Index;
    static constexpr Node root = 0;
    static constexpr Node none = UINT32_MAX;

    /// A folder that some record's path runs through: the first `length` bytes of that record's virtual
    /// path. `record` is a directory of another domain that is the same folder in the tree.
    struct MadeUp
    {
        Index through;
        std::uint32_t length;
        Index record;
    };

    explicit FileTreeBuilder(const FileCatalogue &catalogue);

    void build();

    /// One entry a node; `none` for nodes that are not part of the tree: a directory that is the same folder
    /// as another domain's, and what stands for the root itself.
    std::vector<Node> parents;
    std::vector<MadeUp> madeUp;
    std::vector<QByteArray> prefixes; // by domain number

private:
    const FileCatalogue &m_catalogue;
    SlotTable m_folders;
    VirtualPath m_path; // of the record being attached
    std::string m_lastFolder;
    Node m_lastFolderNode = none;

    void attach(Index record);
    Node folderOf(Index record, qsizetype length);
    Node addFolder(Index record, qsizetype length);
    Index recordOfFolder(Index record, qsizetype length) const;
    void mergeKindless(Index record);
    void giveRecord(Node folder, Index record);

    bool stands(Node node, QByteArrayView path) const;
    Node find(QByteArrayView folder) const;
};

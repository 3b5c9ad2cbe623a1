#pragma once

#include "backup/extract.h"

#include <vector>

/// Which records an extraction takes, and where each of them lands. Kept at eight bytes a record, since it
/// may be all of them.
class ExtractPlan
{
public:
    using Index = FileCatalogue::Index;

    struct Item
    {
        Index record;
        std::uint32_t root;
    };

    explicit ExtractPlan(const BackupManifest &backup);

    /// False when the backup lists nothing there.
    bool add(const ExtractRequest &request);
    void add(FileTree::Node node);
    /// A single file under a name of the caller's.
    void add(const NamedExtract &file);

    const std::vector<Item> &items() const { return m_items; }
    /// Relative to the target, as the backup spells it; empty for what is the target itself.
    QByteArray landing(const Item &item) const;

private:
    /// What was asked for: its records land under `base` with what stands behind the first `cut` bytes of
    /// their paths.
    struct Root
    {
        QByteArray base;
        qsizetype cut;
        bool isVirtual; // the paths are those of the tree
    };

    const BackupManifest &m_backup;
    const FileCatalogue &m_catalogue;
    std::vector<Item> m_items;
    std::vector<Root> m_roots;
    QHash<QByteArray, std::vector<Index>> m_byPath; // of each domain asked for, sorted

    std::uint32_t addRoot(QByteArrayView path, bool isVirtual);
    const std::vector<Index> &sorted(const QByteArray &domain);
};

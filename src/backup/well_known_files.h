#pragma once

#include "backup/backup_manifest.h"

#include <array>
#include <mutex>
#include <vector>

/// Picks out of a catalogue the files that data readers ask for by kind. Looking at a record costs a few
/// comparisons of bytes; the keys of a group are made when somebody asks for it.
class WellKnownFiles
{
public:
    using Index = FileCatalogue::Index;

    /// `catalogue` must stay where it is while this lives.
    explicit WellKnownFiles(const FileCatalogue &catalogue);

    Index file(WellKnown kind) const { return m_files[static_cast<std::size_t>(kind)]; }
    /// May be called from several threads.
    const QHash<QByteArray, Index> &group(WellKnownGroup group) const;
    std::size_t memoryBytes() const;

private:
    static constexpr auto fileCount = static_cast<std::size_t>(WellKnown::Count);
    static constexpr auto groupCount = static_cast<std::size_t>(WellKnownGroup::Count);

    struct Group
    {
        std::vector<Index> members;
        mutable std::once_flag keysMade;
        mutable QHash<QByteArray, Index> byKey;
    };

    const FileCatalogue &m_catalogue;
    std::array<Index, fileCount> m_files;
    std::array<Group, groupCount> m_groups;

    void considerFiles();
    void considerGroups();
};

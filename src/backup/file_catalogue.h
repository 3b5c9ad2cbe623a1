#pragma once

#include "backup/file_record.h"

#include <QByteArrayView>

#include <cstdint>
#include <memory>

/// Every record of a backup, kept compactly (a catalogue of a million rows is normal) and found by its file
/// id. Filled once, then read by any number of threads.
class FileCatalogue
{
public:
    using Index = std::uint32_t;
    static constexpr Index none = UINT32_MAX;

    FileCatalogue();
    FileCatalogue(FileCatalogue &&) noexcept;
    FileCatalogue &operator=(FileCatalogue &&) noexcept;
    ~FileCatalogue();

    /// Adds a record; a later one with the same file id replaces the earlier. Views given out before are no
    /// longer valid. Throws Error when there are more names than the catalogue can hold.
    Index insert(const FileRecord &record);
    /// For a record whose kind only the others tell.
    void setMode(Index index, std::uint16_t mode);
    /// Gives back what growing left over. Call once after the last insert.
    void squeeze();

    Index size() const;
    Index find(QByteArrayView domain, QByteArrayView relativePath) const;
    /// By the 40 hexadecimal digits of a file id.
    Index findById(QByteArrayView fileId) const;

    FileRecord record(Index index) const;
    /// 40 lower-case hexadecimal digits.
    QByteArray fileId(Index index) const;
    QByteArrayView domain(Index index) const;
    QByteArrayView relativePath(Index index) const;
    QByteArrayView encryptionKey(Index index) const;
    std::uint16_t mode(Index index) const;
    std::uint64_t sizeBytes(Index index) const;
    std::uint32_t lastModified(Index index) const;
    std::uint8_t protectionClass(Index index) const;
    bool isDirectory(Index index) const { return (mode(index) & modeTypeMask) == modeDirectory; }
    bool isLink(Index index) const { return (mode(index) & modeTypeMask) == modeLink; }
    /// Domains are numbered from 0 in the order in which they came.
    std::uint32_t domainNumber(Index index) const;
    std::uint32_t domainCount() const;
    QByteArrayView domainName(std::uint32_t number) const;
    /// Bytes of memory held.
    std::size_t memoryBytes() const;

private:
    struct Data;
    std::unique_ptr<Data> d;
};

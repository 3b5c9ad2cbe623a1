#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>

#include <cstdint>

/// One catalogued file, directory or link of a backup, the same for both layouts. Texts are UTF-8 bytes; an
/// absent text is empty. Times are Unix seconds.
struct FileRecord
{
    QByteArray domain;
    QByteArray relativePath; // "/"-separated, no leading "/"
    QByteArray target;       // of a symbolic link
    QByteArray digest;
    QByteArray encryptionKey; // 4 bytes of prefix, then the wrapped key; empty when the file has none
    std::uint16_t mode = 0;
    std::uint64_t inode = 0;
    std::uint32_t userId = 0;
    std::uint32_t groupId = 0;
    std::uint32_t lastModified = 0;
    std::uint32_t lastStatusChange = 0;
    std::uint32_t birth = 0;
    std::uint64_t sizeBytes = 0; // what the device said; the stored content may differ
    std::uint8_t protectionClass = 0;
    QList<QPair<QByteArray, QByteArray>> properties; // older layout only

    bool operator==(const FileRecord &) const = default;
};

inline constexpr std::uint16_t modeTypeMask = 0xF000;
inline constexpr std::uint16_t modeDirectory = 0x4000;
inline constexpr std::uint16_t modeRegular = 0x8000;
inline constexpr std::uint16_t modeLink = 0xA000;

/// A file's name in the backup: SHA-1 of domain "-" relative path, as 20 bytes.
QByteArray fileIdDigest(QByteArrayView domain, QByteArrayView relativePath);
/// The same as 40 lower-case hexadecimal digits.
QByteArray fileId(QByteArrayView domain, QByteArrayView relativePath);

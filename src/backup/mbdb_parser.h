#pragma once

#include "backup/file_record.h"

#include <functional>

/// Manifest.mbdb, the file catalogue of the older layout.
class MBDBParser
{
public:
    /// Calls `sink` with every record in file order, with those that name no domain too. Throws Error when the file
    /// cannot be opened or ends inside a record.
    static void read(const QString &path, const std::function<void(FileRecord &&)> &sink);
    /// The same from bytes in memory.
    static void readBytes(QByteArrayView bytes, const std::function<void(FileRecord &&)> &sink);
    static QByteArray serialise(const QList<FileRecord> &records);

    /// AES-CBC with the given key (16 bytes for descriptors) and the fixed vector 0..15; PKCS#7-like padding.
    /// The texts of the errors are "MBDBParser::decryptFileDesc, size % 16 != 0." and
    /// "MBDBParser::decryptFileDesc, aes_crypt_cbc failed.".
    static QByteArray decryptFileDesc(QByteArrayView cipher, const QByteArray &key);
    static QByteArray encryptFileDesc(QByteArrayView plain, const QByteArray &key);
};

#pragma once

#include <QByteArray>
#include <QString>

#include <utility>
#include <vector>

namespace sample {

/// One row of a catalogue, the same for both layouts. An empty byte array is an absent one.
struct CatalogueRecord
{
    enum Kind { Unmarked = 0, File = 1, Folder = 2, Link = 4 }; // Unmarked: a file as well

    Kind kind = File;
    QString domain;
    QString relativePath;
    QString target;
    QByteArray digest;
    QByteArray encryptionKey; // class as 4 bytes, little-endian, then the wrapped key
    int mode = 0;
    qint64 inode = 0;
    int userId = 501;
    int groupId = 501;
    qint64 modified = 0; // Unix seconds, like the two below
    qint64 statusChanged = 0;
    qint64 born = 0;
    qint64 size = 0;
    int protectionClass = 0;
    QByteArray extendedAttributes;                             // modern layout
    std::vector<std::pair<QByteArray, QByteArray>> properties; // older layout

    /// Lower-case hexadecimal SHA-1 of domain, "-", relative path.
    QString fileId() const;
};

/// Where records go to, in either layout. finish() is called once, after the last record.
class CatalogueWriter
{
public:
    virtual ~CatalogueWriter() = default;
    virtual void add(const CatalogueRecord &record) = 0;
    virtual void finish() = 0;
};

} // namespace sample

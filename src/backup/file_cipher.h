#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <cstdint>
#include <functional>

/// Told after every chunk: size of the source, bytes done so far. May throw Cancelled to stop.
using CopyProgress = std::function<void(std::uint64_t totalBytes, std::uint64_t doneBytes)>;

/// What to do when the last byte of the decrypted content is no padding length.
enum class Padding {
    Required,     // an error
    KeepIfBroken, // all is kept, but for a part of a block that no cipher gives: some backups hold content that
                  // was captured in the middle of a write, and a file that was cut off is read to its end
};

/// How a file comes to its place.
enum class Placing {
    Renamed, // written beside it: what stood there stays until the new file is whole
    InPlace, // written into the file that the caller has made there, which thereby stays the same one
};

/// What a copy is made of. A file of a folder of unknown origin is named by the folder and its path from there: no
/// link in it is followed, and nothing but a regular file is read.
struct CopySource
{
    CopySource(const QString &file) : path(file) {}
    CopySource(const QString &ofFolder, const QString &file)
        : path(ofFolder + QLatin1Char('/') + file), folder(ofFolder), name(file)
    {
    }

    QString path;
    QString folder{}; // empty for any file
    QString name{};
};

/// Where a copy goes.
struct Destination
{
    Destination(const QString &place, std::uint32_t time = 0, Placing way = Placing::Renamed)
        : path(place), unixSeconds(time), placing(way)
    {
    }

    QString path;
    std::uint32_t unixSeconds; // the file has this time from the moment it is in its place; 0 is now
    Placing placing;
};

/// Copies a file. Creates the destination's folder when missing. Throws Error("can not open %1. %2"),
/// Error("can not create %1. %2") or Error("can not write %1. %2"); a destination that is not whole is
/// removed.
void copyFile(const CopySource &source, const Destination &destination, const CopyProgress &progress = {});

/// AES-256-CBC with a zero initialisation vector, streaming; the padding is dropped. Throws as copyFile does,
/// and for content that is no whole number of blocks or has no valid padding. An empty source gives an empty
/// destination. A destination that is not whole is removed.
void decryptFile(const QByteArray &key, const CopySource &source, const Destination &destination,
                 const CopyProgress &progress = {}, Padding padding = Padding::Required);

/// The inverse of decryptFile.
void encryptFile(const QByteArray &key, const QString &source, const QString &destination);

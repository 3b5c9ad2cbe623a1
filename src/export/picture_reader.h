#pragma once

#include <QImage>
#include <QString>

#include <memory>

class HeifPicture;

/// A picture file of unknown origin: JPEG, PNG, GIF, BMP, WebP, HEIC or AVIF, told by its content and never
/// by its name. What the file claims of itself is checked before anything is decoded, so that a file of a few
/// kilobytes cannot exhaust the memory. Two threads need a reader each.
class PictureReader
{
public:
    /// More pixels than any camera takes are refused.
    static constexpr qint64 mostPixels = 100'000'000;

    explicit PictureReader(const QString &path);
    ~PictureReader();
    PictureReader(const PictureReader &) = delete;
    PictureReader &operator=(const PictureReader &) = delete;

    /// "jpeg", "png", "gif", "bmp", "webp", or "heif" for HEIC and AVIF. Empty when the file is no picture
    /// that can be read, or one of too many pixels.
    const QByteArray &format() const { return m_format; }
    /// Upright, as it is to be looked at, in pixels. Empty when format() is.
    QSize size() const { return m_size; }

    /// The picture, upright, in its own size or scaled to `size`, which takes less memory and time than
    /// scaling afterwards when it is smaller. Null when the content turns out to be damaged.
    QImage read(QSize size = {});

private:
    QString m_path;
    QByteArray m_format;
    QSize m_size;
    bool m_turned = false; // stored lying on its side
    std::unique_ptr<HeifPicture> m_heif;
};

/// The picture in `path`, upright, scaled down to fit into `bounds` when it is larger. Null when the file is
/// no picture.
QImage readPictureWithin(const QString &path, QSize bounds);

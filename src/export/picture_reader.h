#pragma once

#include "export/picture_fit.h"

#include <QByteArray>
#include <QImage>
#include <QString>

/// A picture of unknown origin that was read: out of a backup, a message, a card, a note.
struct ReadPicture
{
    /// "jpeg", "png", "gif", "bmp", or "heif" for HEIC and AVIF: what telephones write, told by the content
    /// and never by a name. Empty for anything else.
    QByteArray format;
    /// Upright, as it is to be looked at. Null where the format is empty, and where the picture is damaged or
    /// takes more to decode than any camera's.
    QImage image;

    bool isBad() const { return !format.isEmpty() && image.isNull(); }
};

/// The one way to a picture that is not the program's own. Takes at most about a gigabyte and twenty seconds,
/// whatever the bytes are. Any number of threads may call these.
ReadPicture readPicture(const QByteArray &bytes, const PictureFit &fit = {});
/// The same for a file, which is not read when it is larger than pictures are, or no file but a pipe or the
/// like.
ReadPicture readPictureFile(const QString &path, const PictureFit &fit = {});

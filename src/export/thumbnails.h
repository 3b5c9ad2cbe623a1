#pragma once

#include "export/picture_reader.h"

/// A small picture that stands for a file.
struct SmallPicture
{
    QImage image;       // null when there is none
    QByteArray format;  // to keep it in
    bool isBad = false; // there is a picture in the file, and it cannot be shown

    /// As a file of that format; empty when there is none.
    QByteArray encoded() const;
};

/// Of an image file, at most 120 pixels wide and high: a JPEG for a JPEG or HEIC, a PNG for a PNG; other
/// formats have none.
SmallPicture thumbnailOf(const QString &imagePath);

/// The picture that a vCard file carries, at most 200 pixels wide and high.
SmallPicture vCardPictureOf(const QString &cardPath);

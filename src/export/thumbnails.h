#pragma once

#include <QImage>
#include <QString>

#include <optional>

/// The small picture of an image file, at most 120 pixels wide and high, kept in the system's temporary
/// folder between runs under the MD5 of the path, readable by its owner alone; made anew when the image's
/// time is another. A JPEG for a JPEG or HEIC, a PNG for a PNG; other formats have none, nor has a file that
/// PictureReader refuses.
std::optional<QString> thumbnailOf(const QString &imagePath);

/// The same picture without keeping it, for a file that is gone soon. Null when there is none.
QImage thumbnailImage(const QString &imagePath);

/// The picture that a vCard file carries, as a file beside the thumbnails. Nothing when it carries none.
std::optional<QString> vCardPictureOf(const QString &cardPath);

/// The same picture without keeping it, at most 200 pixels wide and high. Null when there is none.
QImage vCardImage(const QString &cardPath);

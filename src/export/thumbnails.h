#pragma once

#include <QString>

#include <optional>

/// The small picture of an image file, at most 120 pixels wide and high, kept in the system's temporary
/// folder between runs under the MD5 of the path, readable by its owner alone; made anew when the image's
/// time is another. Nothing when the file is no picture that can be read, or is one of more pixels than any
/// camera takes.
std::optional<QString> thumbnailOf(const QString &imagePath);

/// The picture that a vCard file carries, as a file beside the thumbnails. Nothing when it carries none.
std::optional<QString> vCardPictureOf(const QString &cardPath);

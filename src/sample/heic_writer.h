#pragma once

#include <QByteArray>
#include <QImage>

namespace sample {

/// How a HEIC picture is stored.
struct HeicForm
{
    int exifOrientation = 1; // 6: to be turned a quarter clockwise before it is looked at
    int smallerSide = 0;     // longer side of a smaller version in the same file; 0 for none
};

/// A picture as iPhones write it. Throws Error when the library that encodes it has no encoder.
QByteArray heicOf(const QImage &image, const HeicForm &form = {});

} // namespace sample

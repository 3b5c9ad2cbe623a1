#pragma once

#include <QByteArray>
#include <QImage>

/// A picture as one program hands it to another: its size, its colours' profile, four bytes a pixel.
QByteArray rawOf(const QImage &image);
/// Null when the bytes are none.
QImage imageOfRaw(const QByteArray &raw);

#pragma once

#include "export/picture_fit.h"

#include <QByteArray>
#include <QImage>

/// The main picture of an HEIF file: HEIC, which iPhones write, or AVIF, upright. It is decoded by a program
/// of its own, "quillbarrow-heif", that stands beside this one, under limits on memory and time: what such a
/// file is put together from cannot be told before. Null when the file is damaged, when it takes more, or
/// when that program is not there.
QImage readHeif(const QByteArray &bytes, const PictureFit &fit);

#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QSize>

/// More pixels than any camera takes are refused, and so is a longer side.
inline constexpr qint64 mostPicturePixels = 100'000'000;
inline constexpr int longestPictureSide = 65535;

bool isPictureSize(QSize size);

/// A picture file of unknown origin without all that a decoder need not see.
///
/// A file of a few kilobytes can make a decoder use gigabytes or minutes: compressed texts beside the pixels,
/// passes over the pixels by the thousand, a claim of billions of pixels. What is kept here is bounded in all
/// of these, and decoding it costs no more than its size says.
struct FilteredPicture
{
    /// "jpeg", "png", "gif", "bmp" or "heif", told by the first bytes; empty for anything else.
    QByteArray format;
    QSize size; // as stored, before it is turned; of "heif" it is not told
    /// What to decode; empty when the file is damaged in its structure or goes beyond the bounds.
    QByteArray bytes;
};

FilteredPicture filteredPicture(QByteArrayView file);

#pragma once

#include <QSize>

#include <algorithm>

/// How large a picture is wanted.
struct PictureFit
{
    enum Kind {
        AsStored,
        Within,   // as large as fits into the bounds; smaller ones stay as they are
        Filling,  // as large as fits into the bounds; smaller ones grow
        Covering, // as small as covers the bounds in both directions
    };
    Kind kind = AsStored;
    QSize bounds = {};

    QSize sizeOf(QSize picture) const
    {
        // A line would have to grow without measure to cover a square.
        constexpr int slimmest = 30;
        const bool isLine = std::max(picture.width(), picture.height()) / slimmest >
                            std::min(picture.width(), picture.height());
        const bool isInside = picture.width() <= bounds.width() && picture.height() <= bounds.height();
        if (kind == AsStored || (kind == Within && isInside))
            return picture;
        const auto mode = kind == Covering && !isLine ? Qt::KeepAspectRatioByExpanding : Qt::KeepAspectRatio;
        return picture.scaled(bounds, mode).expandedTo({1, 1});
    }
};

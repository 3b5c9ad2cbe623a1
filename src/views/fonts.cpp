#include "views/fonts.h"

QFont titleFont(const QFont &base)
{
    constexpr double titleScale = 1.4;
    QFont font = strongFont(base);
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * titleScale);
    else
        font.setPixelSize(static_cast<int>(font.pixelSize() * titleScale));
    return font;
}

QFont strongFont(const QFont &base)
{
    QFont font = base;
    font.setWeight(QFont::DemiBold);
    return font;
}

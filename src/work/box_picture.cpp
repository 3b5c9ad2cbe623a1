#include "work/box_picture.h"

#include <QFont>
#include <QPainter>

namespace {
constexpr int side = 40;
const QColor calm(0x2b, 0x7a, 0x78);
const QColor alert(0xa8, 0x5a, 0x00);

QColor colourOf(BoxIcon icon)
{
    return icon == BoxIcon::Information || icon == BoxIcon::Question ? calm : alert;
}

QString signOf(BoxIcon icon)
{
    switch (icon) {
    case BoxIcon::Information:
        return QStringLiteral("i");
    case BoxIcon::Question:
        return QStringLiteral("?");
    case BoxIcon::Warning:
        return QStringLiteral("!");
    case BoxIcon::Critical:
        return QStringLiteral("\u00d7");
    }
    return {};
}
} // namespace

QPixmap boxPicture(BoxIcon icon, qreal devicePixelRatio)
{
    QPixmap picture(QSize(side, side) * devicePixelRatio);
    picture.setDevicePixelRatio(devicePixelRatio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colourOf(icon));
    painter.drawEllipse(QRectF(1, 1, side - 2, side - 2));
    QFont font;
    font.setPixelSize(side * 6 / 10);
    font.setWeight(QFont::DemiBold);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QRectF(0, 0, side, side), Qt::AlignCenter, signOf(icon));
    return picture;
}

#include "views/icons.h"

#include <QPainter>
#include <QPixmap>

namespace {
QPixmap whitened(QPixmap picture)
{
    QPainter painter(&picture);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(QRectF(QPointF(), picture.deviceIndependentSize()), Qt::white);
    return picture;
}
} // namespace

QIcon listIcon(const char *name)
{
    QIcon icon;
    for (const char *variant : {"", "@2x"}) {
        QPixmap picture;
        if (!picture.load(QStringLiteral(":/res/%1%2.png").arg(QLatin1String(name), QLatin1String(variant))))
            continue;
        icon.addPixmap(picture, QIcon::Normal);
        icon.addPixmap(whitened(picture), QIcon::Selected);
    }
    return icon;
}

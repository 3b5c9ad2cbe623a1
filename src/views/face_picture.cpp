#include "views/face_picture.h"

#include "export/picture_reader.h"
#include "messages/msg_records.h"
#include "views/icons.h"

#include <QFont>
#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>

namespace {
const QColor discColour(0xcf, 0xe0, 0xde);
const QColor signColour(0x1f, 0x66, 0x64);

QString signOf(const _MsgChat &chat)
{
    if (chat.isGroup())
        return QString::number(chat.handles.size());
    const QString name = chatName(chat, Addresses::Without).trimmed();
    return !name.isEmpty() && name.at(0).isLetter() ? name.left(1).toUpper() : QString();
}

void paintSign(QPainter &painter, const QString &sign, int side)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(discColour);
    painter.drawEllipse(0, 0, side, side);
    if (sign.isEmpty()) {
        const QPixmap person = listIcon("tree_contacts").pixmap(side / 2);
        painter.drawPixmap(QRect(side / 4, side / 4, side / 2, side / 2), person);
        return;
    }
    QFont font = QGuiApplication::font();
    font.setPixelSize(side * 9 / 20);
    font.setWeight(QFont::DemiBold);
    painter.setFont(font);
    painter.setPen(signColour);
    painter.drawText(QRect(0, 0, side, side), Qt::AlignCenter, sign);
}
} // namespace

QImage readSquare(const QByteArray &bytes, int side)
{
    if (bytes.isEmpty())
        return {};
    const QImage image = readPicture(bytes, {PictureFit::Covering, {side, side}}).image;
    return image.isNull() ? image
                          : image.copy((image.width() - side) / 2, (image.height() - side) / 2, side, side);
}

QPixmap facePicture(const _MsgChat &chat, int side, qreal ratio)
{
    const int pixels = qRound(side * ratio);
    QPixmap picture(pixels, pixels);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const QImage photo =
        chat.handles.size() == 1 ? readSquare(chat.handles.front()->_photo, pixels) : QImage();
    if (photo.isNull()) {
        paintSign(painter, signOf(chat), pixels);
    } else {
        QPainterPath disc;
        disc.addEllipse(0, 0, pixels, pixels);
        painter.setClipPath(disc);
        painter.drawImage(0, 0, photo);
    }
    painter.end();
    picture.setDevicePixelRatio(ratio);
    return picture;
}

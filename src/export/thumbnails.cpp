#include "export/thumbnails.h"

#include "export/vcard_photo.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>

namespace {
constexpr QSize thumbnailBounds(120, 120);
constexpr QSize cardPictureBounds(200, 200);
constexpr qint64 largestCardBytes = 16 * 1024 * 1024;

/// Few programs show what iPhones write; nothing is to be seen through in a JPEG.
QByteArray commonFormat(const QImage &image)
{
    return image.hasAlphaChannel() ? "png" : "jpeg";
}
} // namespace

QByteArray SmallPicture::encoded() const
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!image.isNull())
        image.save(&buffer, format.constData());
    return bytes;
}

SmallPicture thumbnailOf(const QString &imagePath)
{
    const ReadPicture picture = readPictureFile(imagePath, {PictureFit::Filling, thumbnailBounds});
    if (picture.format == "heif")
        return {picture.image, commonFormat(picture.image), picture.isBad()};
    if (picture.format == "jpeg" || picture.format == "png")
        return {picture.image, picture.format, picture.isBad()};
    return {};
}

SmallPicture vCardPictureOf(const QString &cardPath)
{
    QFile card(cardPath);
    if (!QFileInfo(cardPath).isFile() || !card.open(QIODevice::ReadOnly))
        return {};
    const QByteArray photo = vCardPhoto(card.read(largestCardBytes));
    const ReadPicture picture = readPicture(photo, {PictureFit::Within, cardPictureBounds});
    return {picture.image, commonFormat(picture.image), picture.isBad()};
}

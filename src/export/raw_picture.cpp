#include "export/raw_picture.h"

#include <QColorSpace>
#include <QDataStream>
#include <QIODevice>

#include <cstring>

namespace {
constexpr quint32 mark = 0x51425031;
constexpr int bytesPerPixel = 4;
} // namespace

QByteArray rawOf(const QImage &image)
{
    const bool hasAlpha = image.hasAlphaChannel();
    const QImage pixels = image.convertToFormat(hasAlpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    QByteArray raw;
    QDataStream out(&raw, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_6_4);
    out << mark << pixels.width() << pixels.height() << hasAlpha << image.colorSpace().iccProfile();
    raw.append(reinterpret_cast<const char *>(pixels.constBits()), pixels.sizeInBytes());
    return raw;
}

QImage imageOfRaw(const QByteArray &raw)
{
    QDataStream in(raw);
    in.setVersion(QDataStream::Qt_6_4);
    quint32 found = 0;
    int width = 0;
    int height = 0;
    bool hasAlpha = false;
    QByteArray profile;
    in >> found >> width >> height >> hasAlpha >> profile;
    const qint64 at = in.device()->pos();
    if (in.status() != QDataStream::Ok || found != mark || width <= 0 || height <= 0 ||
        raw.size() - at != qint64{width} * height * bytesPerPixel)
        return {};
    QImage image(width, height, hasAlpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    if (image.isNull())
        return {};
    std::memcpy(image.bits(), raw.constData() + at, static_cast<std::size_t>(raw.size() - at));
    image.setColorSpace(QColorSpace::fromIccProfile(profile));
    return image;
}

#include "export/picture_reader.h"

#include "export/heif_picture.h"

#include <QImageReader>

#include <algorithm>

namespace {
// Formats of which Qt has a reader that does not go beyond the picture itself: an SVG may name other files.
constexpr const char *formats[] = {"jpeg", "png", "gif", "bmp", "webp"};

bool isAllowed(const QByteArray &format)
{
    return std::find(std::begin(formats), std::end(formats), format) != std::end(formats);
}

bool isTooLarge(QSize size)
{
    return size.isEmpty() || qint64(size.width()) * size.height() > PictureReader::mostPixels;
}

void decideFromContent(QImageReader &reader)
{
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
}
} // namespace

PictureReader::PictureReader(const QString &path) : m_path(path), m_heif(HeifPicture::open(path))
{
    if (m_heif) {
        m_size = m_heif->size();
        m_format = "heif";
    } else {
        QImageReader reader(path);
        decideFromContent(reader);
        m_format = reader.format();
        if (!isAllowed(m_format)) {
            m_format.clear();
            return;
        }
        m_turned = reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
        m_size = m_turned ? reader.size().transposed() : reader.size();
    }
    if (isTooLarge(m_size)) {
        m_format.clear();
        m_size = {};
    }
}

PictureReader::~PictureReader() = default;

QImage PictureReader::read(QSize size)
{
    if (m_format.isEmpty())
        return {};
    if (m_heif)
        return m_heif->read(size.isEmpty() ? m_size : size);
    QImageReader reader(m_path);
    decideFromContent(reader);
    if (!size.isEmpty())
        reader.setScaledSize(m_turned ? size.transposed() : size);
    return reader.read();
}

QImage readPictureWithin(const QString &path, QSize bounds)
{
    PictureReader reader(path);
    const QSize size = reader.size();
    if (size.width() <= bounds.width() && size.height() <= bounds.height())
        return reader.read();
    return reader.read(size.scaled(bounds, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
}

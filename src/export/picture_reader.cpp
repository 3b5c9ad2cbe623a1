#include "export/picture_reader.h"

#include "export/heif_process.h"
#include "export/picture_filter.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QMutex>

namespace {
constexpr qint64 largestFileBytes = 128 << 20;
constexpr qint64 headBytes = 64;      // tell the format
constexpr int megabytesOfImage = 512; // what the most pixels take, with room
constexpr qint64 manyPixels = 16'000'000;

/// Threads that decode at the same time share the memory of one: large pictures wait for each other.
class Turn
{
public:
    explicit Turn(QSize size) : m_isLarge(qint64{size.width()} * size.height() > manyPixels)
    {
        if (m_isLarge)
            mutex().lock();
    }
    ~Turn()
    {
        if (m_isLarge)
            mutex().unlock();
    }
    Turn(const Turn &) = delete;
    Turn &operator=(const Turn &) = delete;

private:
    bool m_isLarge;

    static QMutex &mutex()
    {
        static QMutex mutex;
        return mutex;
    }
};

QImage decoded(FilteredPicture &picture, const PictureFit &fit)
{
    static const bool limited = (QImageReader::setAllocationLimit(megabytesOfImage), true);
    Q_UNUSED(limited);
    const Turn turn(picture.size);
    QBuffer buffer(&picture.bytes);
    QImageReader reader(&buffer, picture.format);
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(true);
    const bool isTurned = reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
    const QSize upright = isTurned ? picture.size.transposed() : picture.size;
    if (const QSize wanted = fit.sizeOf(upright); wanted != upright)
        reader.setScaledSize(isTurned ? wanted.transposed() : wanted);
    return reader.read();
}
} // namespace

ReadPicture readPicture(const QByteArray &bytes, const PictureFit &fit)
{
    FilteredPicture picture = filteredPicture(bytes);
    if (picture.bytes.isEmpty())
        return {picture.format, {}};
    return {picture.format, picture.format == "heif" ? readHeif(picture.bytes, fit) : decoded(picture, fit)};
}

ReadPicture readPictureFile(const QString &path, const PictureFit &fit)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return {};
    if (file.size() > largestFileBytes)
        return {filteredPicture(file.read(headBytes)).format, {}};
    return readPicture(file.readAll(), fit);
}

#include "export/thumbnails.h"

#include "export/picture_reader.h"
#include "export/vcard_photo.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageWriter>
#include <QTemporaryFile>

#include <filesystem>
#include <functional>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace {
constexpr int thumbnailSide = 120;
constexpr QSize cardPictureBounds(200, 200);
constexpr qint64 largestCardBytes = 16 * 1024 * 1024;

bool isMine(const QFileInfo &file)
{
#ifdef Q_OS_UNIX
    // The temporary folder is open to everybody: what somebody else left there under the name is not used.
    return file.ownerId() == geteuid();
#else
    Q_UNUSED(file);
    return true;
#endif
}

QString cachePathOf(const QString &sourcePath, const char *suffix)
{
    const QByteArray hash = QCryptographicHash::hash(sourcePath.toUtf8(), QCryptographicHash::Md5).toHex();
    return QDir::temp().filePath(QString::fromLatin1(hash) + QLatin1String(suffix));
}

/// The cached file when it was made from the source as it is now, else what `write` makes.
std::optional<QString> cached(const QString &sourcePath, const char *suffix,
                              const std::function<bool(QIODevice &)> &write)
{
    const QDateTime time = QFileInfo(sourcePath).lastModified();
    const QString path = cachePathOf(sourcePath, suffix);
    const QFileInfo there(path);
    if (there.isFile() && !there.isSymLink() && isMine(there) &&
        there.lastModified().toSecsSinceEpoch() == time.toSecsSinceEpoch())
        return path;

    // Readable by its owner alone from the start.
    QTemporaryFile file(QDir::temp().filePath(QStringLiteral("XXXXXX.part")));
    if (!file.open() || !write(file) || !file.flush())
        return std::nullopt;
    file.setFileTime(time, QFileDevice::FileModificationTime);
    file.close();
    std::error_code error;
    std::filesystem::rename(std::filesystem::path(file.fileName().toStdU16String()),
                            std::filesystem::path(path.toStdU16String()), error);
    if (error)
        return std::nullopt;
    file.setAutoRemove(false);
    return path;
}

QByteArray photoIn(const QString &cardPath)
{
    QFile card(cardPath);
    return card.open(QIODevice::ReadOnly) ? vCardPhoto(card.read(largestCardBytes)) : QByteArray();
}

struct Thumbnail
{
    QImage image;
    QByteArray format; // to keep it in
};

Thumbnail thumbnailIn(const QString &imagePath)
{
    PictureReader reader(imagePath);
    const bool isHeif = reader.format() == "heif";
    if (!isHeif && reader.format() != "jpeg" && reader.format() != "png")
        return {};
    const QSize small = reader.size().scaled(thumbnailSide, thumbnailSide, Qt::KeepAspectRatio);
    const QImage image = reader.read(small.expandedTo(QSize(1, 1)));
    // Few programs show what iPhones write.
    return {image, isHeif ? QByteArray(image.hasAlphaChannel() ? "png" : "jpeg") : reader.format()};
}
} // namespace

std::optional<QString> thumbnailOf(const QString &imagePath)
{
    return cached(imagePath, ".thumb", [&](QIODevice &target) {
        const auto [image, format] = thumbnailIn(imagePath);
        return !image.isNull() && QImageWriter(&target, format).write(image);
    });
}

QImage thumbnailImage(const QString &imagePath)
{
    return thumbnailIn(imagePath).image;
}

std::optional<QString> vCardPictureOf(const QString &cardPath)
{
    return cached(cardPath, ".card", [&](QIODevice &target) {
        const QByteArray photo = photoIn(cardPath);
        return !photo.isEmpty() && target.write(photo) == photo.size();
    });
}

QImage vCardImage(const QString &cardPath)
{
    const QByteArray photo = photoIn(cardPath);
    if (photo.isEmpty())
        return {};
    // The reader of pictures reads files.
    QTemporaryFile file;
    if (!file.open() || file.write(photo) != photo.size() || !file.flush())
        return {};
    return readPictureWithin(file.fileName(), cardPictureBounds);
}

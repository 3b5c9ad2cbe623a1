#include "export/thumbnails.h"

#include "export/vcard_photo.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>
#include <QTemporaryFile>

#include <filesystem>
#include <functional>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace {
constexpr int thumbnailSide = 120;
// The largest cameras of telephones take 48 million pixels. A file of a few kilobytes may claim far more to
// exhaust the memory.
constexpr qint64 mostPixels = 100'000'000;
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

QImage readSmall(const QString &path, const QByteArray &format)
{
    QImageReader reader(path, format);
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(true);
    if (!reader.canRead())
        return {};
    const QSize size = reader.size();
    if (size.isEmpty() || qint64(size.width()) * size.height() > mostPixels)
        return {};
    const QSize small = size.width() >= size.height()
                            ? QSize(thumbnailSide, size.height() * thumbnailSide / size.width())
                            : QSize(size.width() * thumbnailSide / size.height(), thumbnailSide);
    reader.setScaledSize(small.expandedTo(QSize(1, 1)));
    return reader.read();
}
} // namespace

std::optional<QString> thumbnailOf(const QString &imagePath)
{
    return cached(imagePath, ".thumb", [&](QIODevice &target) {
        // What an iPhone writes by default since iOS 11 is neither, and has no thumbnail yet.
        for (const char *format : {"JPEG", "PNG"}) {
            const QImage image = readSmall(imagePath, format);
            if (!image.isNull())
                return QImageWriter(&target, format).write(image);
        }
        return false;
    });
}

std::optional<QString> vCardPictureOf(const QString &cardPath)
{
    return cached(cardPath, ".card", [&](QIODevice &target) {
        QFile card(cardPath);
        if (!card.open(QIODevice::ReadOnly))
            return false;
        const QByteArray photo = vCardPhoto(card.read(largestCardBytes));
        return !photo.isEmpty() && target.write(photo) == photo.size();
    });
}

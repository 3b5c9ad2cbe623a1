#include "work/thumbnail_maker.h"

#include "base/error.h"
#include "export/picture_reader.h"
#include "personal/media_items.h"
#include "work/video_frame.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {
// Larger than any picture in the grid; smaller ones are made from it.
constexpr int keptSide = 640;
// A stored picture smaller than this looks coarse on the screen when there is a better one.
constexpr int coarseSide = 100;
constexpr std::uint64_t largestVideoBytes = 512 << 20;
constexpr int jpegQuality = 85;

int longSide(const QImage &image)
{
    return std::max(image.width(), image.height());
}

QImage fitted(const QImage &image, int side)
{
    if (longSide(image) <= side)
        return image;
    return image.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

/// JPEG has no transparency, and a screenshot may.
QImage opaque(const QImage &image)
{
    return image.hasAlphaChannel() ? image.convertToFormat(QImage::Format_RGB32) : image;
}
} // namespace

ThumbnailMaker::ThumbnailMaker(OpenBackupPtr backup)
    : m_backup(std::move(backup)), m_scratch(backupUid(m_backup->info().folder))
{
}

QString ThumbnailMaker::cachePath(Index item)
{
    return QStringLiteral("%1/%2.jpg")
        .arg(m_scratch.inTemporaryFolder(),
             QString::fromLatin1(m_backup->manifest().catalogue().fileId(item)));
}

QImage ThumbnailMaker::make(Index item, int side, Progress &progress)
{
    try {
        const QString kept = cachePath(item);
        if (QFileInfo::exists(kept))
            return readPictureFile(kept, {PictureFit::Within, {side, side}}).image;
        const QImage large = makeLarge(item, progress);
        if (!large.isNull() && !opaque(large).save(kept, "JPEG", jpegQuality))
            QFile::remove(kept);
        return fitted(large, side);
    } catch (const Error &error) {
        qWarning("No thumbnail of %s: %s",
                 m_backup->manifest().catalogue().relativePath(item).toByteArray().constData(), error.what());
        return {};
    }
}

/// The first of the places that has a picture of good size, else the largest that was found.
QImage ThumbnailMaker::makeLarge(Index item, Progress &progress)
{
    QImage best;
    std::vector<Index> sources = storedThumbnails(item);
    sources.push_back(item);
    for (const Index source : sources) {
        progress.check();
        try {
            const QImage image = read(source, progress);
            if (longSide(image) > longSide(best))
                best = image;
        } catch (const Error &error) {
            qWarning("A picture cannot be fetched: %s", error.what());
        }
        if (longSide(best) >= coarseSide)
            break;
    }
    return best;
}

/// Newer systems keep several sizes below a folder named like the item; older ones one picture, found by the
/// item's base name. A counter that has run over gives two items one name, so the folder must be the same.
std::vector<ThumbnailMaker::Index> ThumbnailMaker::storedThumbnails(Index item) const
{
    const FileCatalogue &catalogue = m_backup->manifest().catalogue();
    const QByteArray path = catalogue.relativePath(item).toByteArray();
    std::vector<Index> found;
    const auto add = [&found](Index index) {
        if (index != FileCatalogue::none)
            found.push_back(index);
    };
    constexpr QByteArrayView media = "Media/";
    if (path.startsWith(media)) {
        for (const char *size : {"/5005.JPG", "/5003.JPG"})
            add(catalogue.find(catalogue.domain(item),
                               QByteArray("Media/PhotoData/Thumbnails/V2/" + path.mid(media.size()) + size)));
    }
    const QByteArrayList parts = path.split('/');
    if (parts.size() < 2)
        return found;
    const QByteArray base = parts.last().left(parts.last().indexOf('.'));
    const Index byName = m_backup->manifest()
                             .wellKnownGroup(WellKnownGroup::CameraRollThumbnail)
                             .value(base, FileCatalogue::none);
    if (byName != FileCatalogue::none &&
        catalogue.relativePath(byName).contains('/' + parts.at(parts.size() - 2)))
        add(byName);
    return found;
}

QImage ThumbnailMaker::read(Index file, Progress &progress)
{
    const BackupManifest &manifest = m_backup->manifest();
    const bool isVideo = isCameraVideo(manifest.catalogue().relativePath(file));
    if (manifest.isLocked(file) || (isVideo && manifest.catalogue().sizeBytes(file) > largestVideoBytes))
        return {};
    // Anything else than a file, such as a pipe, might never end.
    if (!QFileInfo(manifest.filePath(file)).isFile())
        return {};
    const QString copy = manifest.info().encrypted ? localCopy(file, progress) : manifest.filePath(file);
    const QImage image = isVideo ? firstFrameOf(copy, keptSide, progress)
                                 : readPictureFile(copy, {PictureFit::Within, {keptSide, keptSide}}).image;
    if (manifest.info().encrypted)
        QFile::remove(copy);
    return image;
}

QString ThumbnailMaker::localCopy(Index file, Progress &progress)
{
    const QString copy = m_scratch.inTemporaryFolder() + QStringLiteral("/decrypted");
    const BackupUse use(*m_backup, progress);
    m_backup->manifest().fetchFile(file, copy,
                                   [&progress](std::uint64_t, std::uint64_t) { progress.check(); });
    return copy;
}

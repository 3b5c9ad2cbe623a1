#include "sample/data_classes.h"
#include "sample/media_content.h"

namespace sample {

namespace {

constexpr const char *domain = "CameraRollDomain";

/// The small picture of an item, in the place where systems of its time keep it.
void putThumbnail(Making &making, const QString &folder, const QString &stem, const QString &ending, int age,
                  SeededGenerator &chance)
{
    QString path;
    if (making.generation.ios >= 8)
        path =
            QStringLiteral("Media/PhotoData/Thumbnails/V2/DCIM/%1/%2%3/5003.JPG").arg(folder, stem, ending);
    else if (age % 2)
        path = QStringLiteral("Media/PhotoData/MetaData/DCIM/%1/%2.JPG").arg(folder, stem);
    else
        path = QStringLiteral("Media/DCIM/.THMB/%1/%1___%2.THM").arg(folder, stem);
    making.container.put(making.place(domain, path, age), picture("JPEG", 75, 75, chance));
}

} // namespace

void addCameraRoll(Making &making)
{
    constexpr int items = 15;
    constexpr int damagedItem = 13;
    SeededGenerator chance = making.chance.fork("camera roll");
    SampleCounts &counts = making.summary.counts;
    for (int item = 1; item <= items; ++item) {
        const QString folder = item <= 9 ? QStringLiteral("100APPLE") : QStringLiteral("101APPLE");
        const QString stem = QStringLiteral("IMG_%1").arg(item, 4, 10, QLatin1Char('0'));
        const QString stemPath = QStringLiteral("Media/DCIM/%1/%2").arg(folder, stem);
        const auto put = [&](const char *ending, const QByteArray &content) {
            making.container.put(making.place(domain, stemPath + QLatin1String(ending), item), content);
        };
        QString ending = QStringLiteral(".JPG");
        if (item % 5 == 0) { // a picture of the screen
            ending = QStringLiteral(".PNG");
            put(".PNG", picture("PNG", 120, 213, chance));
            ++counts.photos;
        } else if (item % 5 == 4) {
            ending = QStringLiteral(".MOV");
            put(".MOV", movie(chance));
            ++counts.videos;
        } else if (item % 5 == 3 &&
                   making.generation.ios >= 11) { // a live photo: a still and a film of one stem
            ending = QStringLiteral(".HEIC");
            put(".HEIC", item == damagedItem ? heicHead(chance) : heicPicture(400, 300, chance));
            put(".MOV", movie(chance));
            ++counts.heicPhotos;
            ++counts.videos;
        } else {
            put(".JPG", picture("JPEG", 400, 300, chance));
            ++counts.photos;
        }
        putThumbnail(making, folder, stem, ending, item, chance);
    }
}

} // namespace sample

#include "sample/sample_maker.h"

#include "base/error.h"
#include "sample/manifest_writer.h"
#include "sample/message_content.h"
#include "sample/old_message_content.h"

#include <QFile>

#include <array>

using namespace sample;

namespace {

void refuseExisting(const QString &path)
{
    if (QFile::exists(path))
        throw Error(QStringLiteral("%1 exists already.").arg(path));
}

/// Paths as a large backup spreads them: most below a few applications, many in the camera roll and the
/// attachments.
class PathMaker
{
public:
    explicit PathMaker(SeededGenerator chance) : m_chance(chance) {}

    void fill(CatalogueRecord &record, int row)
    {
        const int kind = m_chance.below(10);
        if (kind < 3) {
            record.domain = QStringLiteral("CameraRollDomain");
            record.relativePath =
                QStringLiteral("Media/DCIM/%1APPLE/IMG_%2.HEIC").arg(100 + row / 10000).arg(row);
        } else if (kind < 5) {
            record.domain = QStringLiteral("MediaDomain");
            record.relativePath = QStringLiteral("Library/SMS/Attachments/%1/%2/%3/IMG_%4.jpeg")
                                      .arg(m_chance.below(256), 2, 16, QLatin1Char('0'))
                                      .arg(m_chance.below(16), 2, 10, QLatin1Char('0'))
                                      .arg(QString::fromLatin1(m_chance.uuid()))
                                      .arg(row);
        } else {
            record.domain =
                QStringLiteral("AppDomain-com.example.application%1").arg(m_chance.skewedBelow(400));
            record.relativePath =
                QStringLiteral("Library/Caches/folder %1/inner/%2.dat").arg(m_chance.below(50)).arg(row);
        }
    }

private:
    SeededGenerator m_chance;
};

} // namespace

void makeCatalogueOnly(const QString &path, int rows, quint64 seed)
{
    refuseExisting(path);
    ManifestWriter writer(path);
    SeededGenerator chance = SeededGenerator(seed).fork("catalogue");
    PathMaker paths(chance.fork("paths"));
    for (int row = 0; row < rows; ++row) {
        CatalogueRecord record;
        paths.fill(record, row);
        record.mode = 0100644;
        record.inode = 1000 + row;
        record.modified = record.statusChanged = record.born = 1700000000 - chance.below(100000000);
        record.size = chance.below(4000000);
        record.protectionClass = 3;
        if (row % 2 == 0)
            record.digest = chance.bytes(20);
        writer.add(record);
    }
    writer.finish();
}

SampleCounts makeMessageDatabase(const QString &path, int ios, int messages, int chats, quint64 seed)
{
    refuseExisting(path);
    if (ios < 6) {
        OldMessageDatabase database(path, generationFor(ios));
        OldMessageContent content(database, generationFor(ios), SeededGenerator(seed).fork("messages"));
        content.addShowcase();
        content.addBulk(messages, chats);
        database.finish();
        return content.counts();
    }
    MessageDatabase database(path, generationFor(ios), seed);
    MessageContent content(database, SeededGenerator(seed).fork("messages"));
    content.addShowcase();
    content.addBulk(messages, chats);
    database.finish();
    return content.counts();
}

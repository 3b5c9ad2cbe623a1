#include "backup/cache_folder.h"
#include "bench_table.h"
#include "resources/resources.h"
#include "sample/sample_maker.h"
#include "work/load_bk_thread.h"

#include <QTemporaryDir>

#include <cstdlib>

namespace {
constexpr int messages = 100000;
constexpr int pictures = 5000;
constexpr qsizetype pictureBytes = 20000;

enum class Copies { Private, Cached };

SourceFile picture(int number)
{
    return {QStringLiteral("MediaDomain"), QStringLiteral("Library/SMS/Attachments/p/%1.jpg").arg(number)};
}

OpenBackupPtr unlocked(const SampleOptions &options, Copies copies)
{
    auto backup = std::make_shared<OpenBackup>(options.folder);
    backup->manifest().loadInfo();
    if (copies == Copies::Cached)
        backup->manifest().attachCache();
    if (!options.password.isEmpty() && !backup->manifest().openEncrypted(options.password))
        std::abort();
    return backup;
}

void load(const SampleOptions &options, Copies copies)
{
    NoProgress nobody;
    if (loadBackup(*unlocked(options, copies), nobody).of(DataClass::Messages).value_or(0) < messages / 2)
        std::abort();
}

void lookAtPictures(const SampleOptions &options, Copies copies)
{
    const OpenBackupPtr backup = unlocked(options, copies);
    NoProgress nobody;
    backup->manifest().buildIndex(nobody);
    for (int i = 0; i < pictures; ++i)
        if (backup->manifest().fetchForViewing(picture(i)).isEmpty())
            std::abort();
}

void benchBackup(const QByteArray &kind, SampleOptions options)
{
    options.messages = messages;
    options.dpic = 2;
    options.iter = 2;
    for (int i = 0; i < pictures; ++i)
        options.extraRows.push_back(
            {picture(i).domain, picture(i).relativePath, QByteArray(pictureBytes, char(i))});
    makeSample(options);
    const QByteArray first = "open a backup for the first time, against no cache, " + kind;
    bench::compare(
        first.constData(), 1.1,
        [&] {
            clearCaches();
            load(options, Copies::Cached);
        },
        [&] { load(options, Copies::Private); });
    const QByteArray again = "open a backup again, against no cache, " + kind;
    bench::compare(
        again.constData(), 1, [&] { load(options, Copies::Cached); },
        [&] { load(options, Copies::Private); });
    lookAtPictures(options, Copies::Cached);
    const QByteArray looking = "look at 5,000 pictures again, against no cache, " + kind;
    bench::compare(
        looking.constData(), 1, [&] { lookAtPictures(options, Copies::Cached); },
        [&] { lookAtPictures(options, Copies::Private); });
}
} // namespace

int main()
{
    const QTemporaryDir folder;
    qputenv("HOME", folder.path().toUtf8());
    initResources();
    SampleOptions options;
    options.folder = folder.filePath(QStringLiteral("plain"));
    benchBackup("plain", options);
    options.folder = folder.filePath(QStringLiteral("encrypted"));
    options.password = QStringLiteral("pw");
    benchBackup("encrypted", options);
}

#include "sample/sample_maker.h"

#include "base/error.h"
#include "sample/backup_container.h"
#include "sample/cipher.h"
#include "sample/information_plists.h"
#include "sample/manifest_writer.h"
#include "sample/message_content.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>

namespace sample {

namespace {

/// One run of the maker: what all data classes need.
struct Making
{
    const SampleOptions &options;
    const Generation &generation;
    SeededGenerator chance;
    QString scratch;
    BackupContainer &container;
    SampleSummary &summary;
};

QString inScratch(const Making &making, const char *name)
{
    return making.scratch + QLatin1Char('/') + QLatin1String(name);
}

void addMessages(Making &making)
{
    const QString path = inScratch(making, "sms.db");
    MessageDatabase database(path, making.generation, making.options.seed);
    MessageContent content(database, making.chance.fork("messages"));
    content.addShowcase();
    content.addBulk(making.options.messages, making.options.chats);
    making.summary.chats = content.chats();
    making.summary.counts = content.counts();
    database.finish();
    // The catalogue's size is older than the file.
    making.container.putFile({QStringLiteral("HomeDomain"), QStringLiteral("Library/SMS/sms.db"),
                              making.generation.backupDate - 60, 3, -8192},
                             path);
}

void prepareFolder(const QString &folder)
{
    const QDir dir(folder);
    if (dir.exists() && !dir.isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot))
        throw Error(QStringLiteral("%1 is not empty.").arg(folder));
    if (!dir.mkpath(QStringLiteral(".")))
        throw Error(QStringLiteral("can not create %1.").arg(folder));
}

void writePlist(const Making &making, const char *name, const QByteArray &content)
{
    const QString path = making.options.folder + QLatin1Char('/') + QLatin1String(name);
    writeFile(path, content);
    setModified(path, making.generation.backupDate);
}

SampleSummary make(const SampleOptions &options, const Generation &generation, const QString &scratch)
{
    const SeededGenerator chance(options.seed);
    SampleSummary summary;
    const QString catalogue = options.folder + QStringLiteral("/Manifest.db");
    BackupContainer container(options, std::make_unique<ManifestWriter>(catalogue), nullptr,
                              chance.fork("container"));
    Making making{options, generation, chance, scratch, container, summary};
    addMessages(making);
    container.finish();
    setModified(catalogue, generation.backupDate);
    summary.files = container.files();
    summary.counts.catalogueRows = container.rows();

    const Device device = makeDevice(generation, chance.fork("device"));
    writePlist(making, "Info.plist", infoPlist(device, generation));
    writePlist(making, "Status.plist", statusPlist(generation, chance.fork("status")));
    writePlist(making, "Manifest.plist", manifestPlist(device, generation, {}));
    return summary;
}

} // namespace

} // namespace sample

const SampleFile *SampleSummary::file(const QString &domain, const QString &relativePath) const
{
    const auto found = std::find_if(files.begin(), files.end(), [&](const SampleFile &file) {
        return file.domain == domain && file.relativePath == relativePath;
    });
    return found == files.end() ? nullptr : &*found;
}

SampleSummary makeSample(const SampleOptions &options)
{
    const sample::Generation &generation = sample::generationFor(options.ios);
    if (!options.password.isEmpty() || options.layout != SampleOptions::Layout::Modern)
        throw Error(QStringLiteral("Only plain samples of the modern layout can be made."));
    sample::prepareFolder(options.folder);
    QTemporaryDir scratch(options.folder + QStringLiteral("/.scratch-XXXXXX"));
    if (!scratch.isValid())
        throw Error(QStringLiteral("can not create %1. %2").arg(scratch.path(), scratch.errorString()));
    return sample::make(options, generation, scratch.path());
}

#include "sample/sample_maker.h"

#include "base/error.h"
#include "sample/data_classes.h"

#include <QTemporaryDir>

#include <algorithm>

namespace sample {

namespace {

SampleSummary make(const SampleOptions &options, const QString &scratch)
{
    const Generation &generation = generationFor(options.ios);
    BackupFrame frame(options, generation, scratch);
    SampleSummary summary;
    Making making{options, generation, SeededGenerator(options.seed), scratch, frame.container(), summary};
    addMessages(making);
    addContacts(making);
    addCalls(making);
    addNotes(making);
    addCalendar(making);
    addBookmarks(making);
    addVoicemail(making);
    addRecordings(making);
    addCameraRoll(making);
    addExtraFiles(making);
    frame.finish();
    summary.files = frame.container().files();
    summary.counts.catalogueRows = frame.container().rows();
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
    sample::generationFor(options.ios); // throws before anything is made
    sample::prepareFolder(options.folder);
    QTemporaryDir scratch(options.folder + QStringLiteral("/.scratch-XXXXXX"));
    if (!scratch.isValid())
        throw Error(QStringLiteral("can not create %1. %2").arg(scratch.path(), scratch.errorString()));
    return sample::make(options, scratch.path());
}

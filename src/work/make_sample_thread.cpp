#include "work/make_sample_thread.h"

#include "base/app_folders.h"
#include "base/texts.h"
#include "sample/sample_maker.h"

QString sampleBackupsFolder()
{
    return appDataFolder().filePath(QStringLiteral("sample_backups"));
}

MakeSampleThread::MakeSampleThread(QString folder) : m_folder(std::move(folder)) {}

QString MakeSampleThread::work(Progress &progress)
{
    progress.report(textFor("IDS_MAKING_SAMPLE"), -1, {});
    SampleOptions options;
    options.folder = m_folder;
    makeSample(options);
    progress.check();
    return {};
}

#include "views/file_opener.h"

#include "base/error.h"
#include "base/shell.h"
#include "base/texts.h"
#include "work/background_job.h"
#include "work/fetch_file_thread.h"
#include "work/message_boxes.h"
#include "work/opened_files.h"

FileOpener::FileOpener(OpenBackupPtr backup, QObject *parent) : QObject(parent), m_backup(std::move(backup))
{
}

FileOpener::~FileOpener() = default;

void FileOpener::open(FileCatalogue::Index file, const QString &withoutFile)
{
    if (file == FileCatalogue::none) {
        showWarningBox(withoutFile);
        return;
    }
    const QString name =
        QString::fromUtf8(m_backup->manifest().catalogue().relativePath(file)).section(QLatin1Char('/'), -1);
    if (!isOpenedByTheDesktop(name)) {
        showWarningBox(textFor("IDS_NOT_OPENED_%1").arg(name));
        return;
    }
    if (isTooLargeToOpen(m_backup->manifest(), file)) {
        showWarningBox(textFor("IDS_TOO_LARGE_FILE"));
        return;
    }
    try {
        const QString copy = openedCopyPath(m_backup->manifest(), file);
        m_job = std::make_unique<BackgroundJob>(std::make_unique<FetchFileThread>(m_backup, file, copy));
        connect(m_job.get(), &BackgroundJob::succeeded, this, [copy] { openInShell(copy); });
        connect(m_job.get(), &BackgroundJob::failed, this, [](const QString &text) { showErrorBox(text); });
        m_job->start();
    } catch (const Error &error) {
        showErrorBox(error.sentence());
    }
}

#include "app/run_application.h"

#include "app/app_style.h"
#include "app/end_signals.h"
#include "app/main_window.h"
#include "app/start_arguments.h"
#include "backup/backup_info.h"
#include "backup/leftovers.h"
#include "base/app_folders.h"
#include "base/error.h"
#include "base/log.h"
#include "base/private_folder.h"
#include "base/process_guard.h"
#include "base/shell.h"
#include "base/texts.h"
#include "resources/resources.h"
#include "views/web_views.h"
#include "work/make_sample_thread.h"
#include "work/message_boxes.h"

#include <QApplication>

namespace {
constexpr int keptLogs = 10;
constexpr int workersMayTakeMs = 5000;
} // namespace

int runApplication(int &argc, char **argv)
{
    keepToOwner();
    initResources();
    if (const std::optional<int> status = answerArguments(argc, argv))
        return *status;
    const QString lessProtected = prepareWebViews();
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("quillbarrow"));
    QApplication::setApplicationVersion(QStringLiteral(QB_VERSION));
    installTexts();
    const EndSignals endSignals;
    try {
        initLog(appDataFolder().filePath(QStringLiteral("qlogs")), keptLogs);
    } catch (const Error &noHome) {
        showErrorBox(noHome.sentence());
        return EXIT_FAILURE;
    }
    sweepLeftovers();
    if (!lessProtected.isEmpty())
        qWarning("%s", qUtf8Printable(lessProtected));
    installStyle(application);
    int status = 0;
    {
        MainWindow window(backupRoots() << sampleBackupsFolder());
        window.show();
        window.updateLocalDatabases();
        if (!endSignals.isEnding())
            status = QApplication::exec();
    }
    // A worker that is still deriving a key or waiting for a slow disk must not outlive what it uses.
    const bool haveEnded = WorkerThread::waitForLetGo(workersMayTakeMs);
    removeRunFolder();
    if (!haveEnded)
        quitByTaskKill();
    return status;
}

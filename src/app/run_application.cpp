#include "app/run_application.h"

#include "app/app_style.h"
#include "app/main_window.h"
#include "backup/backup_info.h"
#include "base/app_folders.h"
#include "base/log.h"
#include "base/shell.h"
#include "base/texts.h"
#include "resources/resources.h"
#include "views/web_views.h"
#include "work/make_sample_thread.h"

#include <QApplication>

namespace {
constexpr int keptLogs = 10;
constexpr int workersMayTakeMs = 5000;
} // namespace

int runApplication(int &argc, char **argv)
{
    initResources();
    const QString lessProtected = prepareWebViews();
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("quillbarrow"));
    QApplication::setApplicationVersion(QStringLiteral(QB_VERSION));
    installTexts();
    initLog(appDataFolder().filePath(QStringLiteral("qlogs")), keptLogs);
    if (!lessProtected.isEmpty())
        qWarning("%s", qUtf8Printable(lessProtected));
    installStyle(application);
    int status = 0;
    {
        MainWindow window(backupRoots() << sampleBackupsFolder());
        window.show();
        window.updateLocalDatabases();
        status = QApplication::exec();
    }
    // A worker that is still deriving a key or waiting for a slow disk must not outlive what it uses.
    if (!WorkerThread::waitForLetGo(workersMayTakeMs))
        quitByTaskKill();
    return status;
}

#include "cli/command_line.h"

#include "backup/leftovers.h"
#include "base/app_folders.h"
#include "base/error.h"
#include "base/log.h"
#include "base/private_folder.h"
#include "base/process_guard.h"
#include "base/texts.h"
#include "cli/arguments.h"
#include "cli/commands.h"
#include "cli/line_text.h"
#include "cli/stop_signal.h"
#include "cli/terminal.h"
#include "resources/resources.h"
#include "sqlite/foreign_guard.h"

#include <CLI/CLI.hpp>
#include <QGuiApplication>

#include <algorithm>
#include <cstdio>
#include <new>

namespace {
constexpr int keptLogs = 10;

void tellOneLine(const QString &sentence)
{
    std::fprintf(stderr, "quillbarrow-cli: %s\n", qUtf8Printable(oneLine(sentence)));
}

void describeProgram(CLI::App &app, Job &job)
{
    app.description("Opens backups of phones and tablets, and shows and exports what is in them.");
    app.set_version_flag("--version", QB_VERSION);
    app.require_subcommand(1);
    app.allow_windows_style_options(false);
    addListCommand(app, job);
    addInfoCommand(app, job);
    addFilesCommand(app, job);
    addExtractCommand(app, job);
    addShowCommand(app, job);
    addExportCommand(app, job);
    addSaveCommand(app, job);
    addDatabasesCommand(app, job);
    addRemoveCommand(app, job);
    addUndeleteCommand(app, job);
    addPurgeCommand(app, job);
    addSampleCommand(app, job);
}

/// Nothing when there is a job to run, else the exit status.
std::optional<int> parse(CLI::App &app, const std::optional<QStringList> &arguments)
{
    if (!arguments) {
        tellOneLine(QStringLiteral("an argument is no UTF-8, so that no file can be named by it"));
        return static_cast<int>(ExitStatus::WrongUsage);
    }
    std::vector<std::string> reversed;
    for (auto argument = arguments->crbegin(); argument != arguments->crend(); ++argument)
        reversed.push_back(protectedArgument(*argument));
    try {
        app.parse(std::move(reversed));
        return std::nullopt;
    } catch (const CLI::Success &help) {
        return app.exit(help);
    } catch (const CLI::ParseError &error) {
        tellOneLine(QString::fromUtf8(error.what()) + QStringLiteral(" (--help shows how it is used)"));
        return static_cast<int>(ExitStatus::WrongUsage);
    }
}

/// Runs the job between the edges where every failure becomes one line and an exit status.
ExitStatus runJob(const Job &job)
{
    ProgressBar progress;
    const StatementStop stop(progress);
    const auto tell = [&progress](const QString &sentence) {
        progress.clear();
        tellOneLine(sentence);
    };
    try {
        Output out;
        CommandContext context{out, progress, tell};
        const ExitStatus status = job.run(context);
        progress.clear();
        out.finish();
        return status;
    } catch (const PasswordError &error) {
        tell(QString::fromUtf8(error.what()));
        return ExitStatus::PasswordNeeded;
    } catch (const Cancelled &) {
        tell(QStringLiteral("cancelled"));
    } catch (const Error &error) {
        tell(error.sentence());
    } catch (const std::bad_alloc &) {
        tell(QStringLiteral("there is not enough memory for this"));
    } catch (const std::exception &error) {
        tell(QStringLiteral("unexpected failure: ") + QString::fromLocal8Bit(error.what()));
    }
    return ExitStatus::Failed;
}

std::unique_ptr<QCoreApplication> makeApplication(const Job &job, int &argc, char **argv)
{
    if (!job.needsPictures)
        return std::make_unique<QCoreApplication>(argc, argv);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    return std::make_unique<QGuiApplication>(argc, argv);
}
} // namespace

int runCommandLine(int argc, char **argv)
{
    keepToOwner();
    hideMemory();
    installStopSignals();
    Job job;
    CLI::App app;
    app.name("quillbarrow-cli");
    describeProgram(app, job);
    if (const std::optional<int> status = parse(app, commandLineArguments(argc, argv)))
        return *status;

    try {
        initLog(appDataFolder().filePath(QStringLiteral("qlogs")), keptLogs, DebugEcho::None);
    } catch (const Error &noHome) {
        tellOneLine(noHome.sentence());
        return static_cast<int>(ExitStatus::Failed);
    }
    // The toolkit has options of its own; it gets to see none of ours.
    int toolkitArgc = std::min(argc, 1);
    const std::unique_ptr<QCoreApplication> application = makeApplication(job, toolkitArgc, argv);
    initResources();
    installTexts();
    sweepLeftovers();
    const ExitStatus status = runJob(job);
    removeRunFolder();
    return static_cast<int>(status);
}

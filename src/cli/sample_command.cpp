#include "cli/commands.h"

#include "cli/arguments.h"
#include "cli/stop_signal.h"
#include "sample/sample_maker.h"

#include <CLI/CLI.hpp>
#include <QDir>

#include <limits>

namespace {
struct SampleArguments
{
    const CLI::Option *folder;
    const CLI::Option *layout;
    const CLI::Option *ios;
    const CLI::Option *password;
    const CLI::Option *messages;
    const CLI::Option *files;
    const CLI::Option *seed;
    const CLI::Option *macos;
};

SampleOptions::Layout layoutOf(const QString &name)
{
    if (name == QLatin1String("modern"))
        return SampleOptions::Layout::Modern;
    if (name == QLatin1String("mbdb"))
        return SampleOptions::Layout::Mbdb;
    wrongUsage(QStringLiteral("--layout: \"%1\" is neither modern nor mbdb").arg(name));
}

int generationOf(const QString &text)
{
    static const QStringList generations{QStringLiteral("5"), QStringLiteral("6"), QStringLiteral("9"),
                                         QStringLiteral("12"), QStringLiteral("17")};
    if (!generations.contains(text))
        wrongUsage(
            QStringLiteral("--ios: \"%1\" is none of %2").arg(text, generations.join(QStringLiteral(", "))));
    return text.toInt();
}

SampleOptions optionsOf(const SampleArguments &arguments)
{
    constexpr qint64 mostRows = 100'000'000;
    SampleOptions options;
    const QString folder = *valueOf(arguments.folder);
    if (folder.isEmpty())
        wrongUsage(QStringLiteral("DIR is empty"));
    options.folder = QDir(folder).absolutePath();
    if (const auto value = valueOf(arguments.layout))
        options.layout = layoutOf(*value);
    if (const auto value = valueOf(arguments.ios))
        options.ios = generationOf(*value);
    if (const auto value = valueOf(arguments.password))
        options.password = *value;
    if (const auto value = numberOf(arguments.messages, 0, mostRows))
        options.messages = static_cast<int>(*value);
    if (const auto value = numberOf(arguments.files, 0, mostRows))
        options.files = static_cast<int>(*value);
    if (const auto value = numberOf(arguments.seed, 0, std::numeric_limits<qint64>::max()))
        options.seed = static_cast<quint64>(*value);
    return options;
}
} // namespace

void addSampleCommand(CLI::App &app, Job &job)
{
    CLI::App &command = *app.add_subcommand("sample", "Write a made-up backup");
    const SampleArguments arguments{
        .folder = addPositional(command, "DIR", "the folder that becomes the backup; new or empty"),
        .layout = addValue(command, "--layout", "modern (Manifest.db) or mbdb (Manifest.mbdb)"),
        .ios = addValue(command, "--ios", "the system whose databases are written: 5, 6, 9, 12 or 17"),
        .password = addValue(command, "--password", "encrypt the backup with this password"),
        .messages = addValue(command, "--messages", "how many messages"),
        .files = addValue(command, "--files", "how many files besides those with data"),
        .seed = addValue(command, "--seed", "equal seeds give equal backups"),
        // For whoever tests the program: it writes no backup.
        .macos = addSwitch(command, "--macos", "write the Messages folder of a Mac instead")->group(""),
    };
    command.callback([&job, arguments] {
        job.needsPictures = true;
        const bool isForMac = isGiven(arguments.macos);
        job.run = [options = optionsOf(arguments), isForMac](CommandContext &) {
            // What a stop leaves behind is no backup: its Manifest.plist would have come last.
            endAtOnceOnStop();
            isForMac ? makeMacMessages(options) : makeSample(options);
            return ExitStatus::Done;
        };
    });
}

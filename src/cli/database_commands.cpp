#include "cli/commands.h"

#include "base/app_folders.h"
#include "base/error.h"
#include "cli/arguments.h"
#include "cli/json_writer.h"
#include "cli/personal_command.h"
#include "work/save_records.h"

#include <CLI/CLI.hpp>
#include <QDir>

#include <optional>

namespace {
QString requireDatabaseName(const CLI::Option *option)
{
    const QString name = *valueOf(option);
    if (!isDatabaseName(name))
        wrongUsage(QStringLiteral("NAME: \"%1\" can not be the name of a local database").arg(name));
    return name;
}

void writeSaveLine(DataClass dataClass, const SaveResult &result, CommandContext &context)
{
    QByteArray line;
    JsonWriter json(line);
    json.beginObject();
    json.field("class", dataClassName(dataClass));
    json.field("handled", result.handled);
    json.field("added", result.added);
    json.field("merged", result.merged);
    json.endObject();
    context.out.write(line.append('\n'));
    for (const QString &problem : result.problems)
        context.tell(problem);
}

ExitStatus save(const QList<DataClass> &classes, bool all, const QString &source, const QString &name,
                const PasswordOption &password, CommandContext &context)
{
    const OpenRecords open = openRecords(source, classes.first(), password, context.progress);
    const QString folder = localDatabasesFolder().filePath(name);
    for (const DataClass dataClass : classes) {
        if (all && !open.records->has(dataClass))
            continue;
        const SaveResult result = saveRecords(dataClass, *open.records, folder, context.progress);
        context.progress.clear();
        writeSaveLine(dataClass, result, context);
    }
    return ExitStatus::Done;
}

using Counts = QList<std::pair<DataClass, std::optional<qint64>>>; // without a number where it cannot be told

/// A damaged store of one class says nothing about the others, nor about other databases.
Counts countsOf(const QString &folder, CommandContext &context)
{
    const std::unique_ptr<PersonalSource> records = openLocalRecords(folder);
    Counts counts;
    for (const DataClass dataClass : allDataClasses) {
        if (!isPersonalClass(dataClass))
            continue;
        try {
            counts.append({dataClass, records->count(dataClass)});
        } catch (const Error &error) {
            counts.append({dataClass, std::nullopt});
            context.tell(error.sentence());
        }
    }
    return counts;
}

void writeDatabase(JsonWriter &json, const QString &name, const QString &folder, const Counts &counts)
{
    json.beginObject();
    json.field("name", name);
    json.field("path", folder);
    json.key("counts");
    json.beginObject();
    for (const auto &[dataClass, count] : counts) {
        json.key(qPrintable(dataClassName(dataClass)));
        if (count)
            json.number(*count);
        else
            json.null();
    }
    json.endObject();
    json.endObject();
}

QByteArray databaseText(const QString &name, const QString &folder, const Counts &counts)
{
    QStringList texts;
    for (const auto &[dataClass, count] : counts)
        texts.append(QStringLiteral("%1 %2").arg(count ? QString::number(*count) : QStringLiteral("?"),
                                                 dataClassName(dataClass)));
    return (name + QStringLiteral("\n  ") + folder + QStringLiteral("\n  ") +
            texts.join(QStringLiteral(", ")) + QLatin1Char('\n'))
        .toUtf8();
}

QString requireDatabaseFolder(const QString &name)
{
    const QString folder = localDatabasesFolder().filePath(name);
    if (!QFileInfo(folder).isDir())
        throw Error(QStringLiteral("there is no local database \"%1\"").arg(name));
    return folder;
}

ExitStatus listDatabases(bool asJson, CommandContext &context)
{
    const QDir folder = localDatabasesFolder();
    QByteArray text;
    JsonWriter json(text);
    if (asJson)
        json.beginArray();
    for (const QString &name : folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        const QString path = folder.filePath(name);
        const Counts counts = countsOf(path, context);
        if (asJson)
            writeDatabase(json, name, path, counts);
        else
            text += databaseText(name, path, counts);
    }
    if (asJson) {
        json.endArray();
        text += '\n';
    }
    context.out.write(text);
    return ExitStatus::Done;
}
} // namespace

void addSaveCommand(CLI::App &app, Job &job)
{
    CLI::App &command = *app.add_subcommand("save", "Save records into a local database");
    const CLI::Option *className = addPositional(command, "CLASS", "a class of data, or \"all\"");
    const CLI::Option *source =
        addPositional(command, "SOURCE", "a backup's folder, local:NAME, or a .vcf file for contacts");
    const CLI::Option *into =
        addValue(command, "--into", "the local database; made when there is none")->required();
    const PasswordOption password(command);
    command.callback([&job, className, source, into, password] {
        const QString name = *valueOf(className);
        const bool all = name == QLatin1String("all");
        QList<DataClass> classes;
        for (const DataClass dataClass : allDataClasses)
            if (isPersonalClass(dataClass) && (all || dataClassName(dataClass) == name))
                classes.append(dataClass);
        if (!all && !dataClassOf(name))
            wrongUsage(QStringLiteral("CLASS: there is no \"%1\"").arg(name));
        const bool messages = dataClassOf(name) == DataClass::Messages;
        if (classes.isEmpty() && !messages)
            wrongUsage(QStringLiteral("CLASS: %1 are not kept in local databases").arg(name));
        const QString database = requireDatabaseName(into);
        if (messages) {
            job.run = [](CommandContext &) -> ExitStatus {
                throw Error(QStringLiteral("messages can not be saved by this version yet"));
            };
            return;
        }
        job.run = [=, from = requireSource(source)](CommandContext &context) {
            return save(classes, all, from, database, password, context);
        };
    });
}

void addDatabasesCommand(CLI::App &app, Job &job)
{
    CLI::App &command = *app.add_subcommand("databases", "List the local databases and what they hold");
    const CLI::Option *asJson = addSwitch(command, "--json", "print one JSON array");
    command.callback([&job, asJson] {
        job.run = [json = isGiven(asJson)](CommandContext &context) { return listDatabases(json, context); };
    });
}

void addRemoveCommand(CLI::App &app, Job &job)
{
    CLI::App &command = *app.add_subcommand("remove", "Remove records of a local database");
    const CLI::Option *className = addPositional(command, "CLASS", "a class of data");
    const CLI::Option *from = addValue(command, "--from", "the local database")->required();
    const CLI::Option *ids =
        addValues(command, "--id", "the identity that \"show\" prints; may be given again")->required();
    command.callback([&job, className, from, ids] {
        const QString name = *valueOf(className);
        const auto dataClass = dataClassOf(name);
        if (!dataClass || !isPersonalClass(*dataClass))
            wrongUsage(QStringLiteral("CLASS: no \"%1\" are kept in local databases").arg(name));
        const QString database = requireDatabaseName(from);
        job.run = [=, wanted = valuesOf(ids)](CommandContext &context) {
            removeRecords(*dataClass, requireDatabaseFolder(database), wanted, context.progress);
            return ExitStatus::Done;
        };
    });
}

#include "cli/commands.h"

#include "base/app_folders.h"
#include "base/report.h"
#include "cli/arguments.h"
#include "cli/backup_report.h"
#include "cli/item_counts.h"
#include "cli/json_writer.h"
#include "cli/local_database.h"
#include "cli/personal_command.h"
#include "messages/save_messages.h"
#include "work/save_records.h"
#include "work/update_local_db_thread.h"

#include <CLI/CLI.hpp>
#include <QDir>

#include <algorithm>

namespace {
void writeDatabase(JsonWriter &json, const QString &name, const QString &folder, const ItemCounts &counts,
                   const Report &report)
{
    json.beginObject();
    json.field("name", name);
    json.field("path", folder);
    json.key("counts");
    writeCounts(json, counts);
    writeProblems(json, report);
    json.endObject();
}

QByteArray databaseText(const QString &name, const QString &folder, const ItemCounts &counts)
{
    QStringList texts;
    for (const auto &[dataClass, count] : counts)
        texts.append(QStringLiteral("%1 %2").arg(
            count ? QString::number(*count) : QStringLiteral("unreadable"), dataClassName(dataClass)));
    return (name + QStringLiteral("\n  ") + folder + QStringLiteral("\n  ") +
            texts.join(QStringLiteral(", ")) + QLatin1Char('\n'))
        .toUtf8();
}

/// Failed when one stays as it is; it is listed with the others all the same.
ExitStatus update(CommandContext &context)
{
    const QStringList problems = updateLocalDatabases(localDatabasesFolder().path(), context.progress);
    for (const QString &problem : problems)
        context.tell(problem);
    return problems.isEmpty() ? ExitStatus::Done : ExitStatus::Failed;
}

ExitStatus listDatabases(bool asJson, CommandContext &context)
{
    Report all;
    const QDir folder = localDatabasesFolder();
    QByteArray text;
    JsonWriter json(text);
    if (asJson)
        json.beginArray();
    for (const QString &name : folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        const QString path = folder.filePath(name);
        Report report;
        const ItemCounts counts = countLocalItems(path, report);
        all.merge(report);
        if (asJson)
            writeDatabase(json, name, path, counts, report);
        else
            text += databaseText(name, path, counts);
    }
    if (asJson) {
        json.endArray();
        text += '\n';
    }
    context.out.write(text);
    return context.reportProblems(all);
}

void remove(DataClass dataClass, const QString &folder, const QStringList &ids, CommandContext &context)
{
    if (dataClass == DataClass::Messages)
        removeMessages(folder, recordNumbers(ids), context.progress);
    else
        removeRecords(dataClass, folder, ids, context.progress);
}
} // namespace

void addDatabasesCommand(CLI::App &app, Job &job)
{
    CLI::App &command = *app.add_subcommand("databases", "List the local databases and what they hold");
    const CLI::Option *asJson = addSwitch(command, "--json", "print one JSON array");
    const CLI::Option *first =
        addSwitch(command, "--update", "first bring those that an earlier version made to today's layout");
    command.callback([&job, asJson, first] {
        job.run = [json = isGiven(asJson), updates = isGiven(first)](CommandContext &context) {
            const ExitStatus status = updates ? update(context) : ExitStatus::Done;
            return std::max(status, listDatabases(json, context));
        };
    });
}

void addRemoveCommand(CLI::App &app, Job &job)
{
    CLI::App &command = *app.add_subcommand(
        "remove", "Remove records of a local database; messages can be put back with \"undelete\"");
    const CLI::Option *className = addPositional(command, "CLASS", "a class of data");
    const CLI::Option *from = addValue(command, "--from", "the local database")->required();
    const CLI::Option *ids =
        addValueList(command, "--id", "the identities that \"show\" prints; may be given again");
    command.callback([&job, className, from, ids] {
        const QString name = *valueOf(className);
        const auto dataClass = dataClassOf(name);
        if (!dataClass || (!isPersonalClass(*dataClass) && dataClass != DataClass::Messages))
            wrongUsage(QStringLiteral("CLASS: no \"%1\" are kept in local databases").arg(name));
        const QString database = requireDatabaseName(from);
        job.run = [=, wanted = valuesOf(ids)](CommandContext &context) {
            remove(*dataClass, requireDatabaseFolder(database), wanted, context);
            return ExitStatus::Done;
        };
    });
}

#include "cli/commands.h"

#include "backup/backup_manifest.h"
#include "base/app_folders.h"
#include "base/error.h"
#include "base/texts.h"
#include "cli/arguments.h"
#include "cli/json_writer.h"
#include "cli/local_database.h"
#include "cli/message_source.h"
#include "cli/open_backup.h"
#include "cli/personal_command.h"
#include "messages/save_messages.h"
#include "work/save_records.h"

#include <CLI/CLI.hpp>
#include <QDir>

#include <algorithm>

namespace {
struct SaveRequest
{
    QString source;
    QString name; // of the local database
    Scope scope = Scope::Usual;
    ChangedMessages changed = ChangedMessages::Keep;

    QString folder() const { return localDatabasesFolder().filePath(name); }
};

ExitStatus writeSaveLine(DataClass dataClass, const SaveReport &result, CommandContext &context)
{
    context.progress.clear();
    QByteArray line;
    JsonWriter json(line);
    json.beginObject();
    json.field("class", dataClassName(dataClass));
    json.field("handled", result.handled());
    json.field("added", result.added);
    json.field("merged", result.merged);
    json.endObject();
    context.out.write(line.append('\n'));
    return context.report(result.report);
}

/// `database` has its conversations loaded.
ExitStatus saveLoaded(AbsMessageDb &database, FileSource &files, const SaveRequest &request,
                      CommandContext &context, const BackupManifest *backup = nullptr)
{
    database.loadMessages(0, context.progress);
    SaveReport saved = saveMessages(database.select({}, INT64_MIN, INT64_MAX), &files, request.folder(),
                                    textFor("IDS_BACKUPING_MESSAGES"), context.progress, request.changed);
    saved.report.merge(database.report());
    saved.report.merge(reportOf(backup));
    return writeSaveLine(DataClass::Messages, saved, context);
}

ExitStatus saveMessagesAlone(const SaveRequest &request, const PasswordOption &password,
                             CommandContext &context)
{
    const OpenMessages messages = openMessages(request.source, request.scope, password, context.progress);
    return saveLoaded(*messages.database, *messages.files, request, context, messages.backup);
}

/// The messages among all classes of a source that is open.
ExitStatus saveMessagesOf(const OpenRecords &open, const SaveRequest &request, CommandContext &context)
{
    if (open.backup && open.backup->wellKnown(WellKnown::MessageDatabase) != FileCatalogue::none) {
        const std::unique_ptr<AbsMessageDb> database = openMessageDb(*open.backup);
        database->setScope(request.scope);
        database->loadChats();
        return saveLoaded(*database, *open.backup, request, context);
    }
    if (const auto folder = localDatabaseOf(request.source); folder && hasLocalMessages(*folder)) {
        const MessageSource messages = openLocalMessages(*folder);
        messages.database->setScope(request.scope);
        messages.database->loadChats();
        return saveLoaded(*messages.database, *messages.files, request, context);
    }
    return ExitStatus::Done;
}

ExitStatus saveRecordsOf(DataClass dataClass, const OpenRecords &open, const SaveRequest &request,
                         CommandContext &context)
{
    const SaveReport result =
        saveRecords(dataClass, *open.records, request.scope, request.folder(), context.progress);
    return writeSaveLine(dataClass, result, context);
}

ExitStatus saveClass(DataClass dataClass, const SaveRequest &request, const PasswordOption &password,
                     CommandContext &context)
{
    if (dataClass == DataClass::Messages)
        return saveMessagesAlone(request, password, context);
    const OpenRecords open = openRecords(request.source, dataClass, password, context.progress);
    const ExitStatus saved = saveRecordsOf(dataClass, open, request, context);
    return std::max(saved, context.report(reportOf(open.backup.get())));
}

/// A class that cannot be read does not keep the others from being saved.
ExitStatus saveAll(const SaveRequest &request, const PasswordOption &password, CommandContext &context)
{
    if (isMessageDatabase(request.source) || deletedMessagesOf(request.source))
        return saveMessagesAlone(request, password, context);
    const OpenRecords open = openRecords(request.source, DataClass::Contacts, password, context.progress);
    ExitStatus status = ExitStatus::Done;
    for (const DataClass dataClass : allDataClasses) {
        try {
            if (dataClass == DataClass::Messages)
                status = std::max(status, saveMessagesOf(open, request, context));
            else if (isPersonalClass(dataClass) && open.records->has(dataClass))
                status = std::max(status, saveRecordsOf(dataClass, open, request, context));
        } catch (const Error &error) {
            context.tell(
                QStringLiteral("%1 are not saved: %2").arg(dataClassName(dataClass), error.sentence()));
            status = ExitStatus::Failed;
        }
    }
    return std::max(status, context.report(reportOf(open.backup.get())));
}

/// Nothing for "all".
std::optional<DataClass> classToSave(const CLI::Option *className)
{
    const QString name = *valueOf(className);
    const std::optional<DataClass> dataClass = dataClassOf(name);
    if (name == QLatin1String("all"))
        return std::nullopt;
    if (!dataClass)
        wrongUsage(QStringLiteral("CLASS: there is no \"%1\"").arg(name));
    if (!isPersonalClass(*dataClass) && dataClass != DataClass::Messages)
        wrongUsage(QStringLiteral("CLASS: local databases keep no %1").arg(name));
    return dataClass;
}
} // namespace

void addSaveCommand(CLI::App &app, Job &job)
{
    CLI::App &command = *app.add_subcommand("save", "Save records into a local database");
    const CLI::Option *className = addPositional(command, "CLASS", "a class of data, or \"all\"");
    const CLI::Option *source =
        addPositional(command, "SOURCE",
                      "a backup's folder, local:NAME, for contacts a .vcf file, or for messages a message "
                      "database or deleted:NAME");
    const CLI::Option *into =
        addValue(command, "--into", "the local database; made when there is none")->required();
    const CLI::Option *everything = addEverything(command);
    const CLI::Option *update =
        addSwitch(command, "--update", "let the newer version of a message win; its former text is kept");
    const PasswordOption password(command);
    command.callback([&job, className, source, into, everything, update, password] {
        const std::optional<DataClass> dataClass = classToSave(className);
        const SaveRequest request{requireSource(source), requireDatabaseName(into), scopeOf(everything),
                                  isGiven(update) ? ChangedMessages::Update : ChangedMessages::Keep};
        job.run = [=](CommandContext &context) {
            return dataClass ? saveClass(*dataClass, request, password, context)
                             : saveAll(request, password, context);
        };
    });
}

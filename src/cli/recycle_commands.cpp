#include "cli/commands.h"

#include "cli/arguments.h"
#include "cli/local_database.h"
#include "messages/save_messages.h"
#include "personal/data_class.h"

#include <CLI/CLI.hpp>

namespace {
// Other classes are removed for good at once.
void requireMessages(const CLI::Option *className)
{
    const QString name = *valueOf(className);
    if (dataClassOf(name) != DataClass::Messages)
        wrongUsage(QStringLiteral("CLASS: only removed messages are kept, no \"%1\"").arg(name));
}

ExitStatus undelete(const QString &name, const QStringList &ids, CommandContext &context)
{
    undeleteMessages(requireDatabaseFolder(name), recordNumbers(ids), context.progress);
    return ExitStatus::Done;
}

ExitStatus purge(const QString &name, CommandContext &context)
{
    emptyRecycleStore(requireDatabaseFolder(name), context.progress);
    return ExitStatus::Done;
}
} // namespace

void addUndeleteCommand(CLI::App &app, Job &job)
{
    CLI::App &command = *app.add_subcommand("undelete", "Put removed messages back into a local database");
    const CLI::Option *className = addPositional(command, "CLASS", "messages");
    const CLI::Option *from = addValue(command, "--from", "the local database")->required();
    const CLI::Option *ids = addValueList(
        command, "--id", "the rowids that \"show messages deleted:NAME\" prints; may be given again");
    command.callback([&job, className, from, ids] {
        requireMessages(className);
        job.run = [name = requireDatabaseName(from), wanted = valuesOf(ids)](CommandContext &context) {
            return undelete(name, wanted, context);
        };
    });
}

void addPurgeCommand(CLI::App &app, Job &job)
{
    CLI::App &command =
        *app.add_subcommand("purge", "Delete the removed messages of a local database for good");
    const CLI::Option *className = addPositional(command, "CLASS", "messages");
    const CLI::Option *from = addValue(command, "--from", "the local database")->required();
    command.callback([&job, className, from] {
        requireMessages(className);
        job.run = [name = requireDatabaseName(from)](CommandContext &context) {
            return purge(name, context);
        };
    });
}

#pragma once

#include "cli/command.h"

namespace CLI {
class App;
}
class PasswordOption;

// Each adds its sub-command to `app`. When the command line names it, parsing sets `job`, which must outlive
// `app`.

void addListCommand(CLI::App &app, Job &job);
void addInfoCommand(CLI::App &app, Job &job);
void addFilesCommand(CLI::App &app, Job &job);
/// The whole catalogue as `files --json` prints it.
ExitStatus showFiles(const QString &backup, const PasswordOption &password, CommandContext &context);
void addExtractCommand(CLI::App &app, Job &job);
void addShowCommand(CLI::App &app, Job &job);
void addExportCommand(CLI::App &app, Job &job);
void addSampleCommand(CLI::App &app, Job &job);
void addSaveCommand(CLI::App &app, Job &job);
void addDatabasesCommand(CLI::App &app, Job &job);
void addRemoveCommand(CLI::App &app, Job &job);
void addUndeleteCommand(CLI::App &app, Job &job);
void addPurgeCommand(CLI::App &app, Job &job);

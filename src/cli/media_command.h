#pragma once

#include "cli/command.h"
#include "personal/data_class.h"

class PasswordOption;

/// `show`: one JSON object a line.
ExitStatus showMedia(DataClass dataClass, const QString &source, const PasswordOption &password,
                     CommandContext &context);

/// `export`: copies into a folder; what lies there whole from an earlier run is left.
ExitStatus exportMedia(DataClass dataClass, const QString &source, const QString &target,
                       const PasswordOption &password, CommandContext &context);

#pragma once

#include "backup/extract.h"
#include "cli/command.h"

/// Tells what an extraction did, and gives the status that it ends with.
ExitStatus tellExtraction(const Report &report, CommandContext &context);

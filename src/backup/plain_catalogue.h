#pragma once

#include "backup/scratch_folder.h"
#include "base/report.h"

/// Where the plain "Manifest.db" of a backup can be read as it stands: in the backup folder, or in a copy
/// with the changes applied that a log beside it holds; those that cannot be had are told. Only the copy is ever
/// opened for writing.
QString plainCatalogue(const QString &folder, ScratchFolder &scratch, Report &report);

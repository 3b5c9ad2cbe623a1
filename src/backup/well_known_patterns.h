#pragma once

#include "backup/backup_manifest.h"

#include <QVarLengthArray>

/// The domains whose paths are looked at.
enum class PatternDomain { Home, Media, CameraRoll, Other };

/// The group that a file of this path belongs to; Count for none.
WellKnownGroup groupOf(PatternDomain domain, QByteArrayView path);

/// The keys under which such a file is kept. They may be parts of `path` and live as long as it does.
QVarLengthArray<QByteArray, 2> groupKeys(WellKnownGroup group, QByteArrayView path);

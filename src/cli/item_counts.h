#pragma once

#include "personal/data_class.h"

#include <QList>
#include <QPair>

#include <optional>

class BackupManifest;
class JsonWriter;
class Report;

/// A number for each class but the files, nothing where it cannot be told.
using ItemCounts = QList<QPair<DataClass, std::optional<qint64>>>;

/// Counts what an opened backup with an index holds: the records that `show` prints. What is damaged goes into the
/// report, and leaves its class untold where nothing of it can be read.
ItemCounts countItems(BackupManifest &backup, Report &report);

/// The same of the classes that a local database keeps. Its files are checked whole.
ItemCounts countLocalItems(const QString &folder, Report &report);

/// An object with a number, or null, for each class.
void writeCounts(JsonWriter &json, const ItemCounts &counts);

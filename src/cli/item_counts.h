#pragma once

#include "personal/data_class.h"

#include <QList>
#include <QPair>

#include <functional>
#include <optional>

class BackupManifest;
class JsonWriter;

/// A number for each class but the files, nothing where it cannot be told.
using ItemCounts = QList<QPair<DataClass, std::optional<qint64>>>;

/// Counts what an opened backup with an index holds. A database that cannot be read leaves its class untold.
ItemCounts countItems(BackupManifest &backup);

/// The same of the classes that a local database keeps; `complain` hears what keeps a class from being told.
ItemCounts countLocalItems(const QString &folder, const std::function<void(const QString &)> &complain);

/// An object with a number, or null, for each class.
void writeCounts(JsonWriter &json, const ItemCounts &counts);

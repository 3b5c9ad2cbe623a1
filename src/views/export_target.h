#pragma once

#include "personal/data_class.h"

#include <optional>

class QWidget;

/// Where an export of records goes.
struct ExportTarget
{
    QString format; // as exportRecords() knows it
    QString path;   // a file, or for notes a folder
};

/// Asks for it; nothing when the user thought better of it.
std::optional<ExportTarget> chooseExportTarget(DataClass dataClass, const QString &title, QWidget *parent);

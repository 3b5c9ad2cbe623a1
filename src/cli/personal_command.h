#pragma once

#include "base/progress.h"
#include "cli/command.h"
#include "cli/date_range.h"
#include "cli/password.h"
#include "personal/data_class.h"
#include "personal/personal_source.h"

#include <memory>
#include <optional>

class BackupManifest;

/// The records of a source that was named on the command line, with what keeps them open.
struct OpenRecords
{
    OpenRecords();
    OpenRecords(OpenRecords &&) noexcept;
    OpenRecords &operator=(OpenRecords &&) noexcept;
    ~OpenRecords();

    std::unique_ptr<BackupManifest> backup; // null for a local database and a file
    std::unique_ptr<PersonalSource> records;
    bool isLocal = false;
};

/// Opens a backup's folder, "local:NAME", or for contacts a ".vcf" file. Throws Error, PasswordError and
/// Cancelled.
OpenRecords openRecords(const QString &source, DataClass dataClass, const PasswordOption &password,
                        Progress &progress);

/// True for the classes whose records openRecords() opens.
bool isPersonalClass(DataClass dataClass);

/// `show`: one JSON object a line.
ExitStatus showRecords(DataClass dataClass, const QString &source, Scope scope, const PasswordOption &password,
                       CommandContext &context);

/// What `export` was asked for.
struct RecordExport
{
    DataClass dataClass;
    QString source;
    QString format;
    QString target;  // one file, or for notes a folder
    DateRange dates; // records with a date outside of it are left out
    Scope scope = Scope::Usual;
};
ExitStatus exportRecords(const RecordExport &request, const PasswordOption &password,
                         CommandContext &context);

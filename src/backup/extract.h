#pragma once

#include "backup/backup_manifest.h"

/// What is to be taken out of a backup: a file, or a folder with all that lies below it; an empty path is the
/// whole domain.
struct ExtractRequest
{
    QByteArray domain;
    QByteArray relativePath;

    bool operator==(const ExtractRequest &) const = default;
};

/// One file that lands in the target under a name of the caller's.
struct NamedExtract
{
    FileCatalogue::Index record;
    QString name;
};

struct ExtractNote
{
    QString domain;
    QString relativePath;
    QString reason;

    bool operator==(const ExtractNote &) const = default;
};

struct ExtractSummary
{
    qint64 copied = 0;
    qint64 alreadyThere = 0;    // whole from an earlier run, and left
    QList<ExtractNote> skipped; // links, and what would not stay inside the target
    QList<ExtractNote> failed;  // a request that names nothing is one
    QList<ExtractNote> locked;  // copied or left as stored: of a class that the password does not unlock
};

/// Extracts files and folders into `target`, which is made when missing. A request lands there under its own
/// last name, a whole domain with its content directly in `target`. Folders are made, empty ones too, and all
/// get the times of the device. A second file of one name in the same run gets the free-name suffix; what
/// lies there whole, with the right size and time, is left; anything else of the name is replaced. One that
/// fails is noted, and the rest goes on. Needs the index.
///
/// Throws Error when the target lies inside the backup, cannot be written or is full, and Cancelled through
/// `progress`; what was extracted until then stays, each file whole.
ExtractSummary extractFiles(BackupManifest &backup, const QList<ExtractRequest> &requests,
                            const QString &target, Progress &progress);

/// The same for places of the browsable tree, where one folder may hold files of several domains. What lies
/// in the target and was not written for the same file of the same device is never replaced: the new file
/// gets the free-name suffix.
ExtractSummary extractNodes(BackupManifest &backup, const std::vector<FileTree::Node> &nodes,
                            const QString &target, Progress &progress);

/// As extractNodes() for single files under names of the caller's.
ExtractSummary extractNamed(BackupManifest &backup, const QList<NamedExtract> &files, const QString &target,
                            Progress &progress);

#pragma once

#include "backup/backup_manifest.h"
#include "base/contained_path.h"

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

/// The texts of what an extraction reports; `where` is the file of the backup.
inline constexpr const char *fileFailed = "IDS_ISSUE_FILES_FAILED";     // a request that names nothing is one
inline constexpr const char *fileLocked = "IDS_ISSUE_FILES_LOCKED";     // copied or left as it is stored
inline constexpr const char *fileCutOff = "IDS_ISSUE_FILES_CUT_OFF";     // copied as far as it goes
inline constexpr const char *fileRenamed = "IDS_ISSUE_FILES_RENAMED";   // the reason is its new name
inline constexpr const char *linkLeftOut = "IDS_ISSUE_LINKS_LEFT_OUT";
inline constexpr const char *fileReplaced = "IDS_ISSUE_FILES_REPLACED";  // something else lay in its place
inline constexpr const char *filesThere = "IDS_ISSUE_FILES_THERE"; // whole from an earlier run, and left

/// Extracts files and folders into `target`, which is made when missing. A request lands there under its own
/// last name, a whole domain with its content directly in `target`. Folders are made, empty ones too, and all
/// get the times of the device. A second file of one name in the same run gets the free-name suffix; what
/// lies there whole, with the right size and time, is left; anything else of the name is replaced. A file or folder
/// that gets another name than in the backup is told. One that fails is reported, and the rest goes on. What is done are the files that were copied. Needs the index.
///
/// Throws Error when the target lies inside the backup, cannot be written or is full, and Cancelled through
/// `progress`; what was extracted until then stays, each file whole.
Report extractFiles(BackupManifest &backup, const QList<ExtractRequest> &requests, const QString &target,
                    Progress &progress, NameRules rules = ownNameRules);

/// The same for places of the browsable tree, where one folder may hold files of several domains. What lies
/// in the target and was not written for the same file of the same device is never replaced: the new file
/// gets the free-name suffix.
Report extractNodes(BackupManifest &backup, const std::vector<FileTree::Node> &nodes, const QString &target,
                    Progress &progress);

/// As extractNodes() for single files under names of the caller's.
Report extractNamed(BackupManifest &backup, const QList<NamedExtract> &files, const QString &target,
                    Progress &progress);

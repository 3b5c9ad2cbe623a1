#pragma once

#include "work/open_backup.h"

#include <functional>

class FileSource;

/// Where a worker gets the files of messages from: an open backup, which workers use in turns, or any other
/// source. Kept alive by this object.
class MessageFiles
{
public:
    /// There are none.
    MessageFiles() = default;
    MessageFiles(OpenBackupPtr backup) : m_backup(std::move(backup)) {}
    MessageFiles(std::shared_ptr<FileSource> source) : m_source(std::move(source)) {}

    /// The identifier of the backup; "loose" where there is none.
    QString owner() const;
    /// Runs `job` with the source, or null when there is none. Throws what it throws, and Cancelled.
    void use(Progress &progress, const std::function<void(FileSource *)> &job) const;

private:
    OpenBackupPtr m_backup;
    std::shared_ptr<FileSource> m_source;
};

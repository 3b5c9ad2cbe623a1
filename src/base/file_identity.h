#pragma once

#include <QString>

#include <optional>

/// What a file or folder is, whatever path or link names it: the disk and its number there.
struct FileIdentity
{
    quint64 disk = 0;
    quint64 number = 0;

    bool operator==(const FileIdentity &) const = default;
};

/// Follows links. Nothing when it is not there or cannot be asked.
std::optional<FileIdentity> identityOf(const QString &path);

#pragma once

#include "backup/file_cipher.h"

#include <QString>

#include <optional>

/// Names one file of a source.
struct SourceFile
{
    QString domain;
    QString relativePath;

    bool isNull() const { return relativePath.isEmpty(); }
    /// "domain path", as it is told to people.
    QString display() const { return (domain + QLatin1Char(' ') + relativePath).trimmed(); }
    bool operator==(const SourceFile &) const = default;
};

/// Where readers get files from; they never see a backup folder. Used by one thread at a time.
class FileSource
{
public:
    virtual ~FileSource() = default;

    /// True when the source lists the file and has its content.
    virtual bool hasContent(const SourceFile &file) const = 0;
    /// True when the source lists the file, even one whose content is missing.
    virtual bool lists(const SourceFile &file) const { return hasContent(file); }

    /// A private copy of a database with its "-wal" companion applied when there is one; valid while the
    /// source lives. Nothing when the source does not list the file. Throws Error when it cannot be fetched.
    virtual std::optional<QString> fetchDatabase(const SourceFile &file) = 0;

    /// Writes the content to `destination` (complete or absent). Throws Error; a source without the file or
    /// its content is one.
    virtual void fetchTo(const SourceFile &file, const QString &destination,
                         const CopyProgress &progress = {}) = 0;

    /// How many bytes the content has, by what the source says of it; 0 where it says nothing. What fetchTo()
    /// gives may be shorter.
    virtual std::uint64_t listedBytes(const SourceFile &) const { return 0; }

    /// True when fetchTo gives the file as it is stored, unreadable: it is of a class that the password does
    /// not unlock.
    virtual bool isLocked(const SourceFile &) const { return false; }

    /// The file that a path of the device means, such as "var/mobile/Library/SMS/Attachments/00/x.jpg":
    /// HomeDomain first, then MediaDomain, where real backups keep attachments. A null SourceFile when the
    /// source lists neither.
    virtual SourceFile fileOfDevicePath(const QString &devicePath) const = 0;

    /// A local copy for looking at, made once and kept while the source lives. Throws as fetchTo does.
    virtual QString fetchForViewing(const SourceFile &file) = 0;

    /// When its files were taken off the device, in Unix seconds; 0 where nobody knows.
    virtual qint64 takenAt() const { return 0; }
};

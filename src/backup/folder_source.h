#pragma once

#include "backup/file_source.h"

/// Files below one folder of this computer, by their path relative to it; domains mean nothing here. Nothing
/// outside of the folder is ever given, whatever a path or a symbolic link says. No database and no path of a
/// device is known to it: sub-classes may know better.
class FolderSource : public FileSource
{
public:
    explicit FolderSource(const QString &folder) : m_folder(folder) {}

    const QString &folder() const { return m_folder; }
    /// Where a file lies; empty when it is not there.
    virtual QString localPath(const SourceFile &file) const { return pathBelow(m_folder, file); }

    bool hasContent(const SourceFile &file) const override { return !localPath(file).isEmpty(); }
    std::optional<QString> fetchDatabase(const SourceFile &) override { return std::nullopt; }
    void fetchTo(const SourceFile &file, const QString &destination,
                 const CopyProgress &progress = {}) override;
    std::uint64_t listedBytes(const SourceFile &file) const override;
    SourceFile fileOfDevicePath(const QString &) const override { return {}; }
    /// The file itself, not a copy.
    QString fetchForViewing(const SourceFile &file) override;

protected:
    /// The same for any folder.
    static QString pathBelow(const QString &folder, const SourceFile &file);

private:
    QString existing(const SourceFile &file) const;

    QString m_folder;
};

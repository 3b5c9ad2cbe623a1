#pragma once

#include "sample/catalogue_record.h"
#include "sample/keybag_writer.h"
#include "sample/sample_maker.h"

#include <QSet>

#include <memory>

class QIODevice;

namespace sample {

/// Where a file goes and what the catalogue says of it.
struct FilePlace
{
    QString domain;
    QString relativePath;
    qint64 modified = 0; // Unix seconds
    int protectionClass = 3;
    bool odd = false; // not marked as a file, and with a key even where the backup is not encrypted
    // What the catalogue's size is off by: live files change while they are backed up.
    qint64 sizeDifference = 0;
};

/// The backup folder while it is being filled: stores content under its file id, encrypted when there is a
/// keybag, and hands one record for each file, and one for each folder above it, to the catalogue.
class BackupContainer
{
public:
    BackupContainer(const SampleOptions &options, std::unique_ptr<CatalogueWriter> catalogue,
                    const KeybagWriter *keybag, SeededGenerator chance);

    void put(const FilePlace &place, const QByteArray &content);
    /// Takes over the file at `localPath`, which is gone afterwards.
    void putFile(const FilePlace &place, const QString &localPath);
    /// A row whose content is not in the backup.
    void putRowAlone(const FilePlace &place, qint64 size);
    void putLink(const FilePlace &place, const QString &target);
    void putFolder(const QString &domain, const QString &relativePath, qint64 modified);

    /// Ends the catalogue. Nothing can be put afterwards.
    void finish();

    const std::vector<SampleFile> &files() const { return m_files; }
    int rows() const { return m_rows; }

private:
    CatalogueRecord record(const FilePlace &place, CatalogueRecord::Kind kind);
    void addParents(const FilePlace &place);
    void addFileRow(const FilePlace &place, qint64 size, const QByteArray &sha1, const QByteArray &fileKey,
                    bool stored);
    void addRow(const CatalogueRecord &record);
    QString storedPath(const QString &fileId) const;
    void writeStored(const QString &path, QIODevice &content, const QByteArray &fileKey, qint64 modified);
    QByteArray newFileKey();

    QString m_folder;
    SampleOptions::Layout m_layout;
    std::unique_ptr<CatalogueWriter> m_catalogue;
    const KeybagWriter *m_keybag;
    SeededGenerator m_chance;
    QSet<QString> m_knownFolders;
    std::vector<SampleFile> m_files;
    qint64 m_inode = 1000;
    int m_rows = 0;
};

/// Makes a folder that a sample is to fill. Throws Error when it cannot or when the folder holds something.
void prepareFolder(const QString &folder);

/// Writes a small file beside no other protection than the sample's own: plists and the like. Throws Error.
void writeFile(const QString &path, const QByteArray &content);

/// Sets the time of last change, in Unix seconds. Throws Error.
void setModified(const QString &path, qint64 modified);

} // namespace sample

#pragma once

#include "backup/scratch_folder.h"

#include <QLockFile>

/// The plain copy of an encrypted "Manifest.db", there from make() to remove(): until the catalogue is read.
/// It stands as "Manifest-decrypted.db" in the backup folder, or in the backup's cache folder when that cannot
/// be written or holds something of that name. Only one run at a time may use these names: another one, and a
/// run for which neither place serves, gets a copy in its own scratch folder.
///
/// Before a copy comes into a backup folder, a note in the backup's cache folder says where, and which file it
/// is: so the next run can take away what a killed one left, and nothing else.
class DecryptedCatalogue
{
public:
    DecryptedCatalogue() = default;
    ~DecryptedCatalogue();
    DecryptedCatalogue(const DecryptedCatalogue &) = delete;
    DecryptedCatalogue &operator=(const DecryptedCatalogue &) = delete;

    /// Decrypts the catalogue of the backup in `folder`. Throws Error when it cannot be read, cannot be
    /// written anywhere, or is no database after decryption.
    void make(const QString &folder, const QByteArray &key, ScratchFolder &scratch);
    /// Where it stands; empty when there is none.
    QString path() const { return m_path; }
    void remove();

    /// True when the name is one that is used in a cache folder.
    static bool hasName(const QString &name);
    /// True when the copy that this cache folder holds, or holds a note of, belongs to a run that lives, this
    /// one or another, or lies on a disk that is not there now. Any other goes by the question.
    static bool isInUse(const QString &cacheFolder);
    /// Removes the copy that a run which is gone left in this cache folder, or in the backup folder that its
    /// note names.
    static void sweep(const QString &cacheFolder);

private:
    QString m_path;
    QString m_note; // of a copy in the backup folder
    std::unique_ptr<QLockFile> m_lock;

    bool makeUnderLock(const QString &source, const QByteArray &key, const QString &folder,
                       const QString &cacheFolder);
    bool claim(const QString &copy, const QString &note);
    void decrypt(const QString &source, const QByteArray &key, const QString &destination);
};

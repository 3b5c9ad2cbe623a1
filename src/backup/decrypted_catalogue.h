#pragma once

#include "backup/scratch_folder.h"

/// The plain copy of an encrypted "Manifest.db", there from make() to remove(). It stands as
/// "Manifest-decrypted.db" in the backup folder, or in the backup's cache folder when the backup folder
/// cannot be written. Only one run at a time may use these names: another one, and a run for which neither
/// place serves, gets a copy in its own scratch folder.
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
    /// True when the copy in this cache folder belongs to a run that lives, this one or another.
    static bool isInUse(const QString &cacheFolder);

private:
    QString m_path;
    std::unique_ptr<QLockFile> m_lock;

    bool makeUnderLock(const QString &source, const QByteArray &key, const QString &folder,
                       const QString &cacheFolder);
    void decrypt(const QString &source, const QByteArray &key, const QString &destination);
};

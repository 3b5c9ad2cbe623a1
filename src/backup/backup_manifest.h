#pragma once

#include "backup/backup_info.h"
#include "backup/file_catalogue.h"
#include "backup/file_source.h"
#include "backup/file_tree.h"
#include "backup/keybag.h"
#include "base/progress.h"

#include <QHash>

#include <memory>
#include <optional>

/// The files that data readers ask for by kind.
enum class WellKnown {
    MessageDatabase,
    Contacts,
    ContactImages,
    Notes,
    Calendar,
    CalendarExtras,
    VoicemailDatabase,
    Bookmarks,
    CallHistoryNewer,
    CallHistoryOlder,
    RecordingsDatabase,
    Count
};

/// Files found by pattern and kept under a key.
enum class WellKnownGroup {
    VoicemailAudio,      // by the number in the name
    RecordingAudio,      // by file name
    MessagePart,         // by the captured name
    MessageAttachment,   // by GUID folder "/" base name, and by "/var/mobile/" path
    CameraRoll,          // by relative path
    CameraRollThumbnail, // by the base name of the item
    Count
};

/// What a fetch did with the content.
enum class FetchOutcome {
    Copied,
    Decrypted,
    CopiedLocked /* of a class the password does not unlock: as stored */
};

/// What became of a file that was to be cached.
enum class CacheOutcome {
    Copied,
    Current, // its copy is of the right date
    LeftOut, // it has no content, cannot be read, or cannot have a place in the cache
};

/// An opened backup. Reading never changes anything in the backup folder, but for "Manifest-decrypted.db",
/// which is there from the password to the end of buildIndex() when the folder can be written. Owned by
/// shared pointer; close() or the destructor removes what it put on the disk. Index and catalogue may be read
/// from several threads once they are built.
class BackupManifest : public FileSource
{
public:
    explicit BackupManifest(const QString &folder);
    ~BackupManifest() override;
    BackupManifest(const BackupManifest &) = delete;
    BackupManifest &operator=(const BackupManifest &) = delete;

    /// Reads the descriptive fields. Throws Error("Cannot find PATH") without Manifest.plist, and an Error
    /// when it cannot be read or is no property list.
    void loadInfo();
    const BackupInfo &info() const { return m_info; }

    /// Encrypted backups: false when the password is wrong. Throws Error for a damaged keybag and for a
    /// catalogue that cannot be read. Needs loadInfo().
    bool openEncrypted(const QString &password);
    /// The same, telling how long it takes. Throws Cancelled, too.
    bool openEncrypted(const QString &password, Progress &progress);
    /// True when the backup is not encrypted or its keybag is unlocked.
    bool isUnlocked() const;

    /// Reads the catalogue, builds the tree and finds the well-known files; does nothing the second time.
    /// Throws Error, and Cancelled through `progress`.
    void buildIndex(Progress &progress);
    bool hasIndex() const;
    /// What could not be read of the description, of the catalogue once the index is built, and of the logs of the
    /// databases that were fetched so far.
    Report report() const;

    const FileCatalogue &catalogue() const;
    const FileTree &tree() const;
    FileCatalogue::Index wellKnown(WellKnown kind) const;
    const QHash<QByteArray, FileCatalogue::Index> &wellKnownGroup(WellKnownGroup group) const;

    /// Where the content of a file lies in the backup folder; it need not exist.
    QString filePath(FileCatalogue::Index index) const;
    /// True when the content is of a class that the password does not unlock.
    bool isLocked(FileCatalogue::Index index) const;
    /// Fetches a file's content, decrypted when needed, with its modification time. With FileCatalogue::none
    /// nothing is done. Throws Error. Complete or absent.
    FetchOutcome fetchFile(FileCatalogue::Index index, const QString &destination,
                           const CopyProgress &progress = {});
    /// The first record whose file key unwraps; throws "BackupManifest::firstEncryptedItem, no valid keys".
    FileCatalogue::Index firstEncryptedItem() const;

    /// From now on, plain copies that are made for reading and viewing are kept in the backup's cache folder,
    /// and those that lie there are used while their date fits. Somebody has to clear it one day: without a
    /// cache nothing stays behind. It may be cleared at any time between two calls: what is asked for again
    /// is made again.
    void attachCache();
    /// Nothing is kept any more. May be called from any thread.
    void retireCache();
    /// Copies a file into the cache that is attached. Throws Error, and what `progress` throws.
    CacheOutcome cacheFile(FileCatalogue::Index index, const CopyProgress &progress = {});

    /// Removes every plain copy that this object made outside of the targets it was given and the cache.
    void close();

    /// The private copy of fetchDatabase() for a record that is there.
    QString fetchDatabase(FileCatalogue::Index index, const CopyProgress &progress);

    bool hasContent(const SourceFile &file) const override;
    bool lists(const SourceFile &file) const override;
    std::optional<QString> fetchDatabase(const SourceFile &file) override;
    void fetchTo(const SourceFile &file, const QString &destination,
                 const CopyProgress &progress = {}) override;
    bool isLocked(const SourceFile &file) const override;
    std::uint64_t listedBytes(const SourceFile &file) const override;
    SourceFile fileOfDevicePath(const QString &devicePath) const override;
    QString fetchForViewing(const SourceFile &file) override;
    qint64 takenAt() const override;

private:
    struct Opened;

    BackupInfo m_info;
    std::unique_ptr<Opened> d;
};

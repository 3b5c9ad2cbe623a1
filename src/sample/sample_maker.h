#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <vector>

/// A catalogued file with chosen content, for what an honest backup never holds: a path with "..", a domain
/// that no system knows, content that is not what its name says.
struct SampleRow
{
    QString domain;
    QString relativePath;
    QByteArray content;
};

/// What makeSample() writes. Equal options give equal bytes, on any machine with the same SQLite and Qt.
struct SampleOptions
{
    enum class Layout { Modern, Mbdb };

    QString folder;                 ///< becomes the backup folder itself; made when missing, must be empty
    Layout layout = Layout::Modern; ///< Manifest.db with sub-folders, or Manifest.mbdb with a flat folder
    int ios = 17;                   ///< generation of every schema: 5 to 7, 9 to 12 or 14 to 17
    QString password;               ///< empty: the backup is not encrypted
    int messages = 200; ///< rows of `message`; those of the showcase conversations are there in any case
    int files = 40;     ///< catalogued files besides those of the data classes
    quint64 seed = 1;

    int chats = 0;    ///< conversations; 0 or less than the showcase: the showcase ones alone
    int dpic = 10000; ///< rounds of the outer derivation
    int iter = 1000;  ///< rounds of the inner derivation
    /// The keybag has the outer derivation and Manifest.db is encrypted itself; modern layout only.
    enum class Protection { ByGeneration, Single, Double };
    Protection protection = Protection::ByGeneration; ///< ByGeneration: double from 10 on

    bool catalogueWithoutPadding = false; ///< the encrypted Manifest.db ends with its last page, unpadded
    bool saltedDescriptors = false;       ///< plain Manifest.db with a salt and encrypted `file` blobs
    /// Some more messages, the newest, stand only in a catalogued sms.db-wal; from iOS 6 on.
    bool walCompanion = false;
    bool emptyOldCallHistory = false; ///< a call_history.db without rows stands beside the newer store
    std::vector<SampleRow> extraRows;
};

/// One row of the catalogue that stands for a file.
struct SampleFile
{
    QString domain;
    QString relativePath;
    QString fileId;
    QByteArray sha1;           ///< of the plain content, 20 bytes; empty when nothing is stored
    qint64 sizeBytes = 0;      ///< of the plain content
    qint64 cataloguedSize = 0; ///< what the catalogue says, which is not always the same
    qint64 modified = 0;       ///< Unix seconds
    int protectionClass = 0;
    bool stored = true;  ///< false: the catalogue has a row and the folder has no content
    bool locked = false; ///< its class key does not open with the password
};

struct SampleHandle
{
    qint64 rowid = 0;
    QString address;
    QString service;
    QString contactName; ///< what the address book calls the owner of the number; empty for a stranger
};

struct SampleChat
{
    qint64 rowid = 0;   ///< in its table; up to iOS 5 there are two
    QString identifier; ///< empty when the tables give it none
    QString displayName;
    std::vector<SampleHandle> handles; ///< ascending decimal text of the row id
    QString title;  ///< display name, else names or addresses joined with ", ", else "Unknown"
    int joined = 0; ///< messages in it, system items among them
    int listed = 0; ///< those that are no system items
};

/// How many records of each class a reader should find.
struct SampleCounts
{
    int messageRows = 0;   ///< rows of `message`, those outside every conversation included
    int messagesInWal = 0; ///< those of messageRows that stand in sms.db-wal alone
    /// Messages that are no system items, once for each conversation that they are in.
    int joinedMessages = 0;
    int listedMessages = 0; ///< distinct messages in a conversation that are no system items
    int attachments = 0;
    int contacts = 0;
    int calls = 0;
    int notes = 0; ///< those with a body; one row of ZNOTE has none
    int calendarEvents = 0;
    int bookmarks = 0; ///< rows that are not hidden, one of them in a hidden folder; no folders
    int voicemails = 0;
    int recordings = 0;
    int photos = 0; ///< of the camera roll, .jpg and .png
    int heicPhotos = 0;
    int videos = 0;
    int catalogueRows = 0; ///< folders and links included
};

struct SampleSummary
{
    SampleCounts counts;
    std::vector<SampleChat> chats;
    std::vector<SampleFile> files;

    /// The file of a place in the backup, or null.
    const SampleFile *file(const QString &domain, const QString &relativePath) const;
};

/// Writes a whole backup. Throws Error when the folder holds something already, an option cannot be served or
/// a file cannot be written; Manifest.plist comes last, so what a failure leaves behind is not taken for a
/// backup.
SampleSummary makeSample(const SampleOptions &options);

/// Writes a folder as the Messages application of macOS keeps it: "chat.db" and "Attachments/". Only
/// `folder`, `messages`, `chats` and `seed` mean something. Throws Error as makeSample() does.
SampleSummary makeMacMessages(const SampleOptions &options);

/// Writes a plain Manifest.db of `rows` file rows without any content file. Throws Error, also when `path`
/// exists.
void makeCatalogueOnly(const QString &path, int rows, quint64 seed);

/// Writes an sms.db alone, in the schema of the generation. Throws Error, also when `path` exists.
SampleCounts makeMessageDatabase(const QString &path, int ios, int messages, int chats, quint64 seed);

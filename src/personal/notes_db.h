#pragma once

#include "personal/abs_local_db.h"
#include "personal/note_entry.h"

#include <QList>

#include <optional>

class FileSource;

/// Any source of notes. Used by one thread at a time.
class INotesDb
{
public:
    virtual ~INotesDb() = default;
    virtual qint64 count() = 0;
    virtual QList<NoteEntry> readAll() = 0;
};

/// Reads the notes database of a source. Opens it on first use and keeps it open; `source` must outlive the
/// reader.
class IOSNotesDb : public INotesDb
{
public:
    /// `deviceId` becomes the notes' dev_id.
    IOSNotesDb(FileSource &source, const QString &deviceId);

    /// Throws Error("Cannot find notes.sqlite.") when the source has no notes database.
    qint64 count() override;
    /// Notes without a body are not read. Throws as count() does.
    QList<NoteEntry> readAll() override;

private:
    FileSource &m_source;
    QString m_deviceId;
    Sqlite3DB m_db;

    void open();
};

/// "notes.db": notes gathered from any number of sources; one of the same title and content is one note.
class LocalNotesDb : public AbsLocalDb, public INotesDb
{
public:
    explicit LocalNotesDb(const QString &folder);

    qint64 count() override;
    /// Newest change first.
    QList<NoteEntry> readAll() override;
    std::optional<NoteEntry> read(const QString &hash);
    /// True when the note was there already; the newer save wins. Call between begin() and commit().
    bool save(const NoteEntry &note);
    /// False when there is no such note.
    bool remove(const QString &hash);

    /// MD5 over title and content, as 32 hexadecimal digits.
    static QString hashOf(const NoteEntry &note);
};

#pragma once

#include "personal/abs_local_db.h"
#include "personal/note_entry.h"
#include "personal/scope.h"

#include <QList>

#include <optional>

class FileSource;
class Report;

/// Reads the notes database of a source. Opens it on first use and keeps it open; `source` must outlive the
/// reader.
class IOSNotesDb
{
public:
    /// `deviceId` becomes the notes' dev_id.
    IOSNotesDb(FileSource &source, const QString &deviceId);

    /// Notes without a body are left out. Throws Error("Cannot find notes.sqlite.") when the source has no
    /// notes database. Notes that lie in the newer store are told in the report as not handed over.
    QList<NoteEntry> readAll(Scope scope, Report &report);
    /// Number of notes in the store of newer systems, which this reader does not read: 0 without such a
    /// store, nothing when it cannot be told.
    std::optional<qint64> countInNewerStore();
    bool hasNewerStore() const;

private:
    FileSource &m_source;
    QString m_deviceId;
    Sqlite3DB m_db;

    bool open(Report &report);
    bool readBodies(QHash<qint64, QString> &bodies, Report &report) const;
};

/// "notes.db": notes gathered from any number of sources; one of the same title and content is one note.
class LocalNotesDb : public AbsLocalDb
{
public:
    explicit LocalNotesDb(const QString &folder);

    /// Of those that readAll() gives. Throws Error where the store is damaged.
    qint64 count();
    /// Newest change first. Reads around damage, which is told in the report.
    QList<NoteEntry> readAll(Report &report);
    std::optional<NoteEntry> read(const QString &hash);
    struct Saved
    {
        bool wasThere = false; // then the newer save wins
        bool differs = false;  // the dates of the stored one were others
    };
    /// Call between begin() and commit().
    Saved save(const NoteEntry &note);
    /// False when there is no such note.
    bool remove(const QString &hash);

    /// MD5 over title and content, as 32 hexadecimal digits.
    static QString hashOf(const NoteEntry &note);
};

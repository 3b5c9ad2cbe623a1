#pragma once

#include "backup/file_catalogue.h"
#include "base/progress.h"

#include <QString>

/// What loading left out.
struct CatalogueLoss
{
    qint64 skippedRows = 0;
    QString reason; // of the first one

    void skip(const QString &why)
    {
        if (++skippedRows == 1 && reason.isEmpty())
            reason = why;
    }
    bool operator==(const CatalogueLoss &) const = default;
};

/// No device has longer paths; what claims to is not put into a tree a thousand levels deep.
inline constexpr qsizetype longestPath = 4096;

/// Reads the file records of either layout into a catalogue. Rows that cannot be used are left out and
/// counted. When the database or file turns out to be damaged in the middle, what was read before is kept,
/// since it is what is left of somebody's data.
class CatalogueLoader
{
public:
    CatalogueLoader(FileCatalogue &catalogue, Progress &progress);

    /// A "Manifest.db", plain or decrypted, which is never written to; `password` as UTF-8, empty for a
    /// backup that has none. Throws Error when it is no database, lacks the table or its two necessary
    /// columns, or nothing can be read at all.
    CatalogueLoss loadDatabase(const QString &path, const QByteArray &password);
    /// A "Manifest.mbdb". Throws Error when it cannot be opened or nothing can be read at all.
    CatalogueLoss loadMbdb(const QString &path);

private:
    FileCatalogue &m_catalogue;
    Progress &m_progress;
    CatalogueLoss m_loss;
    qint64 m_rows = 0;

    void open(class Sqlite3DB &db, const QString &path);
    void readRows(const class Sqlite3DB &db, const QByteArray &descriptorKey);
    void insert(const FileRecord &record);
    void countRow();
    void endEarly(const class Error &error);
};

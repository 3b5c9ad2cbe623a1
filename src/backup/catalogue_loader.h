#pragma once

#include "backup/file_catalogue.h"
#include "base/progress.h"
#include "base/report.h"

#include <QString>

/// No device has longer paths.
inline constexpr qsizetype longestPath = 4096;
/// No device nests folders as deep. The tree has a node for each folder of a path, so that 80 MB of paths
/// with two thousand folders each would take a gigabyte of them.
inline constexpr qsizetype deepestPath = 256;

/// Reads the file records of either layout into a catalogue. Rows that cannot be used are left out and
/// reported. Of a damaged database the rows of every good page are read, of a damaged file what stands before
/// the damage, since it is what is left of somebody's data: the rows that are lost are
/// IDS_ISSUE_CATALOGUE_ROWS_DAMAGED when it is known how many, else IDS_ISSUE_CATALOGUE_DAMAGED.
class CatalogueLoader
{
public:
    CatalogueLoader(FileCatalogue &catalogue, Progress &progress);

    /// A "Manifest.db", plain or decrypted, which is never written to; `password` as UTF-8, empty for a
    /// backup that has none. Throws Error when it is no database, lacks the table or its two necessary
    /// columns, or nothing can be read at all.
    Report loadDatabase(const QString &path, const QByteArray &password);
    /// A "Manifest.mbdb". Throws Error when it cannot be opened or nothing can be read at all.
    Report loadMbdb(const QString &path);

private:
    FileCatalogue &m_catalogue;
    Progress &m_progress;
    QString m_name; // of the catalogue in the backup: what is read may be a copy that nobody looks for
    Report m_report;
    qint64 m_rows = 0;

    void readFiles(const class Sqlite3DB &db, const QByteArray &descriptorKey);
    void compareWithIndex(const class Sqlite3DB &db, qint64 rows);
    void tellLost(qint64 count, const QString &reason);
    void insert(const FileRecord &record);
    void countRow();
    void leaveOut(const char *what, const QString &reason = {});
    void tellDamage(const QString &reason);
    void endEarly(const class Error &error);
};
